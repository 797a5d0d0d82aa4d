// What it costs to learn what files hold: WAV files against an independent program over the same files, MP3
// files against their tag library alone.
#include <mpegfile.h>
#include <tag.h>

#include <algorithm>
#include <vector>

#include "Bench.h"
#include "item/cHDItem.h"

namespace qm::bench {
namespace {

namespace fs = std::filesystem;

constexpr int kFiles = 1000;

// Copies of a file in a folder of their own.
std::vector<std::string> Copies(const std::string& path, const std::string& folder) {
  fs::create_directory(folder);
  std::vector<std::string> copies;
  for (int i = 0; i < kFiles; ++i) {
    copies.push_back(folder + "/" + std::to_string(i) + fs::path(path).extension().string());
    fs::copy_file(path, copies.back());
  }
  return copies;
}

bool LoadAll(const std::vector<std::string>& paths) {
  return std::all_of(paths.begin(), paths.end(),
                     [](const std::string& path) { return cHDItem().LoadFromFile(path); });
}

bool ReadTagsAlone(const std::vector<std::string>& paths) {
  return std::all_of(paths.begin(), paths.end(), [](const std::string& path) {
    TagLib::MPEG::File file(path.c_str());
    const TagLib::Tag* tag = file.tag();
    return tag != nullptr && file.audioProperties()->lengthInMilliseconds() > 0 &&
           tag->title().size() + tag->artist().size() + tag->comment().size() + tag->year() > 0;
  });
}

double RunProgram(const std::string& command) {
  return Shortest([&] { return std::system((command + " >/dev/null").c_str()) == 0; });
}

int Run() {
  const Inputs inputs;
  const std::string wav =
      inputs.Make("one.wav", 2, "-c:a pcm_s16le -write_bext 1 -metadata title=Title -metadata artist=Artist");
  const std::string mp3 =
      inputs.Make("one.mp3", 30, "-b:a 128k -metadata title=Title -metadata artist=Artist");
  cHDItem item;
  if (wav.empty() || mp3.empty() || !item.LoadFromFile(wav) || !item.SaveToFile(wav, llfQuillmere)) return 1;
  const std::string waves = inputs.File("waves");
  const auto wavePaths = Copies(wav, waves), mp3Paths = Copies(mp3, inputs.File("songs"));
  Row("items loaded from WAV files a second", kFiles / Shortest([&] { return LoadAll(wavePaths); }), "");
  const double info = RunProgram(QM_PROGRAM " info --json '" + waves + "'");
  Row("WAV files a second through info", kFiles / info, "", "above 3000");
  Row("info on WAV files against mediainfo", info / RunProgram("mediainfo --Output=JSON '" + waves + "'"),
      " times");
  const double alone = Shortest([&] { return ReadTagsAlone(mp3Paths); });
  Row("items loaded from MP3 files against the tag library alone",
      Shortest([&] { return LoadAll(mp3Paths); }) / alone, " times", "at most 1.2");
  return 0;
}

}  // namespace
}  // namespace qm::bench

int main() {
  return qm::bench::Run();
}
