#include "kits/sound/AudioFileAdpcm.h"

#include <algorithm>
#include <cstring>

#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/AudioFileLibrary.h"
#include "kits/sound/AudioFileWave.h"

namespace qm {

namespace {

// Every block begins with the state that decoding it needs, so that a block's place is all there is to know.
class AdpcmSource : public AudioPacketSource {
 public:
  AdpcmSource(std::shared_ptr<AudioFileBytes> bytes, const WaveHeader& header)
      : AudioPacketSource(std::move(bytes)), m_header(header), m_blockFrames(FramesIn(header.blockAlign)) {}

  bool Open();
  const char* DecoderName() const override { return IsIma() ? "adpcm_ima_wav" : "adpcm_ms"; }
  bool FillParameters(AVCodecParameters* parameters) const override;
  bool Next(AVPacket* packet, AudioPacketPlace& place) override;
  bool Position(std::int64_t rawFrame) override {
    m_block = rawFrame / m_blockFrames;
    return true;
  }

 private:
  bool IsIma() const { return m_header.formatTag == wftImaADPCM; }
  std::int64_t FramesIn(std::int64_t bytes) const;

  const WaveHeader m_header;
  const std::int64_t m_blockFrames;
  std::int64_t m_block = 0;  // next to be given
};

std::int64_t AdpcmSource::FramesIn(std::int64_t bytes) const {
  const std::int64_t channels = m_header.channels;
  const std::int64_t left = bytes - (IsIma() ? 4 : 7) * channels;
  if (left < 0) return 0;
  return IsIma() ? 1 + left / (4 * channels) * 8 : 2 + left * 2 / channels;
}

bool AdpcmSource::Open() {
  if (m_header.channels > 2 || m_blockFrames < 2 || m_header.bits != 4) return false;
  m_info.format.SetSampleRate(m_header.sampleRate);
  m_info.format.SetChannels(m_header.channels);
  const std::int64_t whole = m_header.dataBytes / m_header.blockAlign;
  m_info.length = whole * m_blockFrames + FramesIn(m_header.dataBytes % m_header.blockAlign);
  // The last block is filled up; the fact chunk says with how much.
  if (m_header.factFrames >= 0 && m_header.factFrames > m_info.length - m_blockFrames)
    m_info.length = std::min(m_info.length, m_header.factFrames);
  return true;
}

bool AdpcmSource::FillParameters(AVCodecParameters* parameters) const {
  parameters->codec_type = AVMEDIA_TYPE_AUDIO;
  parameters->codec_id = IsIma() ? AV_CODEC_ID_ADPCM_IMA_WAV : AV_CODEC_ID_ADPCM_MS;
  parameters->sample_rate = m_header.sampleRate;
  parameters->block_align = m_header.blockAlign;
  parameters->bits_per_coded_sample = m_header.bits;
  av_channel_layout_default(&parameters->ch_layout, m_header.channels);
  return true;
}

bool AdpcmSource::Next(AVPacket* packet, AudioPacketPlace& place) {
  const std::int64_t at = m_block * m_header.blockAlign;
  const std::int64_t bytes = std::min<std::int64_t>(m_header.blockAlign, m_header.dataBytes - at);
  if (bytes <= 0 || av_new_packet(packet, static_cast<int>(bytes)) < 0) return false;
  if (m_bytes->ReadAt(m_header.dataStart + at, packet->data, static_cast<std::size_t>(bytes)) !=
      static_cast<std::size_t>(bytes))
    return false;
  place = {m_block * m_blockFrames, FramesIn(bytes)};
  ++m_block;
  return true;
}

}  // namespace

std::unique_ptr<AudioPacketSource> MakeAdpcmSource(std::shared_ptr<AudioFileBytes> bytes,
                                                   const WaveHeader& header) {
  auto source = std::make_unique<AdpcmSource>(std::move(bytes), header);
  if (!source->Open()) return nullptr;
  return source;
}

}  // namespace qm
