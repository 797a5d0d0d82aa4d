#include "kits/sound/devices/LiveDevice.h"

#include <gtest/gtest.h>
#include <poll.h>

#include "DeviceBench.h"
#include "kits/sound/devices/ClockOutput.h"
#include "kits/sound/devices/OutputKeeper.h"

// The device with its own threads, over outputs that do as the test says.
namespace qm {
namespace {

using test::DeviceBench;
using test::OutputScript;
using test::ScriptedOutput;
using test::Unbroken;
using test::WaitFor;

class LiveDeviceTest : public ::testing::Test {
 protected:
  void Begin() {
    auto live = std::make_unique<LiveDevice>("studio", std::make_unique<ScriptedOutput>(real, "card"));
    live->onStateChange = [this](const std::string& line) { states.push_back(line); };
    bench = std::make_unique<DeviceBench>(std::move(live));
    player = bench->Player(bench->Wav("a", Unbroken(480000)));
    player->events.Error.connect([this](std::int32_t number, auto&) { errors.push_back(number); });
  }
  bool PumpUntil(const std::function<bool()>& condition) {
    return WaitFor([&] {
      if (real.alive) real.Pull(64);
      bench->engine->Pump();
      return condition();
    });
  }

  OutputScript real;
  std::vector<std::string> states;
  std::vector<std::int32_t> errors;
  std::unique_ptr<DeviceBench> bench;
  std::unique_ptr<ctlVellanPlayer> player;
};

TEST_F(LiveDeviceTest, LossIsAnErrorAndTimeRunsOnUntilTheDeviceIsBack) {
  Begin();
  ASSERT_TRUE(real.running);
  player->Play();
  ASSERT_TRUE(PumpUntil([&] { return player->SecondsPlayed() > 0; }));
  const float before = player->SecondsPlayed();
  real.alive = false;
  EXPECT_TRUE(PumpUntil([&] { return player->SecondsPlayed() > before + 0.3f; })) << "by the clock";
  EXPECT_EQ(errors, (std::vector<std::int32_t>{edfLost}));
  real.alive = true;
  EXPECT_TRUE(PumpUntil([&] { return states.size() == 2; }));
  EXPECT_TRUE(real.running);
  EXPECT_EQ(errors.size(), 1u);
}

TEST_F(LiveDeviceTest, ADeviceThatWasNeverThereIsToldToTheFirstThatPlays) {
  real.opens = false;
  Begin();
  ASSERT_TRUE(PumpUntil([&] { return states.size() == 1; }));
  EXPECT_TRUE(errors.empty());
  player->Play();
  EXPECT_TRUE(PumpUntil([&] { return !errors.empty(); }));
  EXPECT_EQ(errors, (std::vector<std::int32_t>{edfAbsent}));
  EXPECT_TRUE(PumpUntil([&] { return player->SecondsPlayed() > 0.1f; }));
  real.opens = true;
  EXPECT_TRUE(PumpUntil([&] { return states.size() == 2 && real.running; })) << "it comes later";
}

TEST_F(LiveDeviceTest, WakesAHostThatWaitsOnTheDescriptor) {
  Begin();
  int positions = 0;
  player->events.Position.connect([&] { ++positions; });
  player->Play();
  ASSERT_TRUE(WaitFor([&] {
    real.Pull(512);
    pollfd entry{bench->engine->WaitDescriptor(), POLLIN, 0};
    return poll(&entry, 1, 10) == 1;
  }));
  bench->engine->Pump();
  EXPECT_GT(positions, 0);
}

// Counts what a clock takes.
struct Counter final : FrameSource {
  void Pull(float*, std::size_t count) noexcept override { pulled += count; }
  std::atomic<std::uint64_t> pulled{0};
};

TEST(ClockOutput, IsNeverAheadOfTheSteadyClockAndMakesUpForLateness) {
  ClockOutput clock;
  Counter counter;
  std::string error;
  EXPECT_FALSE(clock.Open({.format = {.sampleRate = 0}}, eomExact, error));
  ASSERT_TRUE(clock.Open({.format = {.sampleRate = 48000}, .periodFrames = 480}, eomExact, error));
  const auto start = std::chrono::steady_clock::now();
  const auto due = [&] {  // frames that time has room for, with the period that is pulled first
    const std::chrono::duration<double> gone = std::chrono::steady_clock::now() - start;
    return static_cast<std::uint64_t>(gone.count() * 48000) + 480;
  };
  ASSERT_TRUE(clock.Start(counter, error));
  for (int i = 1; i <= 20; ++i) {
    ASSERT_TRUE(WaitFor([&] { return counter.pulled >= 480u * static_cast<unsigned>(i); }));
    const std::uint64_t pulled = counter.pulled;
    EXPECT_LE(pulled, due());
  }
  EXPECT_TRUE(WaitFor([&] { return counter.pulled + 960 >= due(); })) << "it catches up, however late it was";
  clock.Close(eocDrop);
  EXPECT_FALSE(clock.Alive());
}

}  // namespace
}  // namespace qm
