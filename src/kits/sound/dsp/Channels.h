#pragma once
#include <cstddef>

namespace qm {

// Interleaved frames of one number of channels into frames of one or two: mono goes to both sides, stereo to
// its mean; of more channels the first two are left and right.
inline void MapChannels(const float* from, std::size_t fromChannels, float* to, std::size_t toChannels,
                        std::size_t frames) {
  for (std::size_t i = 0; i < frames; ++i) {
    const float left = from[i * fromChannels];
    const float right = fromChannels > 1 ? from[i * fromChannels + 1] : left;
    if (toChannels == 1) {
      to[i] = 0.5f * (left + right);
    } else {
      to[2 * i] = left;
      to[2 * i + 1] = right;
    }
  }
}

}  // namespace qm
