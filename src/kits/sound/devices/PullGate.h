#pragma once
#include <algorithm>
#include <cstddef>

#include "kits/sound/devices/DeviceGate.h"
#include "kits/sound/devices/Output.h"

namespace qm {

// The gate of an output. Silence comes through a shut one.
class PullGate : public DeviceGate<FrameSource> {
 public:
  // Audio thread.
  void Pull(float* interleaved, std::size_t count, std::size_t channels) noexcept {
    if (!Through([&](FrameSource& source) { source.Pull(interleaved, count); }))
      std::fill_n(interleaved, count * channels, 0.0f);
  }
};

}  // namespace qm
