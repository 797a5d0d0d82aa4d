#pragma once
#include <algorithm>
#include <bit>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "audio/cPeakFile.h"
#include "support/SoundFixtures.h"

namespace qm::test {

// A loaded peak file of these points, interleaved, at an interval of 500 frames.
inline std::shared_ptr<cPeakFile> PeaksOf(const std::vector<std::int16_t>& points, int channels = 1,
                                          int rate = 44100) {
  const auto number = [](double value) { return LittleEndian(std::bit_cast<std::uint64_t>(value), 8); };
  int levels[2] = {0, 0};
  for (std::size_t i = 0; i < points.size(); ++i) {
    int& level = levels[i % static_cast<std::size_t>(channels)];
    level = std::max(level, std::min(std::abs(points[i]), 32767));
  }
  const auto perChannel = static_cast<double>(points.size()) / channels;
  std::string bytes = LittleEndian(0x3F800011, 4) + number(46000) + LittleEndian(1000, 4) +
                      number(perChannel * 500) + LittleEndian(static_cast<std::uint64_t>(rate), 4) +
                      LittleEndian(static_cast<std::uint64_t>(channels), 2) + number(perChannel) +
                      LittleEndian(500, 4) + LittleEndian(static_cast<std::uint64_t>(levels[0]), 2) +
                      LittleEndian(static_cast<std::uint64_t>(levels[1]), 2) + std::string(202, '\0') +
                      number(46000);
  for (const std::int16_t point : points) bytes += LittleEndian(static_cast<std::uint16_t>(point), 2);
  const TempFolder folder;
  WriteBytes(folder.File("a.ppk"), bytes);
  auto peaks = std::make_shared<cPeakFile>();
  if (peaks->ReadPeakFile(folder.File("a.ppk")) != pfeOK) std::abort();
  return peaks;
}

// Points like those of a song with verses and pauses, by whole numbers alone so that they are the same on
// every machine. The channels differ.
inline std::vector<std::int16_t> SongPoints(std::size_t count, int channels = 1) {
  const auto width = static_cast<std::size_t>(channels);
  std::vector<std::int16_t> points = Noise16(count * width);
  for (std::size_t i = 0; i < points.size(); ++i) {
    const std::size_t at = i / width * 1000 / count;  // thousandths of the song
    const std::size_t swell = 400 + (at % 250) * 2, fade = std::min(at * 20, (1000 - at) * 10);
    const std::size_t level = at % 250 > 235 ? 5 : std::min<std::size_t>({swell, fade, 900});
    points[i] =
        static_cast<std::int16_t>(points[i] * static_cast<int>(level) / (i % width == 0 ? 1000 : 1500));
  }
  return points;
}

}  // namespace qm::test
