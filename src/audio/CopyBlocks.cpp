#include "audio/CopyBlocks.h"

#include <algorithm>
#include <cmath>

#include "audio/CopySource.h"
#include "audio/StoredFrames.h"
#include "kits/common/LittleEndian.h"
#include "kits/common/Numbers.h"
#include "kits/sound/dsp/FrameConverter.h"

namespace qm {
namespace {

void MakeFinite64(std::vector<std::uint8_t>& stored) {
  for (std::size_t at = 0; at + sizeof(double) <= stored.size(); at += sizeof(double)) {
    const auto value = LoadLittleEndian<double>(stored.data() + at);
    if (std::isfinite(value)) continue;
    StoreLittleEndian(stored.data() + at, std::isnan(value) ? 0.0 : std::copysign(1.0, value));
  }
}

}  // namespace

CopyBlocks::CopyBlocks(CopySource& source, const CopyStretch& stretch, std::int32_t destRate,
                       std::int32_t destChannels)
    : m_source(source), m_stretch(stretch), m_destRate(destRate), m_destChannels(destChannels) {}

CopyBlocks::~CopyBlocks() = default;

bool CopyBlocks::Rewind() {
  m_position = 0;
  m_left = m_stretch.total;
  m_brokenOff = false;
  m_converter = std::make_unique<FrameConverter>(
      [this](float* interleaved, std::size_t frames) { return ReadSource(interleaved, frames); },
      m_source.Format.SampleRate(), m_source.Format.Channels(), m_destRate, m_destChannels);
  return m_source.Reader.Seek(m_stretch.start);
}

bool CopyBlocks::More() const {
  return m_position < m_stretch.total && !m_brokenOff;
}

std::size_t CopyBlocks::ReadSource(float* interleaved, std::size_t frames) {
  const auto wanted = std::min(static_cast<std::int64_t>(frames), m_left);
  const std::size_t got = m_source.Reader.ReadFrames(interleaved, static_cast<std::size_t>(wanted));
  m_left -= static_cast<std::int64_t>(got);
  return got;
}

std::int64_t CopyBlocks::DestFrames(std::int64_t sourceFrames) const {
  if (m_source.Format.SampleRate() == m_destRate) return sourceFrames;
  return RoundToWhole(static_cast<double>(sourceFrames) * m_destRate / m_source.Format.SampleRate());
}

std::int64_t CopyBlocks::SourceFramesFor(std::int64_t destFrames) const {
  const std::int64_t rate = m_source.Format.SampleRate();
  return (destFrames * rate + m_destRate - 1) / m_destRate;
}

bool CopyBlocks::Read(std::int64_t sourceFrames) {
  const auto wanted =
      static_cast<std::size_t>(DestFrames(m_position + sourceFrames) - DestFrames(m_position));
  const auto channels = static_cast<std::size_t>(m_destChannels);
  m_block.resize(wanted * channels);
  const std::size_t got = m_converter->Read(m_block.data(), wanted);
  m_position += sourceFrames;
  m_brokenOff = got < wanted && m_left > 0;
  // A resampler may end within a frame of the exact length.
  std::fill(m_block.begin() + static_cast<std::ptrdiff_t>(got * channels), m_block.end(), 0.0f);
  if (m_brokenOff) m_block.resize(got * channels);
  return got > 0 || !m_brokenOff;
}

bool CopyBlocks::ReadStored(const StoredFrames& stored, std::int64_t sourceFrames) {
  const auto frames = static_cast<std::size_t>(sourceFrames);
  m_storedBlock.resize(frames * stored.FrameBytes());
  const std::size_t got = stored.ReadAt(m_stretch.start + m_position, m_storedBlock.data(), frames);
  m_position += sourceFrames;
  m_brokenOff = got < frames;
  m_storedBlock.resize(got * stored.FrameBytes());
  if (stored.Coding() == SampleCoding::float64) MakeFinite64(m_storedBlock);
  return got > 0;
}

}  // namespace qm
