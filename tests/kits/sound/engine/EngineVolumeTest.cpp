#include <gtest/gtest.h>

#include "kits/sound/engine/EngineBench.h"

// Volume, its ramps, and the promise that nothing clicks.
namespace qm {
namespace {

using test::EngineBench;
using test::Record;
using Lines = std::vector<std::string>;

// A constant at half of full scale makes every gain readable.
std::string ConstantWav(EngineBench& bench, double seconds) {
  return bench.Wav("constant",
                   std::vector<std::int16_t>(static_cast<std::size_t>(seconds * 44100) * 2, 16384));
}

double GainAt(const EngineBench& bench, std::size_t frame) {
  return bench.heard.at(frame * 2) / 0.5;
}

TEST(EngineVolume, FadesFrameByFrameAndTellsItsPoints) {
  EngineBench bench;
  auto player = bench.Player(ConstantWav(bench, 2));
  Lines lines;
  Record(*player, *bench.engine, lines);
  player->Cue();
  ASSERT_TRUE(player->AddVolumeChange({3, 0.5f, 1, 100, 0, 65}));
  player->Play();
  bench.Run();
  for (std::size_t i = 0; i < 88200; i += 97) {
    const double expected = i < 22050 ? 1 : i < 66150 ? 1 - (static_cast<double>(i) - 22050) / 44100 : 0;
    ASSERT_NEAR(GainAt(bench, i), expected, 1e-6) << i;
  }
  EXPECT_EQ(lines,
            (Lines{"22050 VolumeStart 3", "37485 VolumeNotify 3", "66150 VolumeEnd 3", "88200 AudioEnd"}));
  EXPECT_EQ(player->Volume(), 0);
  EXPECT_FALSE(player->RemoveVolumeChange(3)) << "gone when complete";
}

TEST(EngineVolume, NotifiesByTheLevelWhereverTheRampBegins) {
  const struct {
    float start, end, notify;
    const char* told;  // frame of the notification; "" for never
  } rows[] = {{100, 0, 65, "15435"}, {50, 0, 65, "0"}, {100, 80, 65, ""},    {0, 100, 25, "11025"},
              {80, 100, 25, "0"},    {100, 0, -1, ""}, {100, 0, 0, "44100"}, {40, 40, 40, "0"}};
  for (const auto& row : rows) {
    EngineBench bench;
    auto player = bench.Player(ConstantWav(bench, 1.5));
    std::string told;
    player->events.VolumeNotify.connect([&](std::int16_t) { told = std::to_string(bench.engine->Frame()); });
    player->Cue();
    player->AddVolumeChange({3, 0, 1, row.start, row.end, row.notify});
    player->Play();
    bench.Run();
    EXPECT_EQ(told, row.told) << row.start << " to " << row.end << " notify " << row.notify;
  }
}

TEST(EngineVolume, ReturnsAfterAChangeThatIsNotPermanentAndStartsALateOneAtOnce) {
  EngineBench bench;
  auto player = bench.Player(ConstantWav(bench, 3));
  player->SetVolume(80);
  player->Cue();
  player->AddVolumeChange({10, 0.5f, 0.1f, 80, 30, -1, true, false});
  player->AddPositionEvent({1.0f, 31, 0});
  player->events.Mark.connect([&](auto...) { player->AddVolumeChange({11, 0.2f, 1, 80, 20}); });
  player->Play();
  bench.Run();
  EXPECT_NEAR(GainAt(bench, 22000), 0.8, 1e-6);
  EXPECT_NEAR(GainAt(bench, 22050 + 2205), 0.55, 1e-3);
  EXPECT_NEAR(GainAt(bench, 28000), 0.8, 1e-6) << "back to what it was";
  EXPECT_NEAR(GainAt(bench, 44100 + 22050), 0.5, 1e-3) << "its full length, from where it was asked for";
  EXPECT_NEAR(GainAt(bench, 100000), 0.2, 1e-6);
}

TEST(EngineVolume, TellsWholeStepsOfARampAndEveryVolumeSetByHand) {
  EngineBench bench;
  auto player = bench.Player(ConstantWav(bench, 1));
  std::vector<float> told;
  player->events.Volume.connect([&](float volume) { told.push_back(volume); });
  for (const float volume : {130.0f, -5.0f, 0.0f, 101.0f}) player->SetVolume(volume);
  EXPECT_EQ(told, (std::vector<float>{0, 100})) << "clamped, and only where it changed";
  told.clear();
  player->Cue();
  player->AddVolumeChange({3, 0, 0.8f, 100, 0});
  player->Play();
  bench.Run();
  ASSERT_EQ(told.size(), 20u);
  for (std::size_t i = 0; i < told.size(); ++i) EXPECT_NEAR(told[i], 95 - 5 * static_cast<float>(i), 0.01f);
}

// A full-scale low sine moves by at most 2 pi f / rate a sample; a ramp of 5 ms adds at most 1 / 220 of the
// level on each side of a seam.
TEST(EngineVolume, NothingClicks) {
  const struct {
    const char* name;
    void (*command)(ctlVellanPlayer&);
  } rows[] = {{"pause", [](ctlVellanPlayer& p) { p.Pause(); }},
              {"pause and resume", [](ctlVellanPlayer& p) { p.Pause(), p.Play(); }},
              {"stop", [](ctlVellanPlayer& p) { p.Cue(); }},
              {"close", [](ctlVellanPlayer& p) { p.Close(); }},
              {"seek", [](ctlVellanPlayer& p) { p.Seek(71.3); }},
              {"leave the loop", [](ctlVellanPlayer& p) { p.ExitLoop(); }},
              {"volume down", [](ctlVellanPlayer& p) { p.SetVolume(0); }},
              {"volume up", [](ctlVellanPlayer& p) { p.SetVolume(20), p.SetVolume(100); }},
              {"volume jump",
               [](ctlVellanPlayer& p) {
                 p.AddVolumeChange({1, 0, 0, 100, 0});
               }},
              {"speed", [](ctlVellanPlayer& p) { p.SetPlaySpeed(1.04f); }},
              {"stretch", [](ctlVellanPlayer& p) { p.SetTimeStretchRatio(1.1f); }}};
  constexpr double kHertz = 50;
  const float bound = static_cast<float>(2 * std::numbers::pi * kHertz / 44100 + 2.0 / 220);
  for (const std::int32_t deviceRate : {44100, 48000}) {
    for (const auto& row : rows) {
      // Several moments, so that crests and zero crossings are both hit.
      for (const std::int64_t moment : {30000, 30200, 30441, 30700}) {
        EngineBench bench(deviceRate);
        auto player = bench.Player(bench.SineWav("a", 3, kHertz));
        player->SetLoopStart(0.2f);
        player->SetLoopEnd(1.0f);
        player->SetUseLoop(true);
        player->SetLoopCount(100);
        player->Cue();
        player->AddPositionEvent({static_cast<float>(moment) / 44100, 31, 0});
        int seams = 0;
        player->events.Mark.connect([&](auto...) {
          if (seams++ == 0) row.command(*player);
          player->SetUseLoop(false);
        });
        player->Play();
        bench.Run();
        ASSERT_GT(seams, 0) << row.name;
        EXPECT_LT(bench.LargestStep(static_cast<std::size_t>(moment) + 30000), bound)
            << row.name << " at " << moment << ", device " << deviceRate;
      }
    }
  }
}

TEST(EngineVolume, PauseGoesOnWhereItStopped) {
  EngineBench bench;
  const auto noise = test::Noise16(2 * 44100);
  auto player = bench.Player(bench.Wav("a", noise));
  player->AddPositionEvent({0.5f, 31, 0});
  player->events.Mark.connect([&](auto...) {
    player->Pause();
    EXPECT_EQ(player->SecondsPlayed(), 0.5f);
  });
  bench.PlayOut(*player);
  const std::size_t ramp = 220;
  ASSERT_EQ(bench.HeardFrames(), 22050 + ramp);
  player->Play();
  bench.Run();
  ASSERT_EQ(bench.HeardFrames(), 44100 + ramp);
  for (std::size_t i = 22050 + 2 * ramp; i < 44100 + ramp; ++i)
    ASSERT_EQ(bench.Heard16(i), noise[2 * (i - ramp)]) << i;
}

}  // namespace
}  // namespace qm
