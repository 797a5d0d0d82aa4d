#include <algorithm>
#include <cstring>
#include <vector>

#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/AudioFileLibrary.h"
#include "kits/sound/AudioFilePackets.h"
#include "kits/sound/AudioFileSamples.h"
#include "kits/sound/cAudioFile.h"

namespace qm {

namespace {

// Planar or interleaved samples of a decoded frame as interleaved float with `channels` channels. A stream
// may change between mono and stereo on its way: a channel that is missing repeats the last one there is.
template <class Sample>
void Interleave(const AVFrame& frame, bool planar, float scale, std::size_t channels, float* out) {
  const auto theirs = static_cast<std::size_t>(frame.ch_layout.nb_channels);
  const auto count = static_cast<std::size_t>(frame.nb_samples);
  for (std::size_t c = 0; c < channels; ++c) {
    const std::size_t from = std::min(c, theirs - 1);
    const auto* in =
        reinterpret_cast<const Sample*>(frame.extended_data[planar ? from : 0]) + (planar ? 0 : from);
    const std::size_t step = planar ? 1 : theirs;
    for (std::size_t i = 0; i < count; ++i) out[i * channels + c] = static_cast<float>(in[i * step]) * scale;
  }
}

bool InterleaveFrame(const AVFrame& frame, std::size_t channels, std::vector<float>& out) {
  const auto format = static_cast<AVSampleFormat>(frame.format);
  const bool planar = av_sample_fmt_is_planar(format) != 0;
  if (frame.ch_layout.nb_channels < 1) return false;
  out.resize(static_cast<std::size_t>(frame.nb_samples) * channels);
  switch (av_get_packed_sample_fmt(format)) {
    case AV_SAMPLE_FMT_FLT:
      Interleave<float>(frame, planar, 1, channels, out.data());
      break;
    case AV_SAMPLE_FMT_S16:
      Interleave<std::int16_t>(frame, planar, 1.0f / 32768, channels, out.data());
      break;
    default:
      return false;
  }
  MakeFinite(out.data(), out.size());
  return true;
}

// Puts decoded packets at their places. What a packet does not give is silence, what stands in the way of the
// next is dropped, so that a frame's number never depends on what could be decoded.
class PacketReader : public AudioFileReader {
 public:
  explicit PacketReader(std::unique_ptr<AudioPacketSource> source)
      : m_source(std::move(source)), m_packet(av_packet_alloc()), m_frame(av_frame_alloc()) {
    m_format = m_source->Info().format;
    m_length = m_source->Info().length;
  }

  AudioFileError OpenDecoder();
  std::size_t Read(float* interleaved, std::size_t frames) override;
  bool Seek(std::int64_t frame) override;

 private:
  bool NextBlock();
  void Decode(const AudioPacketPlace& place);
  void Drain();
  void TakeFrames(const AudioPacketPlace& place);
  std::size_t Channels() const { return static_cast<std::size_t>(m_format.Channels()); }

