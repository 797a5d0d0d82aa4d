#include <gtest/gtest.h>
#include <sched.h>

#include <nlohmann/json.hpp>

#include "ProgramRun.h"

namespace qm {
namespace {

using namespace test;
namespace fs = std::filesystem;

TEST(CopyProgram, JoinsCutsAndTellsWhatItWrote) {
  TempFolder folder;
  const auto ramp = Ramp16(16000);
  WriteBytes(folder.File("a.wav"), Wav16(ramp, 8000, 1));
  WriteBytes(folder.File("b.wav"), Wav16(std::vector<std::int16_t>(16000), 8000, 1));
  ProgramRun run(folder, Quillmere("copy a.wav b.wav a.wav o.wav --start 0.5 --end 1.75 --mix 0.25 "
                                   "--mix-volume 100 --json"));
  ASSERT_EQ(run.Status(), 0) << run.Err();
  EXPECT_EQ(run.Err(), "");
  EXPECT_EQ(nlohmann::json::parse(run.Out()), nlohmann::json::parse(R"({
    "file": "o.wav", "format": "WAV 8000 Hz mono 16-bit", "seconds": 3.25, "sources": ["a.wav", "b.wav", "a.wav"]})"));
  std::vector<std::int16_t> expected(26000);
  for (std::size_t i = 0; i < 10000; ++i) expected[i] = expected[16000 + i] = ramp[4000 + i];
  EXPECT_TRUE(SoundOf(folder.File("o.wav")) == Wav16(expected, 8000, 1).substr(44));
}

// The same as sox makes of it, but for rounding.
TEST(CopyProgram, AgreesWithSox) {
  const struct {
    const char* options;
    const char* effects;
    int most;  // difference in steps of 16 bits
  } rows[] = {{"--channels 1", "remix 1-2", 1},
              {"--start 0.3 --end 0.9", "trim 0.3 0.6", 0},
              {"--rate 48000", "rate -h 48000", 20},  // white noise up to the edge of the filters
              {"--normalise 50", "gain -n -6.0206", 1}};
  for (const auto& row : rows) {
    TempFolder folder;
    WriteBytes(folder.File("a.wav"), Wav16(Noise16(2 * 44100, 0.2), 44100, 2));
    ProgramRun run(folder, Quillmere(std::string("copy a.wav o.wav ") + row.options));
    ASSERT_EQ(run.Status(), 0) << run.Err();
    ASSERT_TRUE(RunCommand("cd " + folder.Path() + " && sox -D a.wav s.wav " + row.effects));
    const auto ours = SamplesOf(folder.File("o.wav")), theirs = SamplesOf(folder.File("s.wav"));
    ASSERT_EQ(ours.size(), theirs.size()) << row.effects;
    for (std::size_t i = 0; i < ours.size(); ++i)
      ASSERT_NEAR(ours[i], theirs[i], row.most) << row.effects << " " << i;
  }
}

TEST(CopyProgram, ASignalCancelsAndLeavesTheOldFile) {
  TempFolder folder;
  WriteHours(folder.File("long.wav"));
  WriteBytes(folder.File("o.mp3"), "old");
  const auto files = [&] { return std::distance(fs::directory_iterator(folder.Path()), {}); };
  ProgramRun run(folder, Quillmere("copy long.wav o.mp3"));
  while (files() < 5) sched_yield();  // until it writes beside the old file
  run.Signal(SIGINT);
  EXPECT_EQ(run.Status(), 128 + SIGINT);
  EXPECT_EQ(ReadBytes(folder.File("o.mp3")), "old");
  EXPECT_EQ(files(), 4);
}

}  // namespace
}  // namespace qm
