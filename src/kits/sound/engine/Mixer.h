#pragma once
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "kits/sound/engine/Notification.h"

namespace qm {

class Voice;

// What a mixer mixes to: frames a second and interleaved channels (1 or 2).
struct OutputFormat {
  std::int32_t sampleRate = 44100;
  std::int32_t channels = 2;
};

// What rendering does where it cannot go on exactly.
enum enRenderPatience : std::int32_t {
  erpStand,  // stops before a notification that is not answered, and before audio that is not read yet
  erpGoOn,   // sound must not break: renders past both, and counts each as a miss
  erpFetch,  // stops before a notification; audio that is not read yet is read within the call (offline)
};

// Missed deadlines since the start. Written by any thread, read by any.
struct EngineCounters {
  std::atomic<std::uint64_t> lateAnswers{0};     // the host did not answer a notification in time
  std::atomic<std::uint64_t> voicesNotReady{0};  // a voice's audio was not read in time: silence in its place
  std::atomic<std::uint64_t> dryCallbacks{0};    // the device asked for sound and found none
};

// Sums voices into one device's frames, in float, and stands at every notification until the host has
// answered it.
//
// Every public call takes the mixer's lock, for at most the time of rendering one block; the audio thread
// makes none. Time is counted in frames rendered since the start.
class Mixer {
 public:
  explicit Mixer(OutputFormat format);
  ~Mixer();

  const OutputFormat& Format() const { return m_format; }
  EngineCounters& Counters() { return m_counters; }

  // Host or render thread (one at a time: the caller of Render is the producer of the device's ring).
  // Renders up to `frames` frames into `interleaved` and returns how many; fewer when it has to stand.
  // Samples are unclipped. Nothing is allocated.
  std::size_t Render(float* interleaved, std::size_t frames, enRenderPatience patience);

  // Host thread. Delivers what is pending, frame by frame in order, and so answers it. False when there was
  // nothing, or when called from within a delivery.
  bool DeliverPending();

  // Any thread. The frame that commands act on: of the notification being delivered, else where rendering
  // stands.
  std::int64_t Frame() const;

  // Any thread. A voice is sounding: playing, or ramping out.
  bool Active() const;
  bool HasPending() const;

  // Any thread. Tells every open voice's owner of a failure of the device.
  void ReportFault(std::int32_t number, const std::string& text);

  // Called, on the thread that renders, when something has become pending. Set before rendering begins.
  std::function<void()> onPending;

  // For the controls. Host thread.
  std::unique_lock<std::mutex> Lock() const { return std::unique_lock(m_mutex); }
  void Attach(const std::shared_ptr<Voice>& voice);
  // The voice leaves with a ramp; its undelivered notifications are dropped.
  void Detach(const std::shared_ptr<Voice>& voice);
  // With the lock held: adds a ramp-out's remaining sound to the mix from the present frame on.
  void AddTail(const float* interleaved, std::size_t frames);
  // With the lock held: something to tell a voice's owner that did not come from rendering.
  void Post(const Voice& voice, enNotification kind, std::int32_t number = 0, const std::string& text = {});
  std::size_t RampFrames() const { return m_rampFrames; }

 private:
  std::size_t FramesToNextStop(std::size_t limit) const;
  std::int64_t FramesToGrid() const;
  bool Sounding() const;
  std::size_t ReadyFrames(std::size_t limit, enRenderPatience patience);
  bool CollectDue();
  void MixBlock(float* interleaved, std::size_t frames);

  const OutputFormat m_format;
  const std::size_t m_rampFrames;     // 5 ms
  const std::int64_t m_positionGrid;  // frames between two position notifications
  EngineCounters m_counters;
  mutable std::mutex m_mutex;
  std::vector<std::shared_ptr<Voice>> m_voices;
  std::vector<float> m_tail;  // ramp-outs still to be heard, a ring of m_rampFrames frames
  std::size_t m_tailAt = 0;
  std::size_t m_tailLeft = 0;
  std::int64_t m_frame = 0;
  std::int64_t m_gridTold = -1;        // frame at which positions were last told
  std::int64_t m_deliveredFrame = -1;  // of the delivery under way, -1 for none
  bool m_standing = false;
  std::vector<Notification> m_pending;
};

}  // namespace qm
