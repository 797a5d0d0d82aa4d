#include "audio/AudioFileService.h"

#include <exception>

#include "kits/common/Files.h"
#include "kits/common/Text.h"
#include "kits/sound/cAudioFile.h"

namespace qm {

double GetAudioFileLengthSeconds(const std::string& path) try {
  if (FileLength(path) <= 0) return -1;
  cAudioFile file;
  if (EqualIgnoringCase(ExtensionOf(path), "WMA")) file.AllowCompressedOpen(true);
  if (file.OpenForRead(path, 0, 1) != afeNone) return -1;
  return file.LengthMilliseconds() / 1000;
} catch (const std::exception&) {
  return -1;
}

bool AudioFormatsEqual(const std::shared_ptr<cAudioFormat>& first,
                       const std::shared_ptr<cAudioFormat>& second) {
  if (!first || !second) return false;
  const auto same = [&](auto property) { return ((*first).*property)() == ((*second).*property)(); };
  if (!same(&cAudioFormat::FormatType) || !same(&cAudioFormat::SampleRate) || !same(&cAudioFormat::Channels))
    return false;
  switch (first->FormatType()) {
    case aftWAV:
      return same(&cAudioFormat::WAVFormatTag);
    case aftWMA:
      return same(&cAudioFormat::FormatDescription) && same(&cAudioFormat::WMAProfile);
    default:
      return same(&cAudioFormat::BitRate);
  }
}

}  // namespace qm
