#include "kits/sound/devices/ClockOutput.h"

#include <algorithm>
#include <chrono>
#include <system_error>

namespace qm {

namespace {
constexpr std::size_t kOwnPeriod = 256;  // nothing is to be gained from longer ones
}

bool ClockOutput::Open(const OutputShape& wanted, enOutputMatch match, std::string& errorText) {
  Close(eocDrop);
  if (wanted.format.sampleRate < 1 || wanted.format.channels < 1 || wanted.periodFrames < 1) {
    errorText = m_name + ": no clock for such a format";
    return false;
  }
  m_shape = wanted;
  if (match == eomNearest) m_shape.periodFrames = std::min(m_shape.periodFrames, kOwnPeriod);
  m_period.assign(m_shape.periodFrames * m_shape.format.channels, 0.0f);
  return true;
}

bool ClockOutput::Start(FrameSource& source, std::string& errorText) {
  try {
    m_thread = std::jthread([this, &source](std::stop_token stop) { Run(stop, source); });
    return true;
  } catch (const std::system_error& error) {
    errorText = m_name + ": " + error.what();
    return false;
  }
}

void ClockOutput::Close(enOutputClose) {
  if (!m_thread.joinable()) return;
  m_thread.request_stop();
  m_thread.join();
  m_thread = {};
}

// Each deadline counts from the start, so the clock does not drift. A clock that comes late pulls four times
// as fast until it is in time again: whoever fills the ring can follow that, but not a burst.
void ClockOutput::Run(std::stop_token stop, FrameSource& source) {
  using Clock = std::chrono::steady_clock;
  const auto framesToTime = [&](std::uint64_t frames) {
    return std::chrono::duration_cast<Clock::duration>(
        std::chrono::duration<double>(static_cast<double>(frames) / m_shape.format.sampleRate));
  };
  const Clock::time_point start = Clock::now();
  const Clock::duration breath = framesToTime(m_shape.periodFrames) / 4;
  std::unique_lock lock(m_mutex);
  for (std::uint64_t pulled = 0;;) {
    source.Pull(m_period.data(), m_shape.periodFrames);
    pulled += m_shape.periodFrames;
    const auto next = std::max(start + framesToTime(pulled), Clock::now() + breath);
    m_wake.wait_until(lock, stop, next, [] { return false; });
    if (stop.stop_requested()) return;
  }
}

}  // namespace qm
