#include <gmock/gmock.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "ProgramRun.h"
#include "kits/common/Registry.h"
#include "kits/sound/devices/DeviceBench.h"
#include "kits/sound/record/RecordBench.h"

namespace qm::cli {
namespace {

using namespace test;
using testing::HasSubstr;

TEST(Record, TakesAFileFrameByFrameAndOtherToolsReadIt) {
  const TempFolder folder;
  const auto samples = Noise16(44100 * 3 * 2);
  WriteBytes(folder.File("in.wav"), Wav16(samples, 44100, 2));
  ProgramRun run(folder, Quillmere("record a.wav --device wav:in.wav --json"));
  ASSERT_EQ(run.Status(), 0) << run.Err();
  const auto told = nlohmann::json::parse(run.Out());
  EXPECT_EQ(told["seconds"], 3.0);
  EXPECT_EQ(told["kept"], true);
  EXPECT_TRUE(RunCommand("cd " + Quoted(folder.Path()) +
                         " && sox in.wav -t raw in.raw && sox a.wav -t raw a.raw && cmp in.raw a.raw"));
  ProgramRun part(folder, Quillmere("record a.ogg --device wav:in.wav --seconds 1.25"));
  ASSERT_EQ(part.Status(), 0) << part.Err();
  EXPECT_THAT(part.Out(), HasSubstr("recorded a.ogg  0:01.25  Ogg 44100 Hz stereo 128 kbit/s"));
  EXPECT_TRUE(RunCommand("test $(soxi -s " + Quoted(folder.File("a.ogg")) + ") = 55125"));
}

TEST(Record, AProfileThatRecordsLocallyBringsTheFileToTheNetwork) {
  const TempFolder folder;
  WriteBytes(folder.File("in.wav"), Wav16(Noise16(44100), 44100, 2));
  FileRegistry(folder.File("quillmere/registry"))
      ->Write("SOFTWARE\\Quillmere\\AudioSettings\\Profiles\\Studio\\Players", "AudioRecordLocal", "-1");
  std::string network = "\\" + folder.File("a.wav");
  std::replace(network.begin(), network.end(), '/', '\\');
  ProgramRun run(folder, {QM_PROGRAM, "record", network, "--device", "wav:in.wav", "--profile", "Studio"});
  ASSERT_EQ(run.Status(), 0) << run.Err();
  EXPECT_EQ(SoundOf(folder.File("a.wav")), SoundOf(folder.File("in.wav")));
}

// A sound server of the test's own, in whose monitor there is silence to record.
class RecordLive : public testing::Test {
 protected:
  void SetUp() override {
    if (!RunCommand("command -v pulseaudio")) GTEST_SKIP() << "pulseaudio is not installed";
    auto words = Split(
        "/usr/bin/pulseaudio -n --daemonize=no --exit-idle-time=-1 --use-pid-file=no "
        "--log-target=stderr -L module-native-protocol-unix -L",
        ' ');
    words.push_back("module-null-sink sink_name=probe rate=44100 channels=2");
    server = std::make_unique<ProgramRun>(folder, words);
    ASSERT_TRUE(WaitFor([this] { return std::filesystem::exists(folder.File("pulse/native")); }));
  }
  double SecondsIn(const std::string& name) const {
    return static_cast<double>(FramesOf(folder.File(name)).size()) / 2 / 44100;
  }

  TempFolder folder;
  std::unique_ptr<ProgramRun> server;
};

TEST_F(RecordLive, AKilledRecordingIsReadableInEveryType) {
  for (const std::string name : {"a.wav", "a.mp3", "a.mp2", "a.ogg", "a.wma"}) {
    ProgramRun run(folder, Quillmere("record " + name));
    ASSERT_TRUE(WaitFor([&] { return SecondsIn(name) >= 1; })) << run.Err();
    run.Signal(SIGKILL);
    EXPECT_EQ(run.Status(), -SIGKILL);
    EXPECT_GE(SecondsIn(name), 1);
    EXPECT_TRUE(RunCommand("ffmpeg -v error -xerror -i " + Quoted(folder.File(name)) + " -f null -")) << name;
  }
  // Of what was on the disk, the header of the WAV file leaves out less than a second.
  const double onDisk = static_cast<double>(std::filesystem::file_size(folder.File("a.wav"))) / 4 / 44100;
  EXPECT_LT(onDisk - SecondsIn("a.wav"), 1);
}

TEST_F(RecordLive, AnInterruptSaves) {
  ProgramRun run(folder, Quillmere("record a.wav"));
  ASSERT_TRUE(WaitFor([&] { return SecondsIn("a.wav") > 0; })) << run.Err();
  run.Signal(SIGINT);
  EXPECT_EQ(run.Status(), 0) << run.Err();
  EXPECT_THAT(run.Out(), HasSubstr("recorded a.wav"));
  EXPECT_TRUE(RunCommand("soxi " + Quoted(folder.File("a.wav"))));
}

}  // namespace
}  // namespace qm::cli
