#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <tuple>

#include "ProgramRun.h"
#include "kits/draw/Picture.h"

namespace qm {
namespace {

using namespace test;
namespace fs = std::filesystem;

// Twenty seconds of silence, so that what lies over the waveform stands alone.
struct WaveProgram : testing::Test {
  WaveProgram() { WriteBytes(folder.File("a.wav"), Wav16(std::vector<std::int16_t>(160000), 8000, 1)); }

  // The picture and what was said, for a status of 0.
  Picture Draw(const std::string& words) {
    ProgramRun run(folder, Quillmere("wave --png o.png --size 200x100 --back-colour #FFFFFF " + words));
    EXPECT_EQ(run.Status(), 0) << run.Err();
    said = run.Out();
    Picture picture;
    EXPECT_TRUE(ReadPng(folder.File("o.png"), picture));
    return picture;
  }

  TempFolder folder;
  std::string said;
};

TEST_F(WaveProgram, ShowsMarkersHighlightPositionAndView) {
  const Picture picture =
      Draw("a.wav::IntroEnd=5,Extro=15 --end 10 --highlight 6-7 --position 8 --json --line-colour #FF0080");
  ASSERT_EQ(picture.pixels.size(), 200u * 100u);
  const std::tuple<int, int, std::uint32_t, const char*> rows[] = {{50, 40, 0x00FF00, "intro"},
                                                                   {125, 40, 0xA0A0A0, "highlight"},
                                                                   {160, 40, 0x000000, "position"},
                                                                   {110, 60, 0xFF0080, "outline"},
                                                                   {150, 8, 0xFF0000, "extro on the bar"}};
  for (const auto& [x, y, colour, what] : rows) EXPECT_EQ(picture.At(x, y), colour) << what;
  const auto told = nlohmann::json::parse(said);
  EXPECT_EQ(told["totalSeconds"], 20);
  EXPECT_EQ(told["markers"][0]["title"], "Intro 1");
  EXPECT_TRUE(fs::exists(folder.File("Peakfiles/a.ppk")));
}

TEST_F(WaveProgram, ZoomsAndDrawsWithoutABarOrAPeakFileBesideTheAudio) {
  WriteBytes(folder.File("Peakfiles"), "in the way");
  const Picture picture = Draw("a.wav --no-bar --start 4 --zoom 1 --highlight 10-11");
  EXPECT_NE(said.find("0:08.00 to 0:16.00 of 0:20.00"), std::string::npos) << said;
  EXPECT_EQ(picture.At(49, 0), 0xFFFFFFu);
  EXPECT_EQ(picture.At(51, 0), 0xA0A0A0u);
  Draw("a.wav --zoom highlight --highlight 10-11 --single");
  EXPECT_NE(said.find("0:10.00 to 0:11.00"), std::string::npos) << said;
}

}  // namespace
}  // namespace qm
