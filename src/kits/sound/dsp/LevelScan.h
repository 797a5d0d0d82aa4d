#pragma once
#include <cstddef>
#include <cstdint>

namespace qm {

// The largest level in a buffer of interleaved float samples (full scale 1), as a percentage of full scale;
// first and second receive those of the first two channels (of mono audio both the same). Levels below the
// least step of samples of that many bits count as silence, 0. Any thread.
float AudioScanBufferForMaxLevel(const float* buffer, std::size_t byteCount, std::int32_t channels,
                                 float& first, float& second, std::int32_t bits);

}  // namespace qm
