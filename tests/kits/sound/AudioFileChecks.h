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

// A folder in which other programs make files.
struct Workshop : TempFolder {
  bool Make(const std::string& command) const {
    return RunCommand("cd " + Quoted(Path()) + " && " + command);
  }
  // in.wav by sox, then the file "out" of it by the command, which calls it out.something.
  bool MakeOut(const std::string& format, const std::string& seconds, const std::string& command) const {
    return Make("sox -n " + format + " in.wav synth " + seconds + " pinknoise && " + command +
                " && mv out.* out");
  }
  Decoded Decode(const std::string& name) const { return DecodeFile(File(name)); }
  std::string Bytes(const std::string& name) const { return ReadBytes(File(name)); }
};

inline constexpr char kStereo[] = "-r 44100 -c 2 -b 16";

}  // namespace qm::test
