#pragma once
#include <cstdint>
#include <span>

namespace qm {

class uWaveform;

// A property that the host keeps with the control. Booleans are 0 and -1 as they are kept, and any other
// value than 0 sets them.
struct WaveformProperty {
  const char* name;
  std::int32_t defaultValue;
  std::int32_t (*read)(const uWaveform& control);
  void (*write)(uWaveform& control, std::int32_t value);
};

// In the order in which they are kept.
std::span<const WaveformProperty> PersistedWaveformProperties();

}  // namespace qm
