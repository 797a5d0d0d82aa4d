#pragma once
#include <algorithm>
#include <atomic>
#include <cstddef>
#include <thread>

#include "kits/sound/devices/Output.h"

namespace qm {

// Stands between a device's callback and the source, so that the source can be taken away at any moment
// although nobody knows when the device will call again. Silence comes through a shut gate.
class PullGate {
 public:
  // Control thread.
  void Open(FrameSource& source) { m_source.store(&source); }

  // Control thread. Waits for a pull that is under way, which is as long as copying one period.
  void Shut() {
    m_source.store(nullptr);
    while (m_inside.load()) std::this_thread::yield();
  }

  // Audio thread.
  void Pull(float* interleaved, std::size_t count, std::size_t channels) noexcept {
    m_inside.store(true);
    FrameSource* source = m_source.load();
    if (source)
      source->Pull(interleaved, count);
    else
      std::fill_n(interleaved, count * channels, 0.0f);
    m_inside.store(false);
  }

 private:
  std::atomic<FrameSource*> m_source{nullptr};
  std::atomic<bool> m_inside{false};
};

}  // namespace qm