  std::unique_ptr<AudioPacketSource> m_source;
  CodecContextPtr m_codec;
  PacketPtr m_packet;
  FramePtr m_frame;
  std::int64_t m_position = 0;  // next frame to be given out
  bool m_drained = false;
  std::int64_t m_blockStart = 0;  // raw frame of the block's first
  std::vector<float> m_block, m_part;
};

AudioFileError PacketReader::OpenDecoder() {
  const AVCodec* decoder = avcodec_find_decoder_by_name(m_source->DecoderName());
  ParametersPtr parameters(avcodec_parameters_alloc());
  m_codec.reset(avcodec_alloc_context3(decoder));
  if (!decoder || !parameters || !m_codec || !m_packet || !m_frame ||
      !m_source->FillParameters(parameters.get()))
    return {afeUnsupported, std::string("needs the decoder ") + m_source->DecoderName()};
  avcodec_parameters_to_context(m_codec.get(), parameters.get());
  m_codec->thread_count = 1;
  m_codec->pkt_timebase = {1, m_format.SampleRate()};
  // The decoder would take off delays as it guesses them, after every seek anew: the source knows the places.
  m_codec->flags2 |= AV_CODEC_FLAG2_SKIP_MANUAL;
  if (int code = avcodec_open2(m_codec.get(), decoder, nullptr); code < 0)
    return {afeUnsupported, "cannot be decoded: " + LibraryErrorText(code)};
  return {};
}

std::size_t PacketReader::Read(float* interleaved, std::size_t frames) {
  const std::int64_t delay = m_source->Info().delay;
  frames = static_cast<std::size_t>(
      std::min<std::int64_t>(static_cast<std::int64_t>(frames), m_length - m_position));
  std::size_t done = 0;
  while (done < frames) {
    const std::int64_t raw = m_position + delay;
    const auto blockFrames = static_cast<std::int64_t>(m_block.size() / Channels());
    if (raw >= m_blockStart + blockFrames) {
      if (NextBlock()) continue;
      if (m_source->ReadFailed()) {
        m_error = {afeDamaged, "cannot be read further"};
        return done;
      }
      m_blockStart = m_length + delay;  // nothing more comes: silence up to the end
    }
    auto part = static_cast<std::int64_t>(frames - done);
    float* out = interleaved + done * Channels();
    if (raw < m_blockStart) {
      part = std::min(part, m_blockStart - raw);
      std::memset(out, 0, static_cast<std::size_t>(part) * Channels() * sizeof(float));
    } else {
      part = std::min(part, m_blockStart + blockFrames - raw);
      std::memcpy(out, m_block.data() + static_cast<std::size_t>(raw - m_blockStart) * Channels(),
                  static_cast<std::size_t>(part) * Channels() * sizeof(float));
    }
    done += static_cast<std::size_t>(part);
    m_position += part;
  }
  return done;
}

bool PacketReader::Seek(std::int64_t frame) {
  const std::int64_t raw = frame + m_source->Info().delay;
  const auto blockFrames = static_cast<std::int64_t>(m_block.size() / Channels());
  m_position = frame;
  m_error = {};
  m_source->ForgetFailure();
  if (raw >= m_blockStart && raw < m_blockStart + blockFrames) return true;
  avcodec_flush_buffers(m_codec.get());
  m_block.clear();
  m_blockStart = 0;
  m_drained = false;
  return m_source->Position(std::max<std::int64_t>(0, raw - m_source->Info().preroll));
}

// The next packet's audio into the block; false when there is no more.
bool PacketReader::NextBlock() {
  if (m_drained) return false;
  AudioPacketPlace place;
  av_packet_unref(m_packet.get());
  if (m_source->Next(m_packet.get(), place)) {
    Decode(place);
    return true;
  }
  if (m_source->ReadFailed()) return false;
  m_drained = true;
  Drain();
  return !m_block.empty();
}

void PacketReader::Decode(const AudioPacketPlace& place) {
  m_block.clear();
  if (place.fresh && OpenDecoder()) return;
  if (m_packet->size == 0) {
    // What follows is decoded as after a seek to it, without what came before the gap.
    avcodec_flush_buffers(m_codec.get());
  } else if (avcodec_send_packet(m_codec.get(), m_packet.get()) >= 0) {
    TakeFrames(place);
  }
  m_blockStart = place.start + place.frames - static_cast<std::int64_t>(m_block.size() / Channels());
}

void PacketReader::Drain() {
  m_block.clear();
  const std::int64_t place = m_source->Info().rawAtDrain;
  if (place >= 0 && avcodec_send_packet(m_codec.get(), nullptr) >= 0) TakeFrames({place, 1 << 20});
  m_blockStart = place;
}

// All that the decoder has ready, as far as the place goes: the last packet of a stream may stand for less
// than it holds.
void PacketReader::TakeFrames(const AudioPacketPlace& place) {
  while (avcodec_receive_frame(m_codec.get(), m_frame.get()) >= 0) {
    if (m_block.empty()) {
      if (!InterleaveFrame(*m_frame, Channels(), m_block)) m_block.clear();
    } else if (InterleaveFrame(*m_frame, Channels(), m_part)) {
      m_block.insert(m_block.end(), m_part.begin(), m_part.end());
    }
  }
  m_block.resize(std::min(m_block.size(), static_cast<std::size_t>(place.frames) * Channels()));
}

}  // namespace

bool AudioPacketSource::ReadFailed() const {
  return m_bytes->Failed();
}
void AudioPacketSource::ForgetFailure() {
  m_bytes->ForgetFailure();
}

std::unique_ptr<AudioFileReader> MakePacketReader(std::unique_ptr<AudioPacketSource> source,
                                                  AudioFileError& error) {
  SilenceLibrary();
  auto reader = std::make_unique<PacketReader>(std::move(source));
  error = reader->OpenDecoder();
  if (error) return nullptr;
  return reader;
}

}  // namespace qm
