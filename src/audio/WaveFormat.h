#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace qm {

// The format chunk of a WAV file, the fields that every format has: 18 bytes in the file.
struct tyWaveFormat {
  std::uint16_t FormatTag = 0;  // enWAVFormatTag
  std::uint16_t Channels = 0;
  std::uint32_t SamplesPerSecond = 0;
  std::uint32_t AverageBytesPerSecond = 0;
  std::uint16_t BlockAlign = 0;  // bytes of one frame
  std::uint16_t BitsPerSample = 0;
  std::uint16_t ExtraSize = 0;  // bytes that follow
  friend bool operator==(const tyWaveFormat&, const tyWaveFormat&) = default;
};

inline constexpr std::size_t kWaveFormatBytes = 18;

// Exactly 18 bytes, as in the file.
std::string WaveFormatBytes(const tyWaveFormat& format);
// Fields that the bytes do not reach are 0.
tyWaveFormat WaveFormatFrom(std::string_view bytes);

// What ReadWaveFormat answers besides 0.
enum enWaveReadStatus : std::int32_t {
  ewrOK = 0,
  ewrNoFile = -1,          // missing, empty, or not to be opened
  ewrChunkNotFound = 265,  // no WAVE form, or one without a format
};

// Reads a WAV file's format and the bytes of its audio data, cut to those that the file holds, without
// opening the audio; 0 for a file without a data chunk. Unless the answer is 0 both arguments are left empty.
std::int32_t ReadWaveFormat(const std::string& path, tyWaveFormat& format, std::int64_t& dataLength);

// Data length by average bytes per second; 0 when the format cannot be read or states no rate.
float GetWaveFileLengthSeconds(const std::string& path);

}  // namespace qm
