#include "cli/ItemFile.h"

#include <cmath>
#include <limits>

#include "item/cHDItem.h"
#include "kits/common/Files.h"
#include "kits/common/Numbers.h"
#include "kits/sound/cAudioFile.h"

namespace qm::cli {

namespace {

constexpr std::int32_t kSets = 3;

// A length whose frame is the file's last: where single precision would fall a frame short, the next value
// above.
float SecondsOfFrames(std::int64_t frames, std::int32_t sampleRate) {
  const auto seconds = static_cast<float>(static_cast<double>(frames) / sampleRate);
  if (RoundToWhole(static_cast<double>(seconds) * sampleRate) >= frames) return seconds;
  return std::nextafter(seconds, std::numeric_limits<float>::max());
}

}  // namespace

bool LoadItemFile(const std::string& path, ItemFile& file, std::string& errorText) {
  cAudioFile audio;
  audio.AllowCompressedOpen(true);
  if (audio.OpenForRead(path) != 0) {
    errorText = audio.ErrorText();
    return false;
  }
  if (audio.NumberSamples() <= 0 || audio.SampleRate() <= 0) {
    errorText = "'" + path + "' holds no audio";
    return false;
  }
  file.frames = audio.NumberSamples();
  file.milliseconds = audio.LengthMilliseconds();
  auto item = std::make_shared<cHDItem>();
  item->SetReference(path);
  item->SetAudioFileName(path);
  item->SetAudioFileLength(static_cast<std::int32_t>(
      Limit<std::int64_t>(FileLength(path), 0, std::numeric_limits<std::int32_t>::max())));
  item->SetAudioFileExists(true);
  item->SetAudioFileType(audio.Format().FormatType());
  *item->AudioFormat() = audio.Format();
  item->SetItemTitle(BaseNameOf(path));
  item->SetTotalLength(SecondsOfFrames(audio.NumberSamples(), audio.SampleRate()));
  for (std::int32_t set = 1; set <= kSets; ++set) item->SetExtro(set, item->AudioEnd(set));
  item->SetLoopStart(0);
  item->SetLoopEnd(0);
  file.item = std::move(item);
  return true;
}

}  // namespace qm::cli
