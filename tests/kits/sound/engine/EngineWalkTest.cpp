#include <gtest/gtest.h>

#include <random>

#include "kits/sound/engine/EngineBench.h"
#include "kits/sound/engine/Mixer.h"

namespace qm {
namespace {

using test::EngineBench;

// Sixteen controls under random commands, given from within notifications and from outside: time never runs
// backwards, samples stay finite, positions stay in the file.
TEST(EngineWalk, RandomCommandsOnSixteenPlayersKeepEveryPromise) {
  EngineBench bench(44100);
  const std::vector<std::string> paths = {bench.SineWav("a", 1.5, 200, 0.1),
                                          bench.SineWav("b", 0.4, 300, 0.1, 48000),
                                          bench.SineWav("c", 2, 100, 0.1, 22050)};
  std::mt19937 random(11);
  const auto unit = [&] { return static_cast<float>(random() % 1000) / 1000; };
  std::vector<std::unique_ptr<ctlVellanPlayer>> players;
  int delivered = 0;
  const auto command = [&](ctlVellanPlayer& player) {
    switch (random() % 16) {
      case 0:
        player.Open(paths[random() % paths.size()]);
        break;
      case 1:
        player.Cue();
        break;
      case 2:
      case 3:
      case 4:
        player.Play();
        break;
      case 5:
        player.Pause();
        break;
      case 6:
        player.Seek(unit() * 100);
        break;
      case 7:
        player.SetVolume(unit() * 100);
        break;
      case 8:
        player.SetPlaySpeed(random() % 2 ? 1 : 0.5f + unit());
        break;
      case 9:
        player.SetTimeStretchRatio(random() % 4 ? 1 : 0.8f + unit() * 0.4f);
        break;
      case 10:
        player.AddPositionEvent({unit() * 2, static_cast<std::int32_t>(random() % 4), 0});
        break;
      case 11:
        player.SetLoopStart(unit());
        player.SetLoopEnd(unit() * 2);
        player.SetUseLoop(random() % 2);
        break;
      case 12:
        player.SetLoopCount(static_cast<std::int32_t>(random() % 4));
        break;
      case 13:
        player.ExitLoop();
        break;
      case 14:
        player.AddVolumeChange({.Reference = static_cast<std::int16_t>(random() % 3),
                                .StartTime = unit(),
                                .Duration = unit(),
                                .StartVolume = 100 * unit(),
                                .EndVolume = 100 * unit(),
                                .NotifyVolume = 50,
                                .RemoveWhenComplete = random() % 2 == 0,
                                .SetVolumePermanently = random() % 2 == 0});
        break;
      default:
        random() % 3 ? player.SetAudioEnd(unit() * 2) : static_cast<void>(player.Close());
        break;
    }
  };
  for (int i = 0; i < 16; ++i) {
    players.push_back(bench.Player());
    ctlVellanPlayer& player = *players.back();
    const auto react = [&] {
      ++delivered;
      if (random() % 8 == 0) command(*players[random() % players.size()]);
    };
    player.events.Position.connect([&, react] {
      EXPECT_GE(player.SecondsPlayed(), 0);
      EXPECT_LE(player.SecondsPlayed(), 2.001f);
      EXPECT_GE(player.SecondsRemaining(), 0);
      react();
    });
    player.events.Mark.connect([react](std::int32_t, std::int32_t) { react(); });
    player.events.AudioEnd.connect(react);
    player.events.LoopRestart.connect(react);
    player.events.VolumeNotify.connect([react](std::int16_t) { react(); });
    player.Open(paths[static_cast<std::size_t>(i) % paths.size()]);
    player.Play();
  }
  std::int64_t frame = 0;
  for (int step = 0; step < 6000; ++step) {
    if (random() % 4 == 0) command(*players[random() % players.size()]);
    bench.engine->Pump();
    ASSERT_GE(bench.engine->Frame(), frame);
    frame = bench.engine->Frame();
  }
  EXPECT_GT(delivered, 1000);
  for (const float sample : bench.heard) ASSERT_TRUE(std::isfinite(sample));
  EXPECT_EQ(static_cast<std::int64_t>(bench.HeardFrames()), frame)
      << "each frame of the engine is heard once";
}

// What is heard does not depend on the sizes of the blocks it was rendered in.
TEST(EngineWalk, BlockSizesMakeNoDifference) {
  const auto play = [](std::uint32_t seed) {
    EngineBench bench(44100);
    const std::string path = bench.SineWav("a", 1, 440, 0.3, 48000);
    auto device = std::make_unique<OfflineDevice>("blocks", std::make_unique<test::MemorySink>(bench.heard));
    OfflineDevice& blocks = *device;
    bench.device = bench.engine->AddOutput(std::move(device));
    std::string errorText;
    EXPECT_TRUE(blocks.Start(44100, errorText));
    auto player = bench.Player();
    EXPECT_EQ(player->Open(path), 0);
    player->SetLoopStart(0.1f);
    player->SetLoopEnd(0.6f);
    player->SetUseLoop(true);
    player->SetLoopCount(2);
    player->Cue();
    player->AddVolumeChange(
        {.Reference = 1, .StartTime = 0.3f, .Duration = 0.5f, .StartVolume = 100, .EndVolume = 20});
    player->Play();
    std::mt19937 random(seed);
    std::vector<float> out;
    std::vector<float> block(2 * 5000);
    while (blocks.GetMixer()->Active()) {
      const std::size_t frames = seed == 0 ? 4096 : 1 + random() % 5000;
      const std::size_t got = blocks.GetMixer()->Render(block.data(), frames, erpFetch);
      out.insert(out.end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(2 * got));
      blocks.GetMixer()->DeliverPending();
    }
    return out;
  };
  const std::vector<float> whole = play(0);
  ASSERT_GT(whole.size(), 2u * 60000);
  for (std::uint32_t seed = 1; seed < 4; ++seed) EXPECT_EQ(play(seed), whole);
}

// A host that is not there: sound goes on past what it has not answered, and each miss is counted.
TEST(EngineWalk, SoundGoesOnPastAnUnansweredNotificationWhenItMust) {
  EngineBench bench(44100);
  const auto noise = test::Noise16(2 * 44100);
  auto player = bench.Player();
  ASSERT_EQ(player->Open(bench.Wav("a", noise)), 0);
  std::string errorText;
  Device* device = bench.engine->FindDevice(2, bench.device - 100, errorText);
  Mixer& mixer = *device->GetMixer();
  player->Cue();
  player->Play();
  std::vector<float> block(2 * 44100);
  ASSERT_EQ(mixer.Render(block.data(), 44100, erpFetch), 1764u) << "stands at the first position";
  EXPECT_EQ(mixer.Render(block.data(), 44100, erpStand), 0u);
  EXPECT_EQ(mixer.Counters().lateAnswers.load(), 0u);
  // The reader has the rest at hand only as far as it was fetched; what is there goes on without a gap.
  const std::size_t more = mixer.Render(block.data(), 100, erpGoOn);
  ASSERT_EQ(more, 100u);
  EXPECT_EQ(mixer.Counters().lateAnswers.load(), 1u);
  for (std::size_t i = 0; i < more; ++i) ASSERT_EQ(std::lrint(block[2 * i] * 32768), noise[2 * (1764 + i)]);
  std::string traced;
  bench.engine->onTrace = [&](const std::string& line) { traced += line; };
  EXPECT_TRUE(bench.engine->Pump());
  EXPECT_NE(traced.find("late answers=1,"), std::string::npos) << traced;
  EXPECT_GT(mixer.Render(block.data(), 44100, erpFetch), 0u);
}

}  // namespace
}  // namespace qm
