#include "kits/sound/tags/SoundFacts.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/AudioFileMpegFrame.h"
#include "kits/sound/AudioFileMpegStream.h"
#include "kits/sound/AudioFileReader.h"

namespace qm {

namespace {

constexpr std::int64_t kProbes = 16;
constexpr std::int64_t kSlack = 2;  // bytes that padding may put a frame off its place

// A run of MPEG frames with a first one.
struct MpegRun {
  std::int64_t start = 0, end = 0;
  MpegFrameHeader first;
};

// The frame of the same kind and bit rate that begins at the position or next to it.
bool FrameNear(const AudioFileBytes& bytes, const MpegRun& run, std::int64_t& position) {
  std::uint8_t around[2 * kSlack + 4];
  const std::int64_t from = std::max(run.start, position - kSlack);
  const std::size_t got = bytes.ReadAt(from, around, sizeof around);
  for (std::size_t at = 0; at + 4 <= got; ++at) {
    MpegFrameHeader header;
    if (!ParseMpegFrameHeader(around + at, header) || header.kind != run.first.kind ||
        header.bitRate != run.first.bitRate)
      continue;
    position = from + static_cast<std::int64_t>(at);
    return position + header.bytes <= run.end;
  }
  return false;
}

// Whole frames in a run of one bit rate, -1 when its frames do not stand where that would put them.
std::int64_t CountConstant(const AudioFileBytes& bytes, const MpegRun& run, double frameBytes) {
  const auto whole = static_cast<std::int64_t>((static_cast<double>(run.end - run.start) + 1) / frameBytes);
  for (std::int64_t probe = 1; probe <= kProbes; ++probe) {
    const std::int64_t ordinal = (whole - 1) * probe / kProbes;
    std::int64_t position = run.start + static_cast<std::int64_t>(static_cast<double>(ordinal) * frameBytes);
    if (!FrameNear(bytes, run, position)) return -1;
  }
  return whole;
}

// Frames delivered, by what the encoder tells where the file is as long as it says; -1 for no such telling.
std::int64_t StatedLength(const MpegStreamTag& tag, const MpegRun& run, std::int64_t tagBytes) {
  if (!tag.gapless || tag.frames <= 0 || tag.bytes != run.end - run.start + tagBytes) return -1;
  const std::int64_t padding = std::max<std::int64_t>(0, tag.padding - kMpegDecoderDelay);
  return tag.frames * run.first.frames - tag.delay - kMpegDecoderDelay - padding;
}

std::int32_t ChannelModeAt(const AudioFileBytes& bytes, std::int64_t position) {
  std::uint8_t header[4] = {};
  bytes.ReadAt(position, header, sizeof header);
  return header[3] >> 6;
}

SoundFacts Describe(const AudioFileBytes& bytes, const MpegRun& run) {
  SoundFacts facts;
  facts.format.SetFormatType(run.first.layer == 2 ? aftMP2 : aftMP3);
  facts.format.SetSampleRate(run.first.sampleRate);
  facts.format.SetChannels(run.first.channels);
  facts.format.SetBitRate(run.first.bitRate);
  facts.channelMode = ChannelModeAt(bytes, run.start);
  return facts;
}

}  // namespace

std::optional<SoundFacts> GlanceAtMpeg(AudioFileBytes& bytes) {
  MpegRun run{0, MpegEndWithoutTags(bytes, 0, bytes.Size()), {}};
  if (!FindFirstMpegFrame(bytes, run.start, run.end, run.first)) return std::nullopt;
  std::vector<std::uint8_t> frame(static_cast<std::size_t>(run.first.bytes));
  frame.resize(bytes.ReadAt(run.start, frame.data(), frame.size()));
  const MpegStreamTag tag = ReadMpegStreamTag(frame, run.first);
  const std::int64_t tagBytes = tag.present ? run.first.bytes : 0;
  run.start += tagBytes;
  std::uint8_t next[4] = {};
  const std::uint32_t kind = run.first.kind;
  if (bytes.ReadAt(run.start, next, sizeof next) != sizeof next || !ParseMpegFrameHeader(next, run.first) ||
      run.first.kind != kind)
    return std::nullopt;
  SoundFacts facts = Describe(bytes, run);
  if (tag.present) {
    facts.frames = StatedLength(tag, run, tagBytes);
    if (!tag.constantRate && tag.frames > 0)
      facts.format.SetBitRate(static_cast<std::int32_t>((run.end - run.start) * 8 * run.first.sampleRate /
                                                        (tag.frames * run.first.frames)));
  } else {
    const double frameBytes = run.first.frames / 8.0 * run.first.bitRate / run.first.sampleRate;
    std::int64_t count = CountConstant(bytes, run, frameBytes);
    // Some encoders never pad their frames to the exact rate.
    if (count < 0) count = CountConstant(bytes, run, std::floor(frameBytes));
    facts.frames = count > 0 ? count * run.first.frames : -1;
  }
  if (facts.frames < 0) return std::nullopt;
  return facts;
}

std::optional<SoundFacts> ReadSoundFacts(AudioFileBytes& bytes, const std::string& path) {
  std::uint8_t start[4] = {};
  bytes.ReadAt(0, start, sizeof start);
  // Other types may hold what looks like MPEG audio.
  MpegFrameHeader header;
  const bool tagged = start[0] == 'I' && start[1] == 'D' && start[2] == '3';
  if (tagged || ParseMpegFrameHeader(start, header))
    if (auto facts = GlanceAtMpeg(bytes)) return facts;
  AudioFileError error;
  const auto reader = OpenAudioFileReader(path, CompressedAudio::allow, error);
  if (!reader) return std::nullopt;
  const bool mpeg = reader->Format().FormatType() == aftMP3 || reader->Format().FormatType() == aftMP2;
  std::int64_t first = 0;
  std::int32_t mode = 0;
  if (mpeg && FindFirstMpegFrame(bytes, first, bytes.Size(), header)) mode = ChannelModeAt(bytes, first);
  return SoundFacts{reader->Format(), reader->Length(), mode};
}

}  // namespace qm
