#include <gtest/gtest.h>

#include "ProgramRun.h"

namespace qm {
namespace {

using namespace test;

struct Refused {
  const char* name;
  std::vector<std::string> words;
  int status;
  const char* told;  // somewhere in the one line

  friend std::ostream& operator<<(std::ostream& out, const Refused& row) { return out << row.name; }
};

class RefusedInput : public testing::TestWithParam<Refused> {};

// Files that are no audio, or not what their names say.
void MakeFiles(const TempFolder& folder) {
  WriteBytes(folder.File("good.wav"), Wav16(Noise16(2 * 4410), 44100, 2));
  WriteBytes(folder.File("empty.wav"), "");
  WriteBytes(folder.File("silent.wav"), Wav16({}, 44100, 2));
  std::string random;
  for (std::int16_t value : Noise16(20000)) random += LittleEndian(static_cast<std::uint16_t>(value), 2);
  WriteBytes(folder.File("random.mp3"), random);
  WriteBytes(folder.File("text.ogg"), "This is no music.\n");
  WriteBytes(folder.File("cut.wav"), ReadBytes(folder.File("good.wav")).substr(0, 30));
}

TEST_P(RefusedInput, IsAnsweredByOneLine) {
  TempFolder folder;
  MakeFiles(folder);
  ProgramRun run(folder, Quillmere(GetParam().words));
  EXPECT_EQ(run.Status(), GetParam().status);
  const auto lines = Lines(run.Err());
  ASSERT_EQ(lines.size(), 1u) << run.Err();
  EXPECT_TRUE(lines[0].starts_with("quillmere: ")) << lines[0];
  EXPECT_NE(lines[0].find(GetParam().told), std::string::npos) << lines[0];
}

const Refused kRefused[] = {
    {"missing", {"play", "gone.wav", "--device", "wav:o.wav"}, 1, "gone.wav"},
    {"empty", {"play", "empty.wav", "--device", "wav:o.wav"}, 1, "empty.wav"},
    {"withoutAudio", {"play", "silent.wav", "--device", "wav:o.wav"}, 1, "silent.wav"},
    {"random", {"play", "random.mp3", "--device", "wav:o.wav"}, 1, "random.mp3"},
    {"mislabelled", {"play", "text.ogg", "--device", "wav:o.wav"}, 1, "text.ogg"},
    {"cutOff", {"play", "cut.wav", "--device", "wav:o.wav"}, 1, "cut.wav"},
    {"folder", {"play", ".", "--device", "wav:o.wav"}, 1, "'.'"},
    {"lineBreakInName", {"play", "a\nb.wav", "--device", "wav:o.wav"}, 1, "a?b.wav"},
    {"nothingBetween", {"play", "good.wav::AudioStart=0.1", "--device", "wav:o.wav"}, 1, "good.wav"},
    {"unknownDevice", {"play", "good.wav", "--device", "No Such Device"}, 1, "No Such Device"},
    {"unwritableSound", {"play", "good.wav", "good.wav", "--device", "wav:no/o.wav"}, 1, "no/o.wav"},
    {"soundIntoFolder", {"play", "good.wav", "--device", "wav:."}, 1, "'.'"},
    {"unwritableEvents", {"play", "good.wav", "--device", "wav:o.wav", "--events", "no/e"}, 1, "no/e"},
    {"fullEvents", {"play", "good.wav", "--device", "wav:o.wav", "--events", "/dev/full"}, 1, "/dev/full"},
    {"unknownField", {"play", "good.wav::Extroo=3", "--device", "wav:o.wav"}, 2, "Extroo"},
    {"badValue", {"play", "good.wav::Extro=soon", "--device", "wav:o.wav"}, 2, "soon"},
    {"noItem", {"play"}, 2, "ITEM"},
    {"badVolume", {"play", "good.wav", "--volume", "101"}, 2, "101"},
    {"rateWithoutFile", {"play", "good.wav", "--device", "null", "--rate", "48000"}, 2, "--rate"},
    {"fileWithoutPath", {"play", "good.wav", "--device", "wav:"}, 2, "wav:"},
    {"unknownCommand", {"sing"}, 2, "sing"},
    {"noCommand", {}, 2, "ommand"},
    {"infoMissing", {"info", "gone.wav", "--json"}, 1, "gone.wav"},
    {"infoRandom", {"info", "random.mp3"}, 1, "random.mp3"},
};
INSTANTIATE_TEST_SUITE_P(Every, RefusedInput, testing::ValuesIn(kRefused),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(BadInput, LeavesTheOtherItemsAndTheOldFileAlone) {
  TempFolder folder;
  MakeFiles(folder);
  const std::string good = SoundOf(folder.File("good.wav"));
  ProgramRun mixed(
      folder, Quillmere({"play", "random.mp3", "good.wav", "gone.wav", "good.wav", "--device", "wav:o.wav"}));
  EXPECT_EQ(mixed.Status(), 1);
  EXPECT_EQ(Lines(mixed.Err()).size(), 2u) << mixed.Err();
  EXPECT_EQ(SoundOf(folder.File("o.wav")), good + good);
  ProgramRun bad(folder, Quillmere({"play", "empty.wav", "--device", "wav:o.wav"}));
  EXPECT_EQ(bad.Status(), 1);
  EXPECT_EQ(SoundOf(folder.File("o.wav")), good + good);
}

}  // namespace
}  // namespace qm
