// What making a peak file costs against what cannot be saved: reading a WAV file, decoding an MP3 file.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "Bench.h"
#include "audio/cPeakFile.h"
#include "kits/sound/cAudioFile.h"

namespace qm::bench {
namespace {

bool ReadThrough(const std::string& path) {
  std::vector<char> buffer(1 << 20);
  const int file = open(path.c_str(), O_RDONLY);
  ssize_t got = 0;
  while ((got = read(file, buffer.data(), buffer.size())) > 0) {
  }
  close(file);
  return got == 0;
}

bool Decode(const std::string& path) {
  cAudioFile audio;
  if (audio.OpenForRead(path) != afeNone) return false;
  constexpr std::size_t kFrames = 8192;
  std::vector<float> buffer(kFrames * static_cast<std::size_t>(audio.Channels()));
  while (audio.ReadFrames(buffer.data(), kFrames) > 0) {
  }
  return audio.LastError() == afeNone;
}

bool Scan(const std::string& path) {
  return cPeakFile().ScanAudioFile(path, "", true) == pfeOK;
}

int Run() {
  const Inputs inputs;
  const std::string wav = inputs.Make("an hour.wav", 3600, "-c:a pcm_s16le");
  const std::string mp3 = inputs.Make("ten minutes.mp3", 600, "-b:a 192k");
  if (wav.empty() || mp3.empty()) return 1;
  ReadThrough(wav);
  const double read = Shortest([&] { return ReadThrough(wav); });
  const double scan = Shortest([&] { return Scan(wav); });
  Row("peak file of an hour of 16-bit stereo WAV", scan * 1000, " ms");
  Row("against reading the file from memory", scan / read, " times", "at most 1.5");
  const double decode = Shortest([&] { return Decode(mp3); });
  Row("peak file of MP3 against decoding it", Shortest([&] { return Scan(mp3); }) / decode, " times",
      "at most 1.1");
  return 0;
}

}  // namespace
}  // namespace qm::bench

int main() {
  return qm::bench::Run();
}
