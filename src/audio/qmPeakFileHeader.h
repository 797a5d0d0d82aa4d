#pragma once
#include <array>
#include <cstddef>
#include <cstdint>

namespace qm {

// What a peak file says about its audio and about itself. Layout in the file: docs/peak-files.md; this record
// is aligned, the file is not.
struct qmPeakFileHeader {
  float HeaderVersion = 0;
  double AudioLastModified = 0;    // serial days, UTC
  std::int32_t AudioFileSize = 0;  // bytes; the largest number for files beyond it
  double AudioNumberSamples = 0;   // frames
  std::int32_t AudioSampleRate = 0;
  std::int16_t AudioChannels = 0;
  double NumberPeakSamples = 0;       // points of each channel
  std::int32_t SamplingInterval = 0;  // frames from point to point
  std::int16_t MaxLeftLevel = 0;      // largest magnitude among the points, 0 to 32767
  std::int16_t MaxRightLevel = 0;     // 0 for mono
  std::array<std::byte, 210> Spare{};
};

}  // namespace qm
