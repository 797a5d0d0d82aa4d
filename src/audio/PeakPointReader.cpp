#include "audio/PeakPointReader.h"

#include <algorithm>
#include <cstring>

#include "audio/StoredFrames.h"
#include "kits/sound/AudioFileSamples.h"
#include "kits/sound/cAudioFile.h"

namespace qm {
namespace {

// Blocks read at a time: few enough for the processor's cache, enough to make the calls count for nothing.
constexpr std::size_t kStoredBlocks = 128;
constexpr std::size_t kDecodedBlocks = 16;

// Keeps the first frame of each block; how many there are.
template <class Unit>
std::size_t KeepFirst(const std::vector<Unit>& all, std::size_t frames, std::size_t interval,
                      std::size_t unitsOfFrame, std::vector<Unit>& first) {
  std::size_t points = 0;
  for (std::size_t frame = 0; frame < frames; frame += interval, ++points)
    std::memcpy(first.data() + points * unitsOfFrame, all.data() + frame * unitsOfFrame,
                unitsOfFrame * sizeof(Unit));
  return points;
}

}  // namespace

PeakPointReader::PeakPointReader(cAudioFile& audio, const std::string& path, std::int32_t interval)
    : m_audio(audio),
      m_interval(static_cast<std::size_t>(interval)),
      m_channels(static_cast<std::size_t>(std::max(audio.Channels(), 1))) {
  if (audio.Format().FormatType() == aftWAV) m_stored = StoredFrames::Open(path);
  if (m_stored && m_stored->Channels() != m_channels) m_stored.reset();  // another file by now
  const std::size_t blocks = m_stored ? kStoredBlocks : kDecodedBlocks;
  if (m_stored) {
    m_bytes.resize(blocks * m_interval * m_stored->FrameBytes());
    m_firstBytes.resize(blocks * m_stored->FrameBytes());
  } else {
    m_frames.resize(blocks * m_interval * m_channels);
  }
  m_firstFrames.resize(blocks * m_channels);
  m_points.resize(blocks * m_channels);
}

PeakPointReader::~PeakPointReader() = default;

std::int32_t PeakPointReader::Next(std::int32_t count) {
  if (m_left == 0) Refill();
  const std::size_t frames = std::min(static_cast<std::size_t>(count), m_left);
  m_left -= frames;
  if (frames > 0) ++m_next;
  return static_cast<std::int32_t>(frames);
}

void PeakPointReader::Refill() {
  m_next = 0;
  const std::size_t points = m_stored ? ReadStored() : ReadDecoded();
  FloatTo16Bit(m_firstFrames.data(), points * m_channels, m_points.data());
}

std::size_t PeakPointReader::ReadStored() {
  const std::size_t frameBytes = m_stored->FrameBytes();
  m_left = m_stored->ReadAt(m_position, m_bytes.data(), m_bytes.size() / frameBytes);
  m_position += static_cast<std::int64_t>(m_left);
  const std::size_t points = KeepFirst(m_bytes, m_left, m_interval, frameBytes, m_firstBytes);
  DecodeSamples(m_stored->Coding(), m_firstBytes.data(), points * m_channels, m_firstFrames.data());
  return points;
}

// Whole blocks, as long as the audio lasts: a read may give fewer frames than asked for.
std::size_t PeakPointReader::ReadDecoded() {
  const std::size_t room = m_frames.size() / m_channels;
  while (m_left < room) {
    const std::size_t got = m_audio.ReadFrames(m_frames.data() + m_left * m_channels, room - m_left);
    if (got == 0) break;
    m_left += got;
  }
  return KeepFirst(m_frames, m_left, m_interval, m_channels, m_firstFrames);
}

}  // namespace qm
