#include "kits/sound/record/LevelTrigger.h"

#include <algorithm>
#include <cmath>

namespace qm {

namespace {

constexpr double kLongestHold = 30;  // seconds that are kept in memory
constexpr double kLongestGap = 0.1;

std::uint64_t Frames(double seconds, std::int32_t sampleRate) {
  return static_cast<std::uint64_t>(std::llround(seconds * sampleRate));
}

// A value that is no number counts as none.
double Within(double seconds, double most) {
  return seconds > 0 ? std::min(seconds, most) : 0;
}

}  // namespace

LevelTrigger::LevelTrigger(std::int16_t level, double holdSeconds, std::int32_t sampleRate,
                           std::size_t channels)
    : m_channels(channels),
      m_holdFrames(std::max<std::uint64_t>(1, Frames(Within(holdSeconds, kLongestHold), sampleRate))),
      m_gapFrames(std::min(m_holdFrames / 2, Frames(kLongestGap, sampleRate))) {
  SetLevel(level);
}

void LevelTrigger::SetLevel(std::int16_t level) {
  m_level = static_cast<float>(level) / 32768;
  if (level <= 0) m_open = true;
}

bool LevelTrigger::Loud(const float* frame) const {
  for (std::size_t c = 0; c < m_channels; ++c)
    if (std::fabs(frame[c]) >= m_level) return true;
  return false;
}

// True when the frame completes a run.
bool LevelTrigger::Step(const float* frame) {
  const bool loud = Loud(frame);
  if (m_runFrames == 0 && !loud) return false;
  m_quietFrames = loud ? 0 : m_quietFrames + 1;
  if (m_quietFrames > m_gapFrames) {
    m_runFrames = m_quietFrames = 0;
    m_run.clear();
    return false;
  }
  m_run.insert(m_run.end(), frame, frame + m_channels);
  return ++m_runFrames >= m_holdFrames;
}

bool LevelTrigger::Take(const float* frames, std::size_t count, std::vector<float>& begin) {
  for (std::size_t i = 0; i < count && !m_open; ++i) {
    if (!Step(frames + i * m_channels)) continue;
    m_open = true;
    begin = std::move(m_run);
    begin.insert(begin.end(), frames + (i + 1) * m_channels, frames + count * m_channels);
    m_run = {};
    return true;
  }
  return false;
}

}  // namespace qm
