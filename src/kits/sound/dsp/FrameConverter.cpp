#include "kits/sound/dsp/FrameConverter.h"

#include <algorithm>

#include "kits/sound/dsp/AudioProcessor.h"
#include "kits/sound/dsp/Resampler.h"

namespace qm {

namespace {

constexpr std::size_t kPartFrames = 4096;
constexpr float kHalfPower = 0.70710678f;

// What a source channel of more than two gives to the left (0) or right (1) side.
float SurroundShare(std::size_t channel, std::size_t side) {
  if (channel < 2) return channel == side ? 1.0f : 0.0f;
  if (channel == 2) return kHalfPower;
  if (channel == 3) return 0;
  return channel % 2 == side ? kHalfPower : 0.0f;
}

float Share(std::size_t channel, std::size_t sources, std::size_t side, std::size_t sides) {
  if (sources <= 2 && sides == 1) return 1;
  if (sources == 1) return 1;
  if (sources == 2) return channel == side ? 1.0f : 0.0f;
  if (sides == 1) return SurroundShare(channel, 0) + SurroundShare(channel, 1);
  return SurroundShare(channel, side);
}

std::vector<float> Shares(std::size_t sources, std::size_t sides) {
  std::vector<float> shares(sources * sides);
  for (std::size_t side = 0; side < sides; ++side) {
    float sum = 0;
    for (std::size_t channel = 0; channel < sources; ++channel)
      sum += shares[side * sources + channel] = Share(channel, sources, side, sides);
    for (std::size_t channel = 0; channel < sources; ++channel) shares[side * sources + channel] /= sum;
  }
  return shares;
}

}  // namespace

FrameConverter::FrameConverter(Source source, std::int32_t sourceRate, std::int32_t sourceChannels,
                               std::int32_t destRate, std::int32_t destChannels)
    : m_source(std::move(source)),
      m_sourceChannels(static_cast<std::size_t>(sourceChannels)),
      m_destChannels(static_cast<std::size_t>(destChannels)),
      // The fewer channels are resampled, the sooner it is done.
      m_innerChannels(sourceRate == destRate ? m_destChannels : std::min(m_sourceChannels, m_destChannels)) {
  if (m_sourceChannels != m_innerChannels) m_shares = Shares(m_sourceChannels, m_innerChannels);
  if (sourceRate == destRate) return;
  m_resampler = std::make_unique<Resampler>(static_cast<double>(destRate) / sourceRate, m_innerChannels);
  m_waiting.resize(kPartFrames * m_innerChannels);
}

FrameConverter::~FrameConverter() = default;

std::size_t FrameConverter::Read(float* interleaved, std::size_t frames) {
  if (!m_resampler) return ReadMixed(interleaved, frames, m_destChannels);
  const std::size_t got = ReadResampled(interleaved, frames);
  if (m_innerChannels == m_destChannels) return got;
  for (std::size_t i = got; i-- > 0;)
    std::fill_n(interleaved + i * m_destChannels, m_destChannels, interleaved[i]);
  return got;
}

std::size_t FrameConverter::ReadResampled(float* interleaved, std::size_t frames) {
  std::size_t done = 0;
  while (done < frames) {
    if (m_taken == m_waitingFrames && !m_ended) {
      m_taken = 0;
      m_waitingFrames = ReadMixed(m_waiting.data(), kPartFrames, m_innerChannels);
      LimitRange({m_waiting.data(), m_waitingFrames * m_innerChannels});
      m_ended = m_waitingFrames == 0;
    }
    const auto moved =
        m_resampler->Process(m_waiting.data() + m_taken * m_innerChannels, m_waitingFrames - m_taken,
                             interleaved + done * m_innerChannels, frames - done);
    m_taken += moved.consumed;
    done += moved.produced;
    if (moved.produced == 0 && moved.consumed == 0) break;
  }
  return done;
}

// Frames of the source with its channels brought to that count.
std::size_t FrameConverter::ReadMixed(float* interleaved, std::size_t frames, std::size_t channels) {
  if (m_shares.empty()) return m_source(interleaved, frames);
  m_read.resize(kPartFrames * m_sourceChannels);
  std::size_t done = 0;
  while (done < frames) {
    const std::size_t got = m_source(m_read.data(), std::min(frames - done, kPartFrames));
    if (got == 0) break;
    for (std::size_t i = 0; i < got; ++i) {
      const float* frame = m_read.data() + i * m_sourceChannels;
      for (std::size_t side = 0; side < channels; ++side) {
        double sum = 0;
        for (std::size_t channel = 0; channel < m_sourceChannels; ++channel)
          sum += static_cast<double>(frame[channel]) *
                 static_cast<double>(m_shares[side * m_sourceChannels + channel]);
        interleaved[(done + i) * channels + side] = static_cast<float>(sum);
      }
    }
    done += got;
  }
  return done;
}

}  // namespace qm
