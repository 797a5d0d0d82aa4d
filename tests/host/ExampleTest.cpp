#include <gtest/gtest.h>

#include "ProgramRun.h"

namespace qm {
namespace {

using namespace test;

TEST(ExamplePlayOne, PlaysAFileAndTellsItsEvents) {
  TempFolder folder;
  WriteBytes(folder.File("in.wav"), Wav16(Noise16(2 * 8820), 44100, 2));
  ProgramRun run(folder, {QM_EXAMPLE, "in.wav", "wav:out.wav"});
  EXPECT_EQ(run.Status(), 0) << run.Err();
  EXPECT_EQ(SoundOf(folder.File("out.wav")), SoundOf(folder.File("in.wav")));
  EXPECT_NE(run.Out().find("frame 0  pePlaying"), std::string::npos) << run.Out();
  EXPECT_NE(run.Out().find("frame 8820  peAudioEndReached"), std::string::npos) << run.Out();
  ProgramRun missing(folder, {QM_EXAMPLE, "gone.wav", "wav:out.wav"});
  EXPECT_EQ(missing.Status(), 1);
  EXPECT_EQ(Lines(missing.Err()).size(), 1u);
}

TEST(ExampleRunningOrder, PlaysTheListAndPrintsItsRecords) {
  TempFolder folder;
  WriteBytes(folder.File("in.wav"), Wav16(Noise16(2 * 8820, 0.4), 44100, 2));
  ProgramRun run(folder, {QM_RUNNING_ORDER, "wav:out.wav", "in.wav", "in.wav"});
  EXPECT_EQ(run.Status(), 0) << run.Err();
  const auto sound = SoundOf(folder.File("in.wav"));
  EXPECT_EQ(SoundOf(folder.File("out.wav")), sound + sound);
  const auto records = Lines(run.Out());
  ASSERT_EQ(records.size(), 3u) << run.Out();
  EXPECT_TRUE(records[1].starts_with("HDRef=\"in.wav\" ")) << run.Out();
  EXPECT_TRUE(records[2].starts_with("HDRef=\"List\" ")) << run.Out();
}

}  // namespace
}  // namespace qm
