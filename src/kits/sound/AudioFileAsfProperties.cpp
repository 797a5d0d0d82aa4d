#include "kits/sound/AudioFileAsfProperties.h"

#include "kits/common/LittleEndian.h"
#include "kits/common/Numbers.h"

namespace qm {

namespace {

constexpr std::string_view kFileProperties("\xA1\xDC\xAB\x8C\x47\xA9\xCF\x11\x8E\xE4\x00\xC0\x0C\x20\x53\x65",
                                           16);
constexpr std::size_t kDurationAt = 64, kPrerollAt = 80, kFlagsAt = 88;
constexpr std::uint32_t kBroadcast = 1;
constexpr double kTicksOfSecond = 1e7;
constexpr std::uint64_t kTicksOfMillisecond = 10000;
constexpr std::uint64_t kLongest = std::uint64_t{1} << 52;

}  // namespace

std::int64_t AsfDuration::Frames(std::int32_t sampleRate) const {
  return RoundToWhole(static_cast<double>(playback) / kTicksOfSecond * sampleRate);
}

std::uint64_t AsfDuration::StoredFor(std::int64_t frames, std::int32_t sampleRate) const {
  return preroll +
         static_cast<std::uint64_t>(RoundToWhole(static_cast<double>(frames) * kTicksOfSecond / sampleRate));
}

std::optional<AsfDuration> FindAsfDuration(std::string_view head) {
  const std::size_t object = head.find(kFileProperties);
  if (object == std::string_view::npos || object + kFlagsAt + 4 > head.size()) return std::nullopt;
  if (ReadLittleEndian<std::uint32_t>(head, object + kFlagsAt) & kBroadcast) return std::nullopt;
  const auto stored = ReadLittleEndian<std::uint64_t>(head, object + kDurationAt);
  const auto preroll = ReadLittleEndian<std::uint64_t>(head, object + kPrerollAt);
  if (stored > kLongest || preroll > stored / kTicksOfMillisecond) return std::nullopt;
  return AsfDuration{object + kDurationAt, preroll * kTicksOfMillisecond,
                     stored - preroll * kTicksOfMillisecond};
}

}  // namespace qm
