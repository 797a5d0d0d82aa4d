#pragma once
#include <string>
#include <vector>

#include "kits/sound/cAudioFile.h"
#include "support/SoundFixtures.h"

namespace qm::test {

// A whole file, decoded in blocks of an odd size.
struct Decoded {
  std::vector<float> samples;  // interleaved
  cAudioFormat format;
  std::int64_t stated = 0;  // frames
  std::string error;

  std::int64_t Frames() const {
    return format.Channels() > 0 ? static_cast<std::int64_t>(samples.size()) / format.Channels() : 0;
  }
};

inline Decoded DecodeFile(const std::string& path) {
  Decoded decoded;
  cAudioFile file;
  file.AllowCompressedOpen(true);
  if (file.OpenForRead(path) == 0) {
    decoded.format = file.Format();
    decoded.stated = file.NumberSamples();
    const auto channels = static_cast<std::size_t>(file.Channels());
    std::vector<float> part(777 * channels);
    while (std::size_t got = file.ReadFrames(part.data(), 777))
      decoded.samples.insert(decoded.samples.end(), part.begin(),
                             part.begin() + static_cast<std::ptrdiff_t>(got * channels));
  }
  decoded.error = file.ErrorText();
  return decoded;
}

}  // namespace qm::test
