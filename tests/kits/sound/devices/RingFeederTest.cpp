#include "kits/sound/devices/RingFeeder.h"

#include <gtest/gtest.h>

#include "DeviceBench.h"

// The ring between mixer and device, with all threads but the readers' played by the test.
namespace qm {
namespace {

using test::AsFloat;
using test::DeviceBench;
using test::Find;
using test::HandDevice;
using test::Unbroken;
using test::WaitFor;

constexpr std::size_t kPeriod = 512;
constexpr std::size_t kAdvance = 2400;  // 50 ms

struct HandBench {
  HandBench() : device(new HandDevice), feeder(device->feeder), bench(std::unique_ptr<Device>(device)) {}

  // What the render thread does, until the ring is full or rendering stands at a notification.
  void RenderUp() {
    ASSERT_TRUE(WaitFor([&] {
      feeder.RenderAhead();
      return feeder.Ring().Fill() >= feeder.TargetFrames() || feeder.GetMixer().HasPending();
    }));
  }
  // The host answers everything until the ring is full.
  void PumpUp() {
    ASSERT_TRUE(WaitFor([&] {
      bench.engine->Pump();
      return feeder.Ring().Fill() >= feeder.TargetFrames();
    }));
  }
  // The device takes sound period by period, the render thread follows.
  void Take(std::size_t frames) {
    for (std::size_t taken = 0; taken < frames; taken += kPeriod) {
      device->Pull(kPeriod);
      RenderUp();
    }
  }

  HandDevice* device;  // the engine's
  RingFeeder& feeder;
  DeviceBench bench;
};

class RingFeederTest : public ::testing::Test, protected HandBench {};

// The second player is started from the first one's mark, by a host that comes back only when nearly the
// whole advance has been taken.
TEST_F(RingFeederTest, AHostWithinTheAdvanceStartsOnTheExactFrame) {
  const auto first = Unbroken(24000, 0.4, 1), second = Unbroken(9600, 0.4, 2);
  auto a = bench.Player(bench.Wav("a", first)), b = bench.Player(bench.Wav("b", second));
  constexpr std::size_t mark = 4801;
  std::vector<float> expected = AsFloat(first);
  const auto added = AsFloat(second);
  for (std::size_t i = 0; i < added.size(); ++i) expected[mark * 2 + i] += added[i];
  a->AddPositionEvent({static_cast<float>(mark) / 48000.0f, 1, 0});
  a->events.Mark.connect([&](auto...) { b->Play(); });
  b->Cue();
  a->Play();
  for (int round = 0; round < 30; ++round) {
    PumpUp();
    Take(kAdvance - kPeriod);
  }
  EXPECT_GE(Find(device->heard, expected), 0);
  EXPECT_EQ(bench.engine->CountMisses().lateAnswers, 0u);
  EXPECT_EQ(bench.engine->CountMisses().dryCallbacks, 0u);
}

// False when a slow machine's readers were late as well, which is not what is looked at.
bool PlayToAHostThatIsLate() {
  HandBench hand;
  auto& [device, feeder, bench] = hand;
  const auto samples = Unbroken(48000);
  auto player = bench.Player(bench.Wav("a", samples));
  player->Play();
  hand.PumpUp();
  hand.Take(38400);
  const auto late = bench.engine->CountMisses().lateAnswers;
  EXPECT_GE(late, 15u) << "25 positions a second, none of them answered";
  hand.PumpUp();
  hand.Take(2 * kPeriod);
  EXPECT_EQ(bench.engine->CountMisses().lateAnswers, late) << "in time again";
  for (int round = 0; round < 10; ++round) {
    hand.PumpUp();
    hand.Take(kAdvance - kPeriod);
  }
  if (bench.engine->CountMisses().voicesNotReady > 0) return false;
  EXPECT_GE(Find(device->heard, AsFloat(samples)), 0);
  return true;
}

TEST_F(RingFeederTest, AHostThatIsLateHearsUnbrokenSoundAndIsCounted) {
  bool readersKeptUp = false;
  for (int attempt = 0; attempt < 20 && !readersKeptUp; ++attempt) readersKeptUp = PlayToAHostThatIsLate();
  EXPECT_TRUE(readersKeptUp);
}

TEST_F(RingFeederTest, ClipsTheSumAndOnlyTheSum) {
  std::vector<std::int16_t> samples;
  std::vector<float> expected;
  for (int i = 0; i < 2000; ++i)
    for (const int value : {32767, -32768, 20000, -20000, 100, -100}) {
      samples.push_back(static_cast<std::int16_t>(value));
      expected.push_back(std::clamp(static_cast<float>(value) / 16384, -1.0f, 1.0f));
    }
  const std::string path = bench.Wav("a", samples);
  auto a = bench.Player(path), b = bench.Player(path);
  a->Play();
  b->Play();
  for (int round = 0; round < 5; ++round) {
    PumpUp();
    Take(2048);
  }
  EXPECT_GE(Find(device->heard, expected), 0);
}

TEST_F(RingFeederTest, CountsADryCallbackOnlyWhileThereIsSomethingToHear) {
  const auto dry = [&] { return bench.engine->CountMisses().dryCallbacks; };
  const auto pullTooMuch = [&] { device->Pull(feeder.Ring().Fill() + 10); };
  pullTooMuch();
  EXPECT_EQ(device->heard.back(), 0);
  EXPECT_EQ(dry(), 0u) << "nothing was meant to sound";
  auto player = bench.Player(bench.Wav("a", Unbroken(24000)));
  player->Play();
  PumpUp();
  EXPECT_GT(feeder.FramesOfSoundLeft(), 0u);
  pullTooMuch();
  pullTooMuch();
  EXPECT_EQ(dry(), 2u);
  EXPECT_EQ(std::vector<float>(device->heard.end() - 20, device->heard.end()), std::vector<float>(20, 0.0f));
  EXPECT_EQ(feeder.FramesOfSoundLeft(), 0u);
  player->Close();
  feeder.RenderAhead();
  Take(4096);
  pullTooMuch();
  EXPECT_EQ(dry(), 2u) << "closed";
  EXPECT_EQ(feeder.FramesOfSoundLeft(), 0u);
}

}  // namespace
}  // namespace qm
