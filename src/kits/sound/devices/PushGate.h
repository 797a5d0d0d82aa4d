#pragma once
#include <cstddef>

#include "kits/sound/devices/DeviceGate.h"
#include "kits/sound/devices/Input.h"

namespace qm {

// The gate of an input.
class PushGate : public DeviceGate<FrameTaker> {
 public:
  // Audio thread.
  void Push(const float* interleaved, std::size_t count, enInputGap gap) noexcept {
    Through([&](FrameTaker& taker) { taker.Push(interleaved, count, gap); });
  }
};

}  // namespace qm
