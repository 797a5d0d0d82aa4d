#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "audio/qmPeakFileHeader.h"

// The bytes of a peak file: docs/peak-files.md.
namespace qm {

inline constexpr std::size_t kPeakHeaderBytes = 256;
inline constexpr std::int32_t kPeakSamplingInterval = 500;
// 1.000002 in single precision: the bytes 11 00 80 3F.
inline constexpr float kPeakHeaderVersion = 1.0000020265579224f;
// Two values for each interval of the longest audio that a scan covers. A longer file is none of ours.
inline constexpr std::int64_t kMostPeakFileBytes =
    static_cast<std::int64_t>(kPeakHeaderBytes) + (INT32_MAX / kPeakSamplingInterval + 1) * std::int64_t{4};

// The whole header: the file's own date takes the place of the last bytes of Spare.
struct PeakFileHeader : qmPeakFileHeader {
  double PeakFileDate = 0;  // serial days, UTC
};

// Writes the fields into the 256 bytes; those that belong to no field stay as they are.
void StorePeakHeader(const PeakFileHeader& header, char* bytes);
// Fields that the bytes do not reach are 0.
PeakFileHeader LoadPeakHeader(std::string_view bytes);

struct PeakFileContents {
  PeakFileHeader header;
  std::vector<std::int16_t> points;
};

// False when there is no such file, it is empty or cannot be read. Points beyond the longest possible file
// are not read.
bool ReadPeakContents(const std::string& path, PeakFileContents& contents);
// False also when the file is shorter than a header.
bool ReadPeakHeader(const std::string& path, PeakFileHeader& header);

}  // namespace qm
