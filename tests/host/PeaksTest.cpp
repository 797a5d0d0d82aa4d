#include <gmock/gmock.h>
#include <sched.h>

#include <nlohmann/json.hpp>

#include "ProgramRun.h"
#include "audio/cPeakFile.h"

namespace qm {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;
using Json = nlohmann::json;

struct Outcome {
  int status;
  std::vector<std::string> out, err;
};

Outcome RunPeaks(const TempFolder& folder, const std::string& words) {
  ProgramRun run(folder, Quillmere("peaks " + words));
  const int status = run.Status();
  return {status, Lines(run.Out()), Lines(run.Err())};
}

TEST(PeaksProgram, MakesWhatIsMissingAndGoesOnAfterABadFile) {
  TempFolder folder;
  fs::create_directories(folder.File("wall/deep"));
  WriteBytes(folder.File("wall/a.wav"), Wav16(Noise16(5000), 8000, 1));
  WriteBytes(folder.File("wall/b.wav"), "no audio");
  WriteBytes(folder.File("wall/deep/c.wav"), Wav16(Noise16(3000), 8000, 2));

  Outcome ran = RunPeaks(folder, "--check wall/a.wav wall/deep");
  EXPECT_EQ(ran.status, 1);
  EXPECT_THAT(ran.out, ElementsAre("missing   wall/a.wav", "missing   wall/deep/c.wav"));
  EXPECT_THAT(ran.err, ElementsAre("quillmere: 2 of 2 files have no valid peak file"));
  EXPECT_FALSE(fs::exists(folder.File("wall/Peakfiles")));

  ran = RunPeaks(folder, "wall gone.wav");
  EXPECT_EQ(ran.status, 1);
  EXPECT_THAT(ran.out, ElementsAre("made      wall/a.wav", "made      wall/deep/c.wav"));
  EXPECT_THAT(ran.err, ElementsAre(HasSubstr("wall/b.wav"), HasSubstr("gone.wav")));

  WriteBytes(folder.File("wall/deep/c.wav"), Wav16(Noise16(4000), 8000, 2));
  EXPECT_THAT(RunPeaks(folder, "--check wall/a.wav wall/deep").out,
              ElementsAre("valid     wall/a.wav", "outdated  wall/deep/c.wav"));
  EXPECT_THAT(RunPeaks(folder, "wall/a.wav wall/deep").out,
              ElementsAre("valid     wall/a.wav", "made      wall/deep/c.wav"));
  ran = RunPeaks(folder, "--force --json wall/a.wav");
  ASSERT_EQ(ran.out.size(), 1u);
  const Json told = Json::parse(ran.out[0]);
  EXPECT_EQ(told["state"], "made");
  EXPECT_EQ(told["peakFile"], "wall/Peakfiles/a.ppk");
  EXPECT_EQ(told["points"], 10);
}

TEST(PeaksProgram, ASignalCancelsAndLeavesWholePeakFilesOnly) {
  TempFolder folder;
  WriteHours(folder.File("a.wav"));
  for (const char* name : {"b.wav", "c.wav", "d.wav"})
    fs::create_hard_link(folder.File("a.wav"), folder.File(name));
  ProgramRun run(folder, Quillmere("peaks a.wav b.wav c.wav d.wav"));
  std::error_code none;
  while (fs::directory_iterator(folder.File("Peakfiles"), none) == fs::directory_iterator()) sched_yield();
  run.Signal(SIGINT);
  EXPECT_EQ(run.Status(), 128 + SIGINT);
  EXPECT_EQ(run.Err(), "");
  EXPECT_FALSE(fs::exists(folder.File("Peakfiles/d.ppk")));
  for (const auto& entry : fs::directory_iterator(folder.File("Peakfiles")))
    EXPECT_TRUE(cPeakFile().CheckPeakFileValid(folder.File(entry.path().stem().string() + ".wav")))
        << entry.path();
}

}  // namespace
}  // namespace qm
