#include "kits/sound/devices/OutputKeeper.h"

#include <gtest/gtest.h>

#include <cstring>

#include "DeviceBench.h"

// Loss and return of a device, step by step, at times that the test makes up.
namespace qm {
namespace {

using namespace std::chrono_literals;
using test::OutputScript;
using test::ScriptedOutput;
using Lines = std::vector<std::string>;

class OutputKeeperTest : public ::testing::Test {
 protected:
  struct Silence final : FrameSource {
    void Pull(float* interleaved, std::size_t count) noexcept override {
      std::memset(interleaved, 0, count * 2 * sizeof(float));
    }
  };

  OutputKeeperTest()
      : keeper(std::make_unique<ScriptedOutput>(real, "card"),
               std::make_unique<ScriptedOutput>(clock, "clock"),
               {[this](std::int32_t fault, const std::string& text) {
                  told.push_back(std::to_string(fault) + " " + text);
                },
                [this](const std::string& text) { told.push_back(text); }}) {}

  bool Begin() {
    std::string error;
    const OutputShape wanted{.format = {.sampleRate = 44100}};
    return keeper.Open(wanted, error) && keeper.Start(source, now, error);
  }
  // Time goes by in steps of a check, with whatever plays pulling or not.
  void Pass(OutputKeeper::Duration time, bool pulling = true) {
    for (const auto end = now + time; now < end;) {
      now += OutputKeeper::kCheckInterval;
      for (OutputScript* script : {&real, &clock})
        if (pulling && script->running) script->Pull(4800);
      keeper.Check(now);
    }
  }

  Silence source;
  OutputScript real, clock;
  Lines told;
  OutputKeeper::Time now{};
  OutputKeeper keeper;
};

TEST_F(OutputKeeperTest, LeavesADeviceThatWorksAlone) {
  ASSERT_TRUE(Begin());
  EXPECT_EQ(keeper.Shape().format.sampleRate, 48000) << "the device's own";
  Pass(20s);
  keeper.Close();
  EXPECT_EQ(real.log, (Lines{"open", "start", "hear out"}));
  EXPECT_EQ(clock.log, (Lines{"drop"}));
  EXPECT_EQ(told, Lines{});
}

TEST_F(OutputKeeperTest, ADeviceThatDiesIsReplacedAtOnceAndTriedAgainUntilItIsBack) {
  ASSERT_TRUE(Begin());
  Pass(2s);
  real.log.clear();
  real.alive = real.opens = false;
  Pass(100ms);
  EXPECT_EQ(told, (Lines{"2002 card: unplugged"}));
  EXPECT_TRUE(keeper.Lost() && clock.running);
  Pass(3s);
  EXPECT_EQ(real.log, (Lines{"drop", "open", "open", "open"})) << "once a second";
  real.alive = real.opens = true;
  Pass(1s);
  EXPECT_TRUE(!keeper.Lost() && !clock.running && real.running);
  EXPECT_EQ(told, (Lines{"2002 card: unplugged", "card: the sound device is back"}));
  real.alive = false;
  Pass(100ms);
  EXPECT_EQ(told.size(), 3u) << "each loss is told once";
}

TEST_F(OutputKeeperTest, ADeviceThatComesBackAtAnotherRateOrDoesNotStartIsLeftOut) {
  ASSERT_TRUE(Begin());
  real.alive = false;
  real.shape.format.sampleRate = 44100;
  Pass(3s);
  EXPECT_TRUE(keeper.Lost()) << "the mix runs at 48000";
  real.shape.format.sampleRate = 48000;
  real.alive = true;
  real.starts = false;
  Pass(3s);
  EXPECT_TRUE(keeper.Lost() && clock.running) << "the clock was given its place back";
  EXPECT_EQ(told.size(), 1u);
  real.starts = true;
  Pass(1s);
  EXPECT_FALSE(keeper.Lost());
}

TEST_F(OutputKeeperTest, SilenceIsALossWhenItLasts) {
  ASSERT_TRUE(Begin());
  Pass(3500ms, false);
  EXPECT_FALSE(keeper.Lost()) << "an idle device may take its time at first";
  Pass(2s);
  Pass(900ms, false);
  Pass(100ms);
  Pass(900ms, false);
  EXPECT_FALSE(keeper.Lost());
  Pass(200ms, false);
  EXPECT_TRUE(keeper.Lost());
  EXPECT_EQ(told, (Lines{"2002 card: the sound device asks for no more sound"}));
  EXPECT_EQ(real.log.back(), "drop") << "it is not waited for";
}

TEST_F(OutputKeeperTest, AMachineThatStoodStillHasLostNothing) {
  ASSERT_TRUE(Begin());
  Pass(2s);
  now += 1h;
  keeper.Check(now);
  Pass(500ms, false);
  EXPECT_FALSE(keeper.Lost());
}

}  // namespace
}  // namespace qm
