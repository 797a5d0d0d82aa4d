#pragma once
#include <cstdint>

namespace qm {

// A loop must leave the reader time to come round.
inline constexpr float kEarliestLoopStart = 4.5f;  // seconds
inline constexpr float kEarliestLoopEnd = 5;
inline constexpr float kShortestLoop = 0.5f;
inline constexpr std::int32_t kEndlessLoops = 1000;  // passes

}  // namespace qm
