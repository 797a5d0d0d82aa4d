#include "audio/PeakPointReader.h"

#include <algorithm>

#include "kits/sound/AudioFileSamples.h"
#include "kits/sound/cAudioFile.h"

namespace qm {
namespace {

// Few enough for the buffer to stay in the processor's cache.
constexpr std::int32_t kBlocksOfBuffer = 16;

// Samples lie in the file one by one: going to a frame costs nothing.
bool IsStored(const cAudioFormat& format) {
  return format.FormatType() == aftWAV &&
         (format.WAVFormatTag() == wftPCM || format.WAVFormatTag() == wftFloat);
}

}  // namespace

PeakPointReader::PeakPointReader(cAudioFile& audio, std::int32_t interval)
    : m_audio(audio),
      m_interval(interval),
      m_channels(static_cast<std::size_t>(std::max(audio.Channels(), 1))),
      m_stored(IsStored(audio.Format())) {
  const auto frames = static_cast<std::size_t>(m_stored ? 1 : interval * kBlocksOfBuffer);
  m_buffer.resize(frames * m_channels);
}

std::int32_t PeakPointReader::Next(std::int32_t count) {
  return m_stored ? NextStored(count) : NextDecoded(count);
}

std::int32_t PeakPointReader::NextStored(std::int32_t count) {
  if (!m_audio.Seek(m_position) || m_audio.ReadFrames(m_buffer.data(), 1) == 0) return 0;
  TakePoint(m_buffer.data());
  m_position += count;
  return count;
}

std::int32_t PeakPointReader::NextDecoded(std::int32_t count) {
  if (m_taken == m_filled) Refill();
  const auto frames = std::min(static_cast<std::size_t>(count), m_filled - m_taken);
  if (frames == 0) return 0;
  TakePoint(m_buffer.data() + m_taken * m_channels);
  m_taken += frames;
  return static_cast<std::int32_t>(frames);
}

// Whole blocks, as long as the audio lasts: a read may give fewer frames than asked for.
void PeakPointReader::Refill() {
  const std::size_t room = m_buffer.size() / m_channels;
  m_taken = m_filled = 0;
  while (m_filled < room) {
    const std::size_t got = m_audio.ReadFrames(m_buffer.data() + m_filled * m_channels, room - m_filled);
    if (got == 0) return;
    m_filled += got;
  }
}

void PeakPointReader::TakePoint(const float* frame) {
  FloatTo16Bit(frame, std::min<std::size_t>(m_channels, m_point.size()), m_point.data());
}

}  // namespace qm
