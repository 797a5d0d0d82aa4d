#include <exception>
#include <filesystem>

#include "audio/AudioFileService.h"
#include "audio/WriteFormat.h"
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
