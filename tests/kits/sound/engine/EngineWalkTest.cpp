#include <gtest/gtest.h>

#include <random>

#include "kits/sound/engine/EngineBench.h"
#include "kits/sound/engine/Mixer.h"
#include "kits/sound/engine/RandomHost.h"

namespace qm {
namespace {

using test::EngineBench;

// Commands from within notifications and from outside: time never runs backwards, samples stay finite,
// positions stay in the file.
TEST(EngineWalk, RandomCommandsOnSixteenPlayersKeepEveryPromise) {
  EngineBench bench(44100);
  test::RandomHost host(*bench.engine,
                        {bench.SineWav("a", 1.5, 200, 0.1), bench.SineWav("b", 0.4, 300, 0.1, 48000),
                         bench.SineWav("c", 2, 100, 0.1, 22050)},
                        11);
  int delivered = 0;
  const auto react = [&](auto...) {
    ++delivered;
    if (host.Below(8) == 0) host.DoSomething();
  };
  for (auto& each : host.players) {
    ctlVellanPlayer& player = *each;
    player.events.Position.connect([&, react] {
      EXPECT_GE(player.SecondsPlayed(), 0);
      EXPECT_LE(player.SecondsPlayed(), 2.001f);
      EXPECT_GE(player.SecondsRemaining(), 0);
      react();
    });
    player.events.Mark.connect(react);
    player.events.AudioEnd.connect(react);
    player.events.LoopRestart.connect(react);
    player.events.VolumeNotify.connect(react);
    player.Play();
  }
  std::int64_t frame = 0;
  for (int step = 0; step < 6000; ++step) {
    if (host.Below(4) == 0) host.DoSomething();
    bench.engine->Pump();
    ASSERT_GE(bench.engine->Frame(), frame);
    frame = bench.engine->Frame();
  }
  EXPECT_GT(delivered, 1000);
  for (const float sample : bench.heard) ASSERT_TRUE(std::isfinite(sample));
  EXPECT_EQ(static_cast<std::int64_t>(bench.HeardFrames()), frame) << "each frame is heard once";
}

// What is heard does not depend on the sizes of the blocks it was rendered in.
TEST(EngineWalk, BlockSizesMakeNoDifference) {
  const auto play = [](std::uint32_t seed) {
    EngineBench bench(44100);
    auto player = bench.Player(bench.SineWav("a", 1, 440, 0.3, 48000));
    std::string errorText;
    Mixer& mixer = *bench.engine->FindDevice(2, bench.device - 100, errorText)->GetMixer();
    player->SetLoopStart(0.1f);
    player->SetLoopEnd(0.6f);
    player->SetUseLoop(true);
    player->SetLoopCount(2);
    player->Cue();
    player->AddVolumeChange({1, 0.3f, 0.5f, 100, 20});
    player->Play();
    std::mt19937 random(seed);
    std::vector<float> out, block(2 * 5000);
    while (mixer.Active()) {
      const std::size_t frames = seed == 0 ? 4096 : 1 + random() % 5000;
      const std::size_t got = mixer.Render(block.data(), frames, erpFetch);
      out.insert(out.end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(2 * got));
      mixer.DeliverPending();
    }
    return out;
  };
  const std::vector<float> whole = play(0);
  ASSERT_GT(whole.size(), 2u * 60000);
  for (std::uint32_t seed = 1; seed < 4; ++seed) EXPECT_EQ(play(seed), whole);
}

}  // namespace
}  // namespace qm
