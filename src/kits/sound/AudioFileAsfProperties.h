#pragma once
#include <cstdint>
#include <optional>
#include <string_view>

namespace qm {

// The duration in an ASF file's properties object (Advanced Systems Format, section 3.2).
struct AsfDuration {
  std::size_t position = 0;    // of the stored duration, 8 bytes
  std::uint64_t preroll = 0;   // 100 ns; the stored duration has it on top
  std::uint64_t playback = 0;  // 100 ns, preroll taken off

  std::int64_t Frames(std::int32_t sampleRate) const;
  // The 8 bytes' value for that many frames.
  std::uint64_t StoredFor(std::int64_t frames, std::int32_t sampleRate) const;
};

// How much of a file's beginning is needed to find it.
inline constexpr std::size_t kAsfHeadBytes = 1 << 16;

// None when the object is not there, or marked as one that was never completed.
std::optional<AsfDuration> FindAsfDuration(std::string_view head);

}  // namespace qm
