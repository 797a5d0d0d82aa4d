#include "audio/WriteFormat.h"

#include "audio/AudioFileService.h"
#include "kits/common/Files.h"
#include "kits/sound/cAudioFile.h"

namespace qm {
namespace {

// The format, by way of an empty file that has it.
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

}  // namespace

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

}  // namespace qm
