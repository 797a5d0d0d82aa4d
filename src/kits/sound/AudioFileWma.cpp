#include "kits/sound/AudioFileWma.h"

#include <algorithm>
#include <deque>
#include <utility>
#include <vector>

#include "kits/common/LittleEndian.h"
#include "kits/sound/AudioFileAsfProperties.h"
#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/AudioFileContainer.h"
#include "kits/sound/AudioFileLibrary.h"
#include "kits/sound/cAudioFile.h"

namespace qm {

namespace {

// Windows Media audio, versions 1 and 2. Timestamps are whole milliseconds, so places are counted, in frames
// of the transform, by one walk over all packets.
class WmaSource : public AudioPacketSource {
 public:
  explicit WmaSource(std::shared_ptr<AudioFileBytes> bytes)
      : AudioPacketSource(std::move(bytes)), m_container(*m_bytes) {}

  AudioFileError Open();
  const char* DecoderName() const override {
    return m_stream->codecpar->codec_id == AV_CODEC_ID_WMAV1 ? "wmav1" : "wmav2";
  }
  bool FillParameters(AVCodecParameters* parameters) const override {
    return avcodec_parameters_copy(parameters, m_stream->codecpar) >= 0;
  }
  bool Next(AVPacket* packet, AudioPacketPlace& place) override;
  bool Position(std::int64_t rawFrame) override;

 private:
  struct Place {
    std::int64_t timestamp, position, raw;
  };

  AudioFileError OpenStream();
  void ReadProperties();
  std::int64_t WithoutPadding(std::int64_t frames) const;
  bool ReadPacket();
  bool Advance();
  std::int64_t FramesIn(const AVPacket& packet) const;
  bool Scan();
  bool GoTo(const Place& place);

  bool UsesNoise() const;
  void StartSegment();
  bool NextInOrder(AVPacket* packet, AudioPacketPlace& place);

