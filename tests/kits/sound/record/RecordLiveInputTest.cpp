#include <gtest/gtest.h>
#include <poll.h>

#include <functional>
#include <random>

#include "PushedInput.h"
#include "RecordBench.h"
#include "kits/sound/AudioFileSamples.h"
#include "kits/sound/devices/OutputKeeper.h"
#include "kits/sound/record/RecordingFeed.h"

// Recording from a device: the test pushes what the device's thread would.
namespace qm {
namespace {

using test::FormatOf;
using test::FramesOf;
using test::PushedDevice;
using test::RecordBench;

constexpr std::int32_t kRate = 44100;

class RecordLiveInput : public testing::Test {
 protected:
  RecordLiveInput() {
    bench.UseFeed([device = device] {
      return MakeLiveFeed(std::make_unique<test::PushedInput>(device, OutputFormat{kRate, 1}));
    });
  }
  void Push(const std::vector<std::int16_t>& samples, std::size_t from, std::size_t to) {
    std::vector<float> block(to - from);
    Float16Bit(samples.data() + from, block.size(), block.data());
    device->taker.load()->Push(block.data(), block.size(), eigNone);
  }
  void PumpUntil(const std::function<bool()>& done) {
    while (!done()) {
      pollfd wait{bench.engine->WaitDescriptor(), POLLIN, 0};
      poll(&wait, 1, 50);
      bench.engine->Pump();
    }
  }
  std::vector<std::int16_t> Recorded() { return FramesOf(bench.folder.File("out.wav")); }

  std::shared_ptr<PushedDevice> device = std::make_shared<PushedDevice>();
  RecordBench bench;
  RecordingRequest request = bench.To("out.wav", FormatOf(aftWAV, kRate, 1));
};

TEST_F(RecordLiveInput, EveryFrameIsRecordedAndAPauseIsExact) {
  const auto samples = test::Noise16(200000);
  ASSERT_EQ(bench.control->Open(request), 0) << bench.errorText;
  std::minstd_rand random(3);
  std::vector<std::int16_t> expected;
  bool paused = false;
  for (std::size_t at = 0; at < samples.size();) {
    const std::size_t end = std::min(samples.size(), at + 1 + random() % 2000);
    Push(samples, at, end);
    if (!paused) expected.insert(expected.end(), samples.begin() + at, samples.begin() + end);
    at = end;
    if (random() % 20 == 0) {
      paused = !paused;
      EXPECT_TRUE(paused ? bench.control->Pause() : bench.control->Resume());
    }
  }
  EXPECT_TRUE(bench.control->Stop());
  EXPECT_FLOAT_EQ(bench.control->Position(), static_cast<float>(expected.size()) / kRate);
  EXPECT_EQ(bench.control->Close(erkKeep), 0);
  EXPECT_EQ(Recorded(), expected);
  EXPECT_TRUE(bench.errors.empty()) << bench.errorText;
}

TEST_F(RecordLiveInput, AnOverrunIsCountedAndTold) {
  ASSERT_EQ(bench.control->Open(request), 0);
  const auto samples = test::Noise16(600000);
  Push(samples, 0, samples.size());  // more than the ring holds
  const std::uint64_t lost = bench.control->FramesLost();
  EXPECT_GT(lost, 0u);
  bench.control->Close(erkKeep);
  EXPECT_EQ(Recorded().size() + lost, samples.size());
  EXPECT_EQ(bench.errors, std::vector<std::int32_t>{ereOverrun});
  EXPECT_NE(bench.errorText.find(std::to_string(lost)), std::string::npos) << bench.errorText;
}

TEST_F(RecordLiveInput, ALostDeviceIsToldAndTakenUpAgain) {
  ASSERT_EQ(bench.control->Open(request), 0);
  const auto samples = test::Ramp16(2000);
  Push(samples, 0, 1000);
  device->alive = false;
  PumpUntil([&] { return !bench.errors.empty(); });
  EXPECT_EQ(bench.errorText, "pushed: gone");
  PumpUntil([&] { return device->starts == 2; });
  Push(samples, 1000, 2000);
  bench.control->Close(erkKeep);
  EXPECT_EQ(Recorded(), samples);
  EXPECT_EQ(bench.errors, std::vector<std::int32_t>{edfLost});
}

}  // namespace
}  // namespace qm
