#include "cli/ItemFile.h"

#include <cmath>
#include <limits>

#include "audio/AudioFileTypes.h"
#include "item/RiffFile.h"
#include "item/WaveFacts.h"
#include "item/cHDItem.h"
#include "kits/common/Files.h"
#include "kits/common/Numbers.h"
#include "kits/common/Text.h"
#include "kits/sound/cAudioFile.h"
#include "kits/sound/tags/cAudioTagFile.h"
#include "kits/sound/tags/cWmaTagFile.h"

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

// Marks at the end move with it.
void SetLength(cHDItem& item, float seconds) {
  const float before = item.TotalLength();
  bool wholeAudio[kSets + 1], wholeExtro[kSets + 1];
  for (std::int32_t set = 1; set <= kSets; ++set) {
    wholeAudio[set] = item.AudioEnd(set) >= before;
    wholeExtro[set] = item.Extro(set) >= item.AudioEnd(set);
  }
  item.SetTotalLength(seconds);
  for (std::int32_t set = 1; set <= kSets; ++set) {
    if (wholeAudio[set]) item.SetAudioEnd(set, seconds);
    if (wholeExtro[set]) item.SetExtro(set, item.AudioEnd(set));
  }
}

// As its file tells it, or as a file that tells nothing.
std::shared_ptr<cHDItem> LoadItem(const std::string& path) {
  auto item = std::make_shared<cHDItem>();
  if (!item->LoadFromFile(path)) {
    item = std::make_shared<cHDItem>();
    item->SetAudioFileName(path);
    item->SetAudioFileLength(static_cast<std::int32_t>(
        Limit<std::int64_t>(FileLength(path), 0, std::numeric_limits<std::int32_t>::max())));
    item->SetAudioFileExists(true);
    item->SetLoopStart(0);
    item->SetLoopEnd(0);
  }
  item->SetReference(path);
  if (Trim(item->ItemTitle()).empty()) item->SetItemTitle(BaseNameOf(path));
  return item;
}

// Stored samples are counted; of others the length is as exact as their average rate.
std::int64_t FramesOf(const WaveFacts& facts) {
  const bool stored = facts.format.FormatTag == wftPCM || facts.format.FormatTag == wftFloat ||
                      facts.format.FormatTag == wftExtensible;
  if (stored) return facts.Frames();
  return RoundToWhole(static_cast<double>(facts.Seconds()) * facts.format.SamplesPerSecond);
}

// False where the audio has to be asked.
bool LoadWaveContents(const std::string& path, ItemFileContents& contents) {
  RiffFile riff;
  RiffForm form;
  if (GetTypeForFile(path) != aftWAV || !riff.Open(path, rfaRead) || !WalkRiff(riff, rxForm, form))
    return false;
  contents.chunks = form.chunks;
  cRiffReader reader;
  reader.LoadFromSource(riff, true, true);
  for (std::int32_t i = 1; i <= reader.NumberRIFFChunkTags(); ++i)
    contents.tags.push_back(reader.RIFFChunkTag(i));
  const auto facts = FindWaveFacts(riff, form);
  if (!facts || facts->format.SamplesPerSecond == 0 || facts->format.AverageBytesPerSecond == 0) return false;
  contents.file.item = LoadItem(path);
  contents.file.frames = FramesOf(*facts);
  contents.file.milliseconds =
      static_cast<double>(contents.file.frames) * 1000 / facts->format.SamplesPerSecond;
  return true;
}

// The item of a file whose sound is known.
void TakeSound(const std::string& path, const cAudioFormat& format, double milliseconds, std::int64_t frames,
               ItemFile& file) {
  file.frames = frames;
  file.milliseconds = milliseconds;
  file.item = LoadItem(path);
  // By its content, whatever its name is.
  file.item->SetAudioFileType(format.FormatType());
  *file.item->AudioFormat() = format;
  SetLength(*file.item, SecondsOfFrames(frames, format.SampleRate()));
}

template <class TagFile>
bool OpenTags(const std::string& path, TagFile& file, ItemFileContents& contents) {
  if (!file.Open(path) || file.Format().FormatType() != GetTypeForFile(path)) return false;
  const cAudioFormat& format = file.Format();
  const std::int64_t frames = RoundToWhole(file.Milliseconds() * format.SampleRate() / 1000);
  if (frames <= 0) return false;
  TakeSound(path, format, file.Milliseconds(), frames, contents.file);
  for (std::int32_t i = 0; i < kTagFields; ++i) {
    const auto field = static_cast<enTagField>(i);
    if (const std::string& text = file.Fields().Text(field); !text.empty())
      contents.tags.push_back({"", "", TagFieldName(field), text});
  }
  return true;
}

// Of files with tags: the sound itself is left alone.
bool LoadTagContents(const std::string& path, ItemFileContents& contents) {
  if (GetTypeForFile(path) != aftWMA) {
    cAudioTagFile file;
    return OpenTags(path, file, contents);
  }
  cWmaTagFile file;
  if (!OpenTags(path, file, contents)) return false;
  for (std::int32_t i = 1; i <= file.NumberAttributes(); ++i)
    contents.tags.push_back({"", "", file.AttributeName(i), NumberText(file.AttributeValue(i))});
  return true;
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
  TakeSound(path, audio.Format(), audio.LengthMilliseconds(), audio.NumberSamples(), file);
  return true;
}

bool LoadItemFileContents(const std::string& path, ItemFileContents& contents, std::string& errorText) {
  if (!LoadWaveContents(path, contents) && !LoadTagContents(path, contents) &&
      !LoadItemFile(path, contents.file, errorText))
    return false;
  std::string markers = path + ".pmk";
  contents.file.item->LoadMarkersFromFile(markers);
  return true;
}

}  // namespace qm::cli