  static constexpr std::int64_t kPacketsPerIndexEntry = 256;
  static constexpr std::int64_t kPrerollPackets = 8;
  AudioFileContainer m_container;
  AVStream* m_stream = nullptr;
  std::int64_t m_transform = 0;  // frames of one transform
  bool m_reservoir = false;      // transforms may run on into the next packet
  std::vector<Place> m_index;
  PacketPtr m_ahead{av_packet_alloc()};  // read, not yet given out
  std::int64_t m_raw = 0;                // where it begins
  std::int64_t m_ordinal = 0;            // its number from the start of the stream
  bool m_noise = false;
  std::int64_t m_segment = 0;  // index entry that the decoder was made for, when noise is used
  bool m_fresh = false;        // the next packet is for a new decoder
  struct Recent {
    PacketPtr packet;
    AudioPacketPlace place;
  };
  std::deque<Recent> m_recent;  // the last packets given out
  std::deque<Recent> m_again;   // those to be given out once more
};

AudioFileError WmaSource::OpenStream() {
  SilenceLibrary();
  if (int code = m_container.Open("asf"); code < 0)
    return {afeDamaged, "is not a readable Windows Media file: " + LibraryErrorText(code)};
  m_stream = m_container.FindAudio({AV_CODEC_ID_WMAV1, AV_CODEC_ID_WMAV2});
  if (m_stream == nullptr)
    return {afeUnsupported, "is a file that holds no Windows Media audio of version 1 or 2"};
  const AVCodecParameters& parameters = *m_stream->codecpar;
  const int rate = parameters.sample_rate, channels = parameters.ch_layout.nb_channels;
  if (rate < 1 || rate > 50000 || channels < 1 || channels > 2)
    return {afeUnsupported, "is a Windows Media file of " + std::to_string(rate) + " Hz and " +
                                std::to_string(channels) + " channels"};
  m_info.format.SetFormatType(aftWMA);
  m_info.format.SetSampleRate(rate);
  m_info.format.SetChannels(channels);
  m_info.format.SetBitRate(static_cast<std::int32_t>(parameters.bit_rate));
  m_info.format.SetWMAProfile(std::to_string(rate) + "," + std::to_string(channels) + "," +
                              std::to_string(parameters.bit_rate));
  return {};
}

void WmaSource::ReadProperties() {
  const AVCodecParameters& parameters = *m_stream->codecpar;
  const bool version1 = parameters.codec_id == AV_CODEC_ID_WMAV1;
  const int rate = parameters.sample_rate;
  m_transform = rate <= 16000 ? 512 : rate <= 22050 || (rate <= 32000 && version1) ? 1024 : 2048;
  const int flagsAt = version1 ? 2 : 4;
  if (parameters.extradata_size >= flagsAt + 2)
    m_reservoir = (LoadLittleEndian<std::uint16_t>(parameters.extradata + flagsAt) & 2) != 0;
}

// Whether the decoder fills weak bands with noise, as it does at low bit rates. Its noise runs on from packet
// to packet, so that what it gives depends on where it began.
bool WmaSource::UsesNoise() const {
  const AVCodecParameters& parameters = *m_stream->codecpar;
  const int channels = parameters.ch_layout.nb_channels;
  int rate = parameters.sample_rate;
  const double bits = static_cast<double>(parameters.bit_rate) / (static_cast<double>(channels) * rate);
  const double weighted = channels == 2 ? bits * 1.6 : bits;
  // Version 2 takes any rate for the nearest of these below it.
  for (int usual : {44100, 22050, 16000, 11025, 8000}) {
    if (parameters.codec_id == AV_CODEC_ID_WMAV1 || rate < usual) continue;
    rate = usual;
    break;
  }
  if (rate == 44100) return weighted < 0.61;
  if (rate == 22050) return weighted < 1.16;
  return rate != 8000 || bits <= 0.75;
}

AudioFileError WmaSource::Open() {
  if (AudioFileError error = OpenStream()) return error;
  ReadProperties();
  if (!m_ahead || !Scan()) return {afeDamaged, "holds no readable Windows Media audio"};
  // The decoder's first two transforms are ahead of the audio; with a reservoir the very first is cut off as
  // well.
  m_info.delay = (m_reservoir ? 3 : 2) * m_transform;
  m_noise = UsesNoise();
  m_info.preroll = m_noise ? 0 : kPrerollPackets * m_transform;
  m_info.rawAtDrain = m_raw;
  m_info.length = WithoutPadding(std::max<std::int64_t>(0, m_raw + m_transform - m_info.delay));
  return GoTo(m_index.front()) ? AudioFileError{} : AudioFileError{afeDamaged, "cannot be positioned"};
}

// The next packet and its place. Timestamps tell of packets that are lost; they are believed as far as the
// bytes passed over could have held that many.
bool WmaSource::Advance() {
  const std::int64_t position = m_ahead->pos;
  m_raw += FramesIn(*m_ahead);
  ++m_ordinal;
  if (!ReadPacket()) return false;
  if (m_index.empty() || m_ahead->pts == AV_NOPTS_VALUE) return true;
  const std::int64_t stated = (m_ahead->pts - m_index.front().timestamp) * m_info.format.SampleRate() / 1000;
  const std::int64_t lost = (stated - m_raw + m_transform / 2) / m_transform;
  const std::int64_t most = (m_ahead->pos - position) / std::max(1, m_stream->codecpar->block_align / 2);
  if (lost >= (m_reservoir ? 16 : 1) && lost <= most) m_raw += lost * m_transform;
  return true;
}

// An encoder that knew says how much of the last transforms is audio.
std::int64_t WmaSource::WithoutPadding(std::int64_t frames) const {
  std::string head(kAsfHeadBytes, '\0');
  head.resize(m_bytes->ReadAt(0, head.data(), head.size()));
  const std::optional<AsfDuration> duration = FindAsfDuration(head);
  const std::int64_t stated = duration ? duration->Frames(m_info.format.SampleRate()) : frames;
  return stated < frames && stated > frames - 4 * m_transform ? stated : frames;
}

bool WmaSource::ReadPacket() {
  for (;;) {
    av_packet_unref(m_ahead.get());
    if (av_read_frame(m_container.Context(), m_ahead.get()) < 0) return false;
    if (m_ahead->stream_index == m_stream->index && m_ahead->size > 0) return true;
  }
}

std::int64_t WmaSource::FramesIn(const AVPacket& packet) const {
  const int block = m_stream->codecpar->block_align > 0 ? m_stream->codecpar->block_align : packet.size;
  std::int64_t transforms = 0;
  for (int at = 0; at + block <= packet.size; at += block)
    transforms += m_reservoir ? packet.data[at] & 15 : 1;
  return transforms * m_transform;
}

bool WmaSource::Scan() {
  bool more = ReadPacket();
  for (std::int64_t count = 0; more; ++count) {
    if (count % kPacketsPerIndexEntry == 0) m_index.push_back({m_ahead->pts, m_ahead->pos, m_raw});
    more = Advance();
  }
  return !m_index.empty();
}

// Leaves the packet of that place as the next one.
bool WmaSource::GoTo(const Place& place) {
  m_raw = place.raw;
  m_ordinal = (&place - m_index.data()) * kPacketsPerIndexEntry;
  for (std::int64_t timestamp : {place.timestamp, m_index.front().timestamp}) {
    if (av_seek_frame(m_container.Context(), m_stream->index, timestamp, AVSEEK_FLAG_BACKWARD) < 0) continue;
    while (ReadPacket())
      if (m_ahead->pts == place.timestamp && m_ahead->pos == place.position) return true;
  }
  return false;
}

bool WmaSource::NextInOrder(AVPacket* packet, AudioPacketPlace& place) {
  if (m_ahead->size == 0 || av_packet_ref(packet, m_ahead.get()) < 0) return false;
  place = {m_raw, FramesIn(*packet), std::exchange(m_fresh, false)};
  if (m_noise) {
    m_recent.push_back({PacketPtr(av_packet_clone(packet)), place});
    if (m_recent.size() > kPrerollPackets) m_recent.pop_front();
  }
  Advance();
  return true;
}

// With noise, the audio between two index entries always comes from a decoder that began a few packets ahead
// of the first: then it is the same however reading came there.
void WmaSource::StartSegment() {
  m_segment = m_ordinal / kPacketsPerIndexEntry;
  m_again = std::move(m_recent);
  m_recent.clear();
  if (!m_again.empty()) m_again.front().place.fresh = true;
}

bool WmaSource::Next(AVPacket* packet, AudioPacketPlace& place) {
  if (m_noise && m_ordinal / kPacketsPerIndexEntry > m_segment) StartSegment();
  if (m_again.empty()) return NextInOrder(packet, place);
  if (m_again.front().packet) av_packet_move_ref(packet, m_again.front().packet.get());
  place = m_again.front().place;
  m_again.pop_front();
  return true;
}

bool WmaSource::Position(std::int64_t rawFrame) {
  auto behind = std::upper_bound(m_index.begin(), m_index.end(), rawFrame,
                                 [](std::int64_t wanted, const Place& place) { return wanted < place.raw; });
  m_segment = std::max<std::int64_t>(1, behind - m_index.begin()) - 1;
  m_again.clear();
  m_recent.clear();
  m_fresh = m_noise;
  if (!m_noise) {
    if (!GoTo(m_index[static_cast<std::size_t>(m_segment)])) return false;
    while (m_raw + FramesIn(*m_ahead) <= rawFrame)
      if (!Advance()) break;
    return true;
  }
  if (!GoTo(m_index[static_cast<std::size_t>(std::max<std::int64_t>(1, m_segment) - 1)])) return false;
  while (m_ordinal < m_segment * kPacketsPerIndexEntry - kPrerollPackets)
    if (!Advance()) break;
  return true;
}

}  // namespace

std::unique_ptr<AudioPacketSource> MakeWmaSource(std::shared_ptr<AudioFileBytes> bytes,
                                                 AudioFileError& error) {
  auto source = std::make_unique<WmaSource>(std::move(bytes));
  error = source->Open();
  if (error) return nullptr;
  return source;
}

}  // namespace qm
