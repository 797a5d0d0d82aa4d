#include <gtest/gtest.h>
#include <sched.h>

#include <nlohmann/json.hpp>

#include "ProgramRun.h"

namespace qm {
namespace {

using namespace test;
namespace fs = std::filesystem;

std::size_t FilesIn(const TempFolder& folder) {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder.Path()), {}));
}

TEST(CopyProgram, JoinsCutsAndTellsWhatItWrote) {
  TempFolder folder;
  const auto ramp = Ramp16(16000);
  WriteBytes(folder.File("a.wav"), Wav16(ramp, 8000, 1));
  WriteBytes(folder.File("b.wav"), Wav16(std::vector<std::int16_t>(16000), 8000, 1));
  ProgramRun run(folder, Quillmere({"copy", "a.wav", "b.wav", "a.wav", "o.wav", "--start", "0.5", "--end",
                                    "1.75", "--mix", "0.25", "--mix-volume", "100", "--json"}));
  ASSERT_EQ(run.Status(), 0) << run.Err();
  EXPECT_EQ(run.Err(), "");
  EXPECT_EQ(nlohmann::json::parse(run.Out()), nlohmann::json::parse(R"({
    "file": "o.wav", "format": "WAV 8000 Hz mono 16-bit", "seconds": 3.25, "sources": ["a.wav", "b.wav", "a.wav"]})"));
  std::vector<std::int16_t> expected(26000);
  for (std::size_t i = 0; i < 10000; ++i) expected[i] = expected[16000 + i] = ramp[4000 + i];
  std::string bytes;
  for (std::int16_t value : expected) bytes += LittleEndian(static_cast<std::uint16_t>(value), 2);
  EXPECT_TRUE(SoundOf(folder.File("o.wav")) == bytes);
}

// The same as sox makes of it, but for rounding.
TEST(CopyProgram, AgreesWithSox) {
  struct Row {
    std::vector<std::string> options;
    const char* effects;
    int most;  // difference in steps of 16 bits
  };
  const Row rows[] = {
      {{"--channels", "1"}, "remix 1-2", 1},
      {{"--start", "0.3", "--end", "0.9"}, "trim 0.3 0.6", 0},
      {{"--rate", "48000"}, "rate -h 48000", 20},  // white noise up to the edge of the filters
      {{"--normalise", "50"}, "gain -n -6.0206", 1}};
  for (const Row& row : rows) {
    TempFolder folder;
    WriteBytes(folder.File("a.wav"), Wav16(Noise16(2 * 44100, 0.2), 44100, 2));
    std::vector<std::string> words = {"copy", "a.wav", "o.wav"};
    words.insert(words.end(), row.options.begin(), row.options.end());
    ProgramRun run(folder, Quillmere(words));
    ASSERT_EQ(run.Status(), 0) << run.Err();
    ASSERT_TRUE(RunCommand("cd " + folder.Path() + " && sox -D a.wav s.wav " + row.effects));
    const std::string ours = SoundOf(folder.File("o.wav")), theirs = SoundOf(folder.File("s.wav"));
    ASSERT_EQ(ours.size(), theirs.size()) << row.effects;
    for (std::size_t at = 0; at < ours.size(); at += 2) {
      const auto value = [at](const std::string& sound) {
        return static_cast<std::int16_t>(static_cast<std::uint8_t>(sound[at]) |
                                         static_cast<std::uint8_t>(sound[at + 1]) << 8);
      };
      ASSERT_NEAR(value(ours), value(theirs), row.most) << row.effects << " " << at;
    }
  }
}

TEST(CopyProgram, RefusesInOneLineAndLeavesTheOldFile) {
  struct Row {
    std::vector<std::string> words;
    int status;
    const char* told;
  };
  const Row rows[] = {
      {{"gone.wav", "old.wav"}, 1, "gone.wav"},
      {{"a.wav", "text.wav", "old.wav"}, 1, "text.wav"},
      {{"a.wav", "old.wav", "--start", "9"}, 1, "Start Position in the source file was invalid"},
      {{"a.wav", "old.wav", "--start", "0.9", "--end", "0.5"}, 1, "after the End"},
      {{"a.wav", "no/o.mp3"}, 1, "no/o.mp3"},
      {{"odd.wav", "old.wav"}, 1, "--rate"},
      {{"a.wav", "o.mp2", "--rate", "8000"}, 1, "MP2 has no sample rate of 8000 Hz"},
      {{"a.wav"}, 2, "DEST"},
      {{"a.wav", "o.flac"}, 2, "o.flac"},
      {{"a.wav", "old.wav", "--normalise", "0"}, 2, "--normalise"},
      {{"a.wav", "old.wav", "--bitrate", "128"}, 2, "--bitrate"},
      {{"a.wav", "old.wav", "--rate", "44101"}, 2, "44101"},
  };
  TempFolder folder;
  WriteBytes(folder.File("a.wav"), Wav16(Noise16(8000), 8000, 1));
  WriteBytes(folder.File("odd.wav"), Wav16(Noise16(8000), 12345, 1));
  WriteBytes(folder.File("text.wav"), "no audio");
  WriteBytes(folder.File("old.wav"), "old");
  for (const Row& row : rows) {
    auto words = row.words;
    words.insert(words.begin(), "copy");
    ProgramRun run(folder, Quillmere(words));
    EXPECT_EQ(run.Status(), row.status) << row.told;
    ASSERT_EQ(Lines(run.Err()).size(), 1u) << run.Err();
    EXPECT_NE(run.Err().find(row.told), std::string::npos) << run.Err();
    EXPECT_EQ(run.Out(), "");
  }
  EXPECT_EQ(ReadBytes(folder.File("old.wav")), "old");
  EXPECT_EQ(FilesIn(folder), 6u) << "four of them, and what the program printed";
}

TEST(CopyProgram, ASignalCancelsAndLeavesTheOldFile) {
  TempFolder folder;
  std::string header = Wav16({}, 44100, 2);
  WriteBytes(folder.File("long.wav"), header.replace(40, 4, LittleEndian(0x7F000000, 4)));
  fs::resize_file(folder.File("long.wav"), 0x7F000000);  // hours of silence that take no room
  WriteBytes(folder.File("o.mp3"), "old");
  ProgramRun run(folder, Quillmere({"copy", "long.wav", "o.mp3"}));
  while (FilesIn(folder) < 5) sched_yield();  // until it writes beside the old file
  run.Signal(SIGINT);
  EXPECT_EQ(run.Status(), 128 + SIGINT);
  EXPECT_EQ(ReadBytes(folder.File("o.mp3")), "old");
  EXPECT_EQ(FilesIn(folder), 4u);
}

}  // namespace
}  // namespace qm
