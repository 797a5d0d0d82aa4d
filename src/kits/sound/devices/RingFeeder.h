#pragma once
#include <atomic>
#include <cstdint>
#include <mutex>
#include <vector>

#include "kits/sound/devices/Output.h"
#include "kits/sound/engine/FrameRing.h"
#include "kits/sound/engine/Mixer.h"

namespace qm {

// A mixer and the ring that its sound waits in until the device pulls it.
//
// The ring is filled to the advance, which is how long a command takes to be heard, give or take the period
// in which the device pulls. Its last period (or the lateness of the render thread, where that is longer) is
// a reserve: while the ring holds as much, the host has time to answer a notification; when it does not,
// sound goes on without the answer. A device of long periods has its ring filled further, so that a host
// always has the advance less 10 ms. One that does not pump at all for a quarter of a second is not waited
// for until it does.
class RingFeeder final : public FrameSource {
 public:
  RingFeeder(const OutputShape& shape, double advanceSeconds);

  Mixer& GetMixer() { return m_mixer; }
  const FrameRing& Ring() const { return m_ring; }
  std::size_t ReserveFrames() const { return m_reserve; }
  std::size_t TargetFrames() const { return m_target; }

  // Control thread: the device asks for another number of frames at once than it did.
  void SetPeriod(std::size_t frames);

  // Host or render thread. Fills the ring, or as much of it as may be rendered now.
  void RenderAhead();

  // Host thread. Delivers what is due and renders on behind it, until nothing is due. True when anything was.
  bool Pump();

  // Audio thread.
  void Pull(float* interleaved, std::size_t count) noexcept override;

  // Any thread. Frames to be pulled until the last frame of sound rendered so far has been.
  std::uint64_t FramesOfSoundLeft() const;

 private:
  bool HostIsAway() const;
  void Clip(std::size_t frames);

  Mixer m_mixer;
  const std::size_t m_channels;
  const std::size_t m_advance;  // frames
  const std::size_t m_away;     // frames
  std::atomic<std::size_t> m_reserve{0};
  std::atomic<std::size_t> m_target{0};
  FrameRing m_ring;
  std::mutex m_rendering;  // held by the ring's producer
  std::vector<float> m_block;
  std::atomic<std::uint64_t> m_written{0};
  std::atomic<std::uint64_t> m_pulled{0};
  std::atomic<std::uint64_t> m_pulledAtPump{0};
  std::atomic<std::uint64_t> m_soundEnd{0};  // counter of m_written behind the last sound
  std::atomic<bool> m_soundDue{false};
};

}  // namespace qm
