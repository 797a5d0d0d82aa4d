#include "kits/sound/devices/RingFeeder.h"

#include <algorithm>

namespace qm {
namespace {

constexpr std::size_t kBlockFrames = 256;
constexpr std::size_t kLargestPeriod = 8192;
constexpr double kLatenessSeconds = 0.005;  // of a render thread that is kept from its turn
constexpr double kAnswerMarginSeconds = 0.01;
constexpr double kAwaySeconds = 0.25;

std::size_t Frames(const OutputShape& shape, double seconds) {
  return static_cast<std::size_t>(seconds * shape.format.sampleRate);
}

}  // namespace

RingFeeder::RingFeeder(const OutputShape& shape, double advanceSeconds)
    : m_mixer(shape.format),
      m_channels(static_cast<std::size_t>(shape.format.channels)),
      m_advance(Frames(shape, advanceSeconds)),
      m_away(Frames(shape, kAwaySeconds)),
      m_ring(m_advance + 2 * kLargestPeriod, m_channels),
      m_block(kBlockFrames * m_channels) {
  SetPeriod(shape.periodFrames);
}

void RingFeeder::SetPeriod(std::size_t frames) {
  const std::size_t period = std::min(frames, kLargestPeriod);
  const auto rate = static_cast<double>(m_mixer.Format().sampleRate);
  const auto margin = std::min(m_advance, static_cast<std::size_t>(kAnswerMarginSeconds * rate));
  m_reserve = std::max(period, static_cast<std::size_t>(kLatenessSeconds * rate));
  // The last pull within the time to answer must leave the next one its period.
  m_target = std::max(m_advance, m_advance - margin + 2 * period);
}

void RingFeeder::RenderAhead() {
  std::lock_guard lock(m_rendering);
  for (;;) {
    const std::size_t fill = m_ring.Fill();
    if (fill >= TargetFrames()) break;
    const enRenderPatience patience = fill < ReserveFrames() || HostIsAway() ? erpGoOn : erpStand;
    const std::size_t frames =
        m_mixer.Render(m_block.data(), std::min(TargetFrames() - fill, kBlockFrames), patience);
    if (frames == 0) break;
    Clip(frames);
    m_ring.Write(m_block.data(), frames);
    m_written += frames;
    if (m_mixer.Active()) m_soundEnd = m_written.load();
  }
  m_soundDue.store(m_mixer.Active(), std::memory_order_relaxed);
}

bool RingFeeder::HostIsAway() const {
  return m_pulled - m_pulledAtPump > m_away;
}

void RingFeeder::Clip(std::size_t frames) {
  for (std::size_t i = 0; i < frames * m_channels; ++i) m_block[i] = std::clamp(m_block[i], -1.0f, 1.0f);
}

bool RingFeeder::Pump() {
  m_pulledAtPump = m_pulled.load();
  bool any = false;
  while (m_mixer.DeliverPending()) {
    any = true;
    RenderAhead();
  }
  RenderAhead();
  return any;
}

void RingFeeder::Pull(float* interleaved, std::size_t count) noexcept {
  const std::size_t read = m_ring.Read(interleaved, count);
  m_pulled.fetch_add(read, std::memory_order_relaxed);
  if (read == count) return;
  std::fill_n(interleaved + read * m_channels, (count - read) * m_channels, 0.0f);
  if (m_soundDue.load(std::memory_order_relaxed))
    m_mixer.Counters().dryCallbacks.fetch_add(1, std::memory_order_relaxed);
}

std::uint64_t RingFeeder::FramesOfSoundLeft() const {
  const std::uint64_t end = m_soundEnd, pulled = m_pulled;
  return end > pulled ? end - pulled : 0;
}

}  // namespace qm
