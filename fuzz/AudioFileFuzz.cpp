// Any bytes as an audio file: opened, read, positioned and read again. Run with no inputs it begins from
// nothing; scripts of the fuzzer's user may lay short files of each type into the corpus folder.
#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "kits/sound/cAudioFile.h"

namespace {

void Require(bool kept) {
  if (!kept) std::abort();
}

// Reads on until the end or a limit; every sample is finite, and no more come than were stated.
void ReadSome(qm::cAudioFile& file, std::int64_t from) {
  constexpr std::size_t part = 4096;
  const auto channels = static_cast<std::size_t>(file.Channels());
  std::vector<float> samples(part * channels);
  std::int64_t position = from;
  for (int i = 0; i < 64; ++i) {
    const std::size_t got = file.ReadFrames(samples.data(), part);
    if (got == 0) break;
    Require(got <= part);
    position += static_cast<std::int64_t>(got);
    Require(position <= file.NumberSamples());
    for (std::size_t s = 0; s < got * channels; ++s) Require(std::isfinite(samples[s]));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const int memory = memfd_create("audio", 0);
  static const std::string path = "/proc/self/fd/" + std::to_string(memory);
  Require(memory >= 0 && ftruncate(memory, 0) == 0);
  Require(pwrite(memory, data, size, 0) == static_cast<ssize_t>(size));
  qm::cAudioFile file;
  file.AllowCompressedOpen(true);
  if (file.OpenForRead(path) != 0) {
    Require(!file.ErrorText().empty());
    return 0;
  }
  Require(file.Channels() > 0 && file.SampleRate() > 0 && file.NumberSamples() >= 0);
  ReadSome(file, 0);
  const std::int64_t length = file.NumberSamples();
  for (std::int64_t place : {length / 2, length - 1, std::int64_t{0}, length}) {
    if (file.Seek(place)) ReadSome(file, place < 0 ? 0 : place);
  }
  return 0;
}
