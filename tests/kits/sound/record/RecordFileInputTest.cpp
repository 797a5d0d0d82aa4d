#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <csignal>

#include "RecordBench.h"

// Recording from a file in the place of a device: exact to the frame.
namespace qm {
namespace {

using test::FormatOf;
using test::FramesOf;
using test::RecordBench;

std::vector<std::int16_t> Part(const std::vector<std::int16_t>& samples, std::size_t from, std::size_t to) {
  return {samples.data() + from, samples.data() + to};
}

TEST(RecordFileInput, EveryFrameArrivesAndIsCounted) {
  RecordBench bench;
  const auto samples = test::Noise16(2 * 44100 + 2 * 777);
  bench.UseSamples(samples, 44100, 2);
  ASSERT_EQ(bench.control->Open(bench.To("out.wav", FormatOf(aftWAV, 44100, 2))), 0) << bench.errorText;
  EXPECT_NEAR(bench.control->Length(), 44877.0 / 44100, 1e-6);
  bench.PumpToEnd();
  EXPECT_FLOAT_EQ(bench.control->Position(), 44877.0f / 44100);
  EXPECT_FLOAT_EQ(bench.control->Length(), bench.control->Position());
  EXPECT_EQ(bench.positions.size(), 26u);
  EXPECT_EQ(bench.control->Close(erkKeep), 0);
  EXPECT_EQ(FramesOf(bench.folder.File("out.wav")), samples);
  EXPECT_EQ(bench.states, std::vector<std::int32_t>{ersRecording});
  EXPECT_TRUE(bench.errors.empty()) << bench.errorText;
}

TEST(RecordFileInput, LastsAsLongAndSoundsAsLoudInEveryTypeAndFormat) {
  const struct {
    const char* name;
    std::int32_t type, inRate, inChannels, channels;
  } cases[] = {{"a.wav", aftWAV, 48000, 2, 1}, {"b.wav", aftWAV, 11025, 1, 2},
               {"c.mp3", aftMP3, 44100, 2, 2}, {"d.mp2", aftMP2, 48000, 1, 2},
               {"e.ogg", aftOgg, 44100, 2, 2}, {"f.wma", aftWMA, 44100, 2, 2}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    RecordBench bench;
    std::vector<std::int16_t> samples;
    for (float value : test::Sine(c.inRate, 2 * static_cast<std::size_t>(c.inRate)))
      samples.insert(samples.end(), static_cast<std::size_t>(c.inChannels),
                     static_cast<std::int16_t>(std::lround(value * 32767)));
    bench.UseSamples(samples, static_cast<std::uint32_t>(c.inRate), static_cast<std::uint32_t>(c.inChannels));
    const auto recorded = bench.RecordAll(bench.To(c.name, FormatOf(c.type, 44100, c.channels, 128000)));
    // MPEG Layer 2 has no place for its padding.
    EXPECT_NEAR(static_cast<double>(recorded.size()) / c.channels, 88200, c.type == aftMP2 ? 1680 : 1);
    double power = 0;
    for (const double value : recorded) power += value * value;
    EXPECT_NEAR(std::sqrt(power / static_cast<double>(recorded.size())) / 32768, 0.5 / std::sqrt(2.0), 0.03);
  }
}

// Each frame holds its own number, below any level, except where it is loud.
TEST(RecordFileInput, BeginsAtTheFirstFrameOfWhatOpenedTheTrigger) {
  const struct {
    const char* name;
    std::int16_t level;
    float seconds;
    std::vector<std::pair<std::size_t, std::size_t>> loud;  // runs of frames at 10000
    std::size_t begin;                                      // first frame recorded; 8000: none
  } cases[] = {{"one frame", 10000, 0, {{3210, 3211}}, 3210},
               {"level is reached, not passed", 10001, 0, {{3210, 3211}}, 8000},
               {"click does not hold", 5000, 0.2f, {{1000, 1010}, {4000, 8000}}, 4000},
               {"short gap is bridged", 5000, 0.25f, {{1000, 1500}, {2000, 8000}}, 1000},
               {"long gap ends the run", 5000, 0.25f, {{1000, 1500}, {2400, 8000}}, 2400}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    RecordBench bench;
    std::vector<std::int16_t> samples(8000);
    for (std::size_t i = 0; i < samples.size(); ++i) samples[i] = static_cast<std::int16_t>(i % 1000);
    for (const auto& [from, to] : c.loud)
      for (std::size_t i = from; i < to; ++i) samples[i] = i % 2 ? 10000 : -10000;
    bench.UseSamples(samples, 8000, 1);
    RecordingRequest request = bench.To("out.wav", FormatOf(aftWAV, 8000, 1));
    request.triggerLevel = c.level;
    request.triggerSeconds = c.seconds;
    EXPECT_EQ(bench.RecordAll(request), Part(samples, c.begin, samples.size()));
    EXPECT_EQ(bench.states.size(), c.begin < 8000 ? 2u : 1u);
    EXPECT_EQ(bench.states.front(), ersWaiting);
  }
}

TEST(RecordFileInput, StartLeavesOutSoundALimitIsExactAndDiscardLeavesNoFile) {
  RecordBench bench;
  const auto samples = test::Ramp16(3 * 48000);
  bench.UseSamples(samples, 48000, 1);
  RecordingRequest request = bench.To("out.wav", FormatOf(aftWAV, 48000, 1));
  request.startSeconds = 0.25f;
  EXPECT_EQ(bench.RecordAll(request), Part(samples, 12000, 144000));
  ASSERT_EQ(bench.control->Open(request), 0);
  EXPECT_EQ(bench.control->Open(request), ereOpen);
  bench.control->Close(erkDiscard);
  EXPECT_FALSE(std::filesystem::exists(request.path));
  bench.control->SetLimit(1.5);
  bench.ended = false;
  EXPECT_EQ(bench.RecordAll(bench.To("out.wav", FormatOf(aftWAV, 44100, 1))).size(), 66150u);
  EXPECT_TRUE(bench.ended);
  EXPECT_FLOAT_EQ(bench.control->Position(), 1.5f);
}

TEST(RecordFileInput, WithoutAnInputOrAFormatTheOldFileStays) {
  RecordBench bench;
  test::WriteBytes(bench.folder.File("old.wav"), "old");
  bench.control->SetDeviceNumber(bench.engine->AddInputFile(bench.folder.File("absent.wav")));
  EXPECT_NE(bench.control->Open(bench.To("old.wav", FormatOf(aftWAV, 44100, 2))), 0);
  bench.control->SetDeviceNumber(1);  // the engine has no hardware
  EXPECT_NE(bench.control->Open(bench.To("old.wav", FormatOf(aftWAV, 44100, 2))), 0);
  bench.UseSamples(test::Ramp16(800), 8000, 1);
  for (const auto& format :
       {FormatOf(aftOther, 8000, 1), FormatOf(aftWAV, 8000, 3), FormatOf(aftMP2, 11025, 1)})
    EXPECT_NE(bench.control->Open(bench.To("old.wav", format)), 0);
  EXPECT_EQ(bench.errors.size(), 5u);
  EXPECT_EQ(test::ReadBytes(bench.folder.File("old.wav")), "old");
}

// A limit on the size of files stands for the full disk: the write is refused in the same place.
TEST(RecordFileInput, AFullDiskIsToldAndWhatWasRecordedStays) {
  RecordBench bench;
  const auto samples = test::Noise16(3 * 44100);
  bench.UseSamples(samples, 44100, 1);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, SIG_IGN);
  const rlimit tight{120000, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &tight);
  ASSERT_EQ(bench.control->Open(bench.To("out.wav", FormatOf(aftWAV, 44100, 1))), 0);
  bench.PumpToEnd();
  EXPECT_EQ(bench.control->Close(erkKeep), afeCannotWrite);
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(bench.errors, std::vector<std::int32_t>{afeCannotWrite});
  const auto recorded = FramesOf(bench.folder.File("out.wav"));
  EXPECT_GT(recorded.size(), 44100u);
  EXPECT_EQ(recorded, Part(samples, 0, recorded.size()));
}

// At every moment the file at the path holds all but the last second, for whoever opens it.
TEST(RecordFileInput, TheGrowingFileIsReadableInEveryType) {
  for (const std::int32_t type : {aftWAV, aftMP3, aftMP2, aftOgg, aftWMA}) {
    SCOPED_TRACE(type);
    RecordBench bench;
    bench.UseSamples(test::Noise16(10 * 44100 * 2, 0.1), 44100, 2);
    ASSERT_EQ(bench.control->Open(bench.To("out", FormatOf(type, 44100, 2, 128000))), 0) << bench.errorText;
    for (int pump = 0; pump < 3; ++pump) bench.engine->Pump();
    const double recorded = bench.control->Position();
    EXPECT_GT(recorded, 5);
    EXPECT_GE(static_cast<double>(FramesOf(bench.folder.File("out")).size()) / 2, (recorded - 1) * 44100);
    EXPECT_TRUE(test::RunCommand("ffmpeg -v error -i " + test::Quoted(bench.folder.File("out")) +
                                 " -f wav - | tail -c +45 | wc -c | awk '{exit $1 < " +
                                 std::to_string(static_cast<int>((recorded - 1) * 44100 * 4)) + "}'"));
  }
}

}  // namespace
}  // namespace qm
