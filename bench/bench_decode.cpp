// A whole decode of each type into memory, against the codec library's own program on the same file; then
// what opening and seeking cost in a long file.
#include <algorithm>
#include <random>
#include <vector>

#include "Bench.h"
#include "kits/sound/cAudioFile.h"

namespace qm::bench {
namespace {

constexpr int kRounds = 5;
constexpr double kSeconds = 600;

struct Type {
  const char* name;
  const char* file;
  const char* arguments;
  const char* decoder = "";  // the one that we use, where the program would take another
};

constexpr Type kTypes[] = {
    {"WAV 16-bit", "a.wav", "-c:a pcm_s16le"},
    {"WAV 24-bit", "b.wav", "-c:a pcm_s24le"},
    {"MP3 192 kbit/s", "a.mp3", "-b:a 192k"},
    {"MP2 256 kbit/s", "a.mp2", "-c:a libtwolame -b:a 256k", "-c:a mp2float "},
    {"Ogg Vorbis 192 kbit/s", "a.ogg", "-c:a libvorbis -b:a 192k"},
    {"WMA 192 kbit/s", "a.wma", "-c:a wmav2 -b:a 192k"},
};

bool Decode(const std::string& path, std::vector<float>& memory) {
  cAudioFile file;
  file.AllowCompressedOpen(true);
  if (file.OpenForRead(path) != afeNone) return false;
  const auto frames = static_cast<std::size_t>(file.NumberSamples());
  memory.resize(frames * static_cast<std::size_t>(file.Channels()));
  return file.ReadFrames(memory.data(), frames) == frames;
}

// The shortest of some runs of each, taken in turn so that a busy moment of the machine meets both.
bool Measure(const Type& type, const std::string& path) {
  const std::string command = "ffmpeg -v error -nostdin -threads 1 " + std::string(type.decoder) + "-i '" +
                              path + "' -f null - </dev/null";
  std::vector<float> memory;
  double ours = 1e9, theirs = 1e9;
  for (int round = 0; round < kRounds; ++round) {
    double started = WallSeconds();
    if (!Decode(path, memory)) return false;
    ours = std::min(ours, WallSeconds() - started);
    started = WallSeconds();
    if (std::system(command.c_str()) != 0) return false;
    theirs = std::min(theirs, WallSeconds() - started);
  }
  Row(std::string(type.name) + ", decoding ten minutes", ours * 1000, " ms");
  Row(std::string(type.name) + ", against ffmpeg", ours / theirs, " times", "at most 1.15");
  return true;
}

bool MeasureAccess(const Type& type, const std::string& path) {
  cAudioFile file;
  file.AllowCompressedOpen(true);
  double open = 1e9;
  for (int round = 0; round < kRounds; ++round) {
    const double started = WallSeconds();
    if (file.OpenForRead(path) != afeNone) return false;
    open = std::min(open, WallSeconds() - started);
  }
  constexpr int kSeeks = 200;
  std::mt19937 random(1);
  float frames[512 * 2];
  const double started = WallSeconds();
  for (int i = 0; i < kSeeks; ++i) {
    if (!file.Seek(static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(file.NumberSamples()))))
      return false;
    file.ReadFrames(frames, 512);
  }
  Row(std::string(type.name) + ", opening ten minutes", open * 1000, " ms");
  Row(std::string(type.name) + ", a seek and the first frames", (WallSeconds() - started) / kSeeks * 1000,
      " ms");
  return true;
}

int Run() {
  const Inputs inputs;
  for (const Type& type : kTypes) {
    const std::string path = inputs.Make(type.file, kSeconds, type.arguments);
    if (path.empty() || !Measure(type, path) || !MeasureAccess(type, path)) return 1;
  }
  return 0;
}

}  // namespace
}  // namespace qm::bench

int main() {
  return qm::bench::Run();
}
