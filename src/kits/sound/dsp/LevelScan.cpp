#include "kits/sound/dsp/LevelScan.h"

#include <algorithm>
#include <cmath>

namespace qm {

float AudioScanBufferForMaxLevel(const float* buffer, std::size_t byteCount, std::int32_t channels,
                                 float& first, float& second, std::int32_t bits) {
  const std::size_t samples = byteCount / sizeof(float);
  const auto stride = static_cast<std::size_t>(std::max(channels, 1));
  const float leastStep = std::exp2(1.0f - static_cast<float>(bits));
  const auto percent = [leastStep](float level) { return level < leastStep ? 0.0f : level * 100; };
  // Both in one run over the buffer when there are two: the common case stays a loop of vector code.
  float even = 0, odd = 0, others = 0;
  if (stride <= 2) {
    std::size_t i = 0;
    for (; i + 1 < samples; i += 2) {
      even = std::max(even, std::fabs(buffer[i]));
      odd = std::max(odd, std::fabs(buffer[i + 1]));
    }
    if (i < samples) even = std::max(even, std::fabs(buffer[i]));
    if (stride == 1) even = odd = std::max(even, odd);
  } else {
    for (std::size_t i = 0; i < samples; ++i) {
      float& level = i % stride == 0 ? even : i % stride == 1 ? odd : others;
      level = std::max(level, std::fabs(buffer[i]));
    }
  }
  first = percent(even);
  second = percent(odd);
  return percent(std::max({even, odd, others}));
}

}  // namespace qm
