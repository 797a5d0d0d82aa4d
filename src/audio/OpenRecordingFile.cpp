#include <exception>
#include <filesystem>

#include "audio/AudioFileService.h"
#include "kits/common/Files.h"
#include "kits/common/MessageBox.h"
#include "kits/common/Process.h"
#include "kits/sound/Platform.h"
#include "kits/sound/cAudioFile.h"
#include "services/Diagnostics.h"

namespace qm {
namespace {

namespace fs = std::filesystem;

constexpr std::int32_t kTraceLevel = 5;
constexpr std::int32_t kFailureLevel = 2;

template <class... Parts>
bool Exit(const Parts&... reason) {
  Trace(kFailureLevel, ednCloses, reason...);
  return false;
}

// Why the file cannot go, "" when it has gone or was never there.
std::string DeleteProblem(const std::string& path) {
  if (!FileExists(path)) return {};
  std::error_code error;
  const fs::file_status status = fs::status(NativePath(path), error);
  // Deleting asks for the folder's permission alone; a recording made read-only is meant to stay.
  if ((status.permissions() & fs::perms::owner_write) == fs::perms::none) return "the file is read-only";
  fs::remove(NativePath(path), error);
  return error ? error.message() : std::string();
}

// The format of the recording, by way of an empty file that has it.
bool UseTemplate(cAudioFile& file, const cAudioFormat& format) {
  const std::string name = TemporaryFileName("WAV");
  if (!CreateAudioFile(name, format.SampleRate(), format.Channels(), format.WAVFormatTag())) return false;
  const bool used = file.SetTemplateWAV(name) == afeNone;
  DeleteFile(name);
  return used;
}

void UseMP3(cAudioFile& file, const cAudioFormat& format) {
  tyMP3Settings settings;
  settings.SampleRate = format.SampleRate();
  settings.BitRate = format.BitRate();
  settings.Channels = format.Channels();
  file.SetMP3Settings(settings);
}

// Tells the file object the format; the creation mode, 0 when the format cannot be written.
std::int32_t UseFormat(cAudioFile& file, const cAudioFormat& format) {
  switch (format.FormatType()) {
    case aftWAV:
      if (!UseTemplate(file, format)) return 0;
      break;
    case aftMP3:
      UseMP3(file, format);
      break;
    case aftOgg:
      file.SetOggSettings(format.SampleRate(), format.Channels(), format.BitRate(), 0, 0, true);
      break;
    case aftWMA:
      file.SetWMAProfile(format.WMAProfile());
      break;
    case aftMP2:
      file.SetMP2Settings(format.SampleRate(), format.BitRate(), format.Channels());
      break;
  }
  const AudioFileTypeRow* type = FindAudioFileType(format.FormatType());
  return type == nullptr ? 0 : type->creationMode;
}

bool Open(const std::string& path, const cAudioFormat* format, bool silent, const Platform& platform) {
  if (format == nullptr) {
    const std::string text =
        "There was a problem creating the file '" + path + "' becuase no Audio Format has been specified";
    if (!silent) platform.messageBox->Show(text, mbsExclamation, ProgramName());
    return Exit("Exit as no AudioFormat set");
  }
  if (const std::string problem = DeleteProblem(path); !problem.empty()) {
    ReportProblem("deleting the old file to record over", problem, silent);
    return Exit("Exit as couldn't delete old File ", path);
  }
  cAudioFile file;
  file.AllowCompressedOpen(true);
  const std::int32_t mode = UseFormat(file, *format);
  Trace(kTraceLevel, ednPlain, "Opening Audio File - Format Number ", mode);
  if (mode <= 0) return true;
  if (file.CreateFile(path, mode) != afeNone) {
    const std::string problem = file.ErrorText();
    ReportProblem("creating the new audio file " + path, problem, silent);
    return Exit("Exit with File Create error ", problem);
  }
  Trace(kTraceLevel, ednPlain, "Close the audio file");
  file.Close();
  return true;
}

}  // namespace

bool OpenRecordingFile(const std::string& path, const std::shared_ptr<cAudioFormat>& format, bool silent,
                       const Platform& platform) try {
  Trace(kTraceLevel, ednOpens, "Start OpenRecordingFile");
  if (!Open(path, format.get(), silent, platform)) return false;
  Trace(kTraceLevel, ednCloses, "Finish CreateAudioFile");
  return true;
} catch (const std::exception&) {
  return false;
}

}  // namespace qm
