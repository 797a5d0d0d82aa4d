#include "kits/sound/AudioFileMpeg.h"

#include <algorithm>
#include <vector>

#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/AudioFileLibrary.h"
#include "kits/sound/AudioFileMpegFrame.h"
#include "kits/sound/AudioFileMpegStream.h"

namespace qm {

namespace {

constexpr std::int64_t kFramesPerIndexEntry = 256;
// The overlap of the transform and the delay of the filter bank, over and above the bit reservoir.
constexpr std::int64_t kPrerollFrames = 3;
class MpegSource : public AudioPacketSource {
 public:
  MpegSource(std::shared_ptr<AudioFileBytes> bytes, std::int64_t end, std::uint32_t kind)
      : AudioPacketSource(std::move(bytes)), m_walker(*m_bytes, end, kind) {}

  bool Open(std::int64_t start);

  const char* DecoderName() const override { return m_header.layer == 2 ? "mp2float" : "mp3float"; }
  bool FillParameters(AVCodecParameters* parameters) const override;
  bool Next(AVPacket* packet, AudioPacketPlace& place) override;
  bool Position(std::int64_t rawFrame) override;

 private:
  struct Place {
    std::int64_t position = 0, ordinal = 0;
  };

  std::int64_t SkipStreamTag(std::int64_t start);
  void Start(const Place& place);
  void FindFrame();
  void Scan(std::int64_t& averageBitRate);
  void DescribeFormat(std::int64_t averageBitRate);

  MpegFrameWalker m_walker;
  std::vector<Place> m_index;  // a frame's start every few seconds
  MpegStreamTag m_tag;
  MpegFrameHeader m_header;  // of the frame at m_here, when m_found
  Place m_here;
  bool m_found = false;
  std::int64_t m_lost = 0;  // frames lost right ahead of it
  std::int64_t m_count = 0;
  std::int32_t m_smallestFrame = 1 << 16;
};

bool MpegSource::Open(std::int64_t start) {
  start = SkipStreamTag(start);
  Start({start, 0});
  if (!m_found) return false;
  std::int64_t averageBitRate = 0;
  Scan(averageBitRate);
  Start(m_index.front());
  DescribeFormat(averageBitRate);
  const std::int64_t frame = m_header.frames;
  const std::int64_t mainBytes = std::max(8, m_smallestFrame - m_header.sideBytes - 6);
  m_info.preroll = (kPrerollFrames + (m_header.layer == 3 ? 511 / mainBytes + 1 : 0)) * frame;
  m_info.delay = m_tag.gapless ? m_tag.delay + kMpegDecoderDelay : 0;
  std::int64_t padding = 0;
  if (m_tag.gapless && (m_tag.frames == m_count || m_tag.frames == m_count + 1))
    padding = std::max<std::int64_t>(0, m_tag.padding - kMpegDecoderDelay);
  m_info.length = std::max<std::int64_t>(0, m_count * frame - m_info.delay - padding);
  return true;
}

std::int64_t MpegSource::SkipStreamTag(std::int64_t start) {
  Start({start, 0});
  if (!m_found) return start;
  std::vector<std::uint8_t> frame(static_cast<std::size_t>(m_header.bytes));
  frame.resize(m_bytes->ReadAt(m_here.position, frame.data(), frame.size()));
  m_tag = ReadMpegStreamTag(frame, m_header);
  return m_tag.present ? m_here.position + m_header.bytes : start;
}

void MpegSource::Start(const Place& place) {
  m_here = place;
  FindFrame();
  m_lost = 0;
  m_here.ordinal = place.ordinal;
}

void MpegSource::FindFrame() {
  std::int64_t junk = 0;
  m_found = m_walker.Find(m_here.position, m_header, junk);
  // Damaged bytes in the middle stood for audio: as much of it as they would be frames.
  m_lost = m_found ? (junk + m_header.bytes / 2) / m_header.bytes : 0;
  m_here.ordinal += m_lost;
}

void MpegSource::Scan(std::int64_t& averageBitRate) {
  std::int64_t bytes = 0, whole = 0;
  std::int32_t firstRate = m_header.bitRate;
  bool constant = true;
  while (m_found) {
    if (m_index.empty() || m_here.ordinal >= m_index.back().ordinal + kFramesPerIndexEntry)
      m_index.push_back(m_here);
    constant = constant && m_header.bitRate == firstRate;
    bytes += m_header.bytes;
    ++whole;
    m_smallestFrame = std::min(m_smallestFrame, m_header.bytes);
    m_here.position += m_header.bytes;
    m_count = ++m_here.ordinal;
    FindFrame();
  }
  Start(m_index.front());
  averageBitRate = constant ? firstRate : bytes * 8 * m_header.sampleRate / (whole * m_header.frames);
}

void MpegSource::DescribeFormat(std::int64_t averageBitRate) {
  m_info.format.SetFormatType(m_header.layer == 2 ? aftMP2 : aftMP3);
  m_info.format.SetSampleRate(m_header.sampleRate);
  m_info.format.SetChannels(m_header.channels);
  m_info.format.SetBitRate(static_cast<std::int32_t>(averageBitRate));
}

bool MpegSource::FillParameters(AVCodecParameters* parameters) const {
  parameters->codec_type = AVMEDIA_TYPE_AUDIO;
  parameters->codec_id = m_header.layer == 2 ? AV_CODEC_ID_MP2 : AV_CODEC_ID_MP3;
  parameters->sample_rate = m_info.format.SampleRate();
  av_channel_layout_default(&parameters->ch_layout, m_info.format.Channels());
  return true;
}

bool MpegSource::Next(AVPacket* packet, AudioPacketPlace& place) {
  if (!m_found) return false;
  place.start = (m_here.ordinal - m_lost) * m_header.frames;
  if (m_lost > 0) {
    place.frames = m_lost * m_header.frames;
    m_lost = 0;
    return true;
  }
  place.frames = m_header.frames;
  if (av_new_packet(packet, m_header.bytes) < 0) return false;
  if (m_bytes->ReadAt(m_here.position, packet->data, static_cast<std::size_t>(packet->size)) !=
      static_cast<std::size_t>(packet->size))
    return false;
  m_here.position += m_header.bytes;
  ++m_here.ordinal;
  FindFrame();
  return true;
}

bool MpegSource::Position(std::int64_t rawFrame) {
  const std::int64_t ordinal = rawFrame / m_header.frames;
  auto behind =
      std::upper_bound(m_index.begin(), m_index.end(), ordinal,
                       [](std::int64_t wanted, const Place& place) { return wanted < place.ordinal; });
  Start(behind == m_index.begin() ? m_index.front() : *std::prev(behind));
  while (m_found && m_here.ordinal < ordinal) {
    m_here.position += m_header.bytes;
    ++m_here.ordinal;
    FindFrame();
  }
  return true;
}

}  // namespace

std::unique_ptr<AudioPacketSource> MakeMpegSource(std::shared_ptr<AudioFileBytes> bytes, std::int64_t start,
                                                  std::int64_t end) {
  end = MpegEndWithoutTags(*bytes, start, end);
  MpegFrameHeader header;
  if (!FindFirstMpegFrame(*bytes, start, end, header)) return nullptr;
  auto source = std::make_unique<MpegSource>(std::move(bytes), end, header.kind);
  if (!source->Open(start)) return nullptr;
  return source;
}

}  // namespace qm
