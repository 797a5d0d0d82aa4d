#pragma once
#include <cstdint>
#include <limits>

#include "kits/common/Numbers.h"

namespace qm {

// Rounded and held to what a 32-bit number takes: a sample, or a pixel.
inline std::int32_t ToSample(double value) {
  using Range = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(Limit<std::int64_t>(RoundToWhole(value), Range::min(), Range::max()));
}

}  // namespace qm
