#include <gtest/gtest.h>

#include <random>

#include "SoundServerBench.h"
#include "kits/sound/devices/LiveDevice.h"
#include "kits/sound/devices/OutputKeeper.h"
#include "kits/sound/devices/RtAudioOutput.h"
#include "kits/sound/engine/EngineBench.h"

// The whole way to a real sound server, recorded there and compared with what the offline device writes.
//
// A machine with other work to do may keep host, reader or server from their turn, so each is given a few
// attempts; what comes out of a wrong program is wrong at every attempt.
namespace qm {
namespace {

using namespace std::chrono_literals;
using test::EngineBench;
using test::SoundServer;
using test::Unbroken;
using test::WaitFor;

constexpr int kAttempts = 8;

std::unique_ptr<SoundServer> MakeServer(const std::string& name) {
  if (name == "PulseAudio") return std::make_unique<test::PulseServer>();
  return std::make_unique<test::JackServer>();
}

class LivePlay : public ::testing::TestWithParam<std::string> {
 protected:
  using Pause = std::function<std::chrono::milliseconds()>;
  using MakePlayer = std::function<std::unique_ptr<ctlVellanPlayer>()>;

  // Two players, the second started by the first one's mark, and a fade of the first under it.
  struct Link {
    Link(const std::string& first, const std::string& second, const MakePlayer& make) : a(make()), b(make()) {
      a->Open(first);
      b->Open(second);
      a->AddPositionEvent({0.7312f, 61, 0});
      a->AddVolumeChange({1, 0.7312f, 0.25f, 100, 30});
      b->Cue();
      a->events.Mark.connect([this](auto...) { b->Play(); });
      b->events.AudioEnd.connect([this] { ended = true; });
      a->Play();
    }
    std::unique_ptr<ctlVellanPlayer> a, b;
    bool ended = false;
  };

  void SetUp() override {
    server = MakeServer(GetParam());
    if (!server->Installed()) GTEST_SKIP() << server->Program() << " is not installed";
    ASSERT_TRUE(server->Start());
    auto device = std::make_unique<LiveDevice>(
        "live", std::make_unique<RtAudioOutput>(server->Kind(), server->OutputName()));
    device->onStateChange = [this](const std::string& line) { states.push_back(line); };
    live = std::make_unique<test::DeviceBench>(std::move(device));
    engine = live->engine;
    offline = std::make_unique<EngineBench>(48000);
    ASSERT_TRUE(Wake());
    ASSERT_TRUE(server->Record());
  }

  // Until the server takes sound steadily; an idle one may take seconds.
  bool Wake() {
    const auto player = live->Player(live->Wav("wake", std::vector<std::int16_t>(2 * 48000 * 60)));
    player->Play();
    return HostUntil([&] { return player->SecondsPlayed() > 0.5f; });
  }

  // A host that pumps, and does something else in between.
  bool HostUntil(
      const std::function<bool()>& condition, const Pause& pause = [] { return 5ms; }) {
    return WaitFor([&] {
      engine->Pump();
      std::this_thread::sleep_for(pause());
      return condition();
    });
  }

  // What was sent arrives whole and in order. Frames of silence are left out of the comparison: a server that
  // comes late puts some in, and has lost nothing. That none were sent is what the counters say.
  bool Hears(const std::vector<float>& expected, const AudioEngine::Misses& before) {
    const std::size_t recorded = server->Recorded().size();
    WaitFor([&] { return server->Recorded().size() > recorded + 2 * 48000; });
    const auto now = engine->CountMisses();
    return now.dryCallbacks == before.dryCallbacks && now.voicesNotReady == before.voicesNotReady &&
           test::Find(WithoutSilence(server->Recorded()), WithoutSilence(expected)) >= 0;
  }

  static std::vector<float> WithoutSilence(const std::vector<float>& frames) {
    std::vector<float> rest;
    for (std::size_t i = 0; i + 1 < frames.size(); i += 2)
      if (frames[i] != 0 || frames[i + 1] != 0) rest.insert(rest.end(), {frames[i], frames[i + 1]});
    return rest;
  }

  std::unique_ptr<SoundServer> server;
  std::vector<std::string> states;
  std::shared_ptr<AudioEngine> engine;
  std::unique_ptr<test::DeviceBench> live;
  std::unique_ptr<EngineBench> offline;
};

TEST_P(LivePlay, ALinkedStartIsHeardOnTheExactFrameWhileTheHostAnswersWithinTheAdvance) {
  std::minstd_rand random(3);
  bool heard = false;
  for (int attempt = 0; attempt < kAttempts && !heard; ++attempt) {
    const unsigned seed = 10u + 2u * static_cast<unsigned>(attempt);
    const std::string first = offline->Wav("first", Unbroken(72000, 0.4, seed), 48000);
    const std::string second = offline->Wav("second", Unbroken(48000, 0.4, seed + 1), 48000);
    offline->heard.clear();
    const Link exact(first, second, [&] { return offline->Player(); });
    offline->Run();
    ASSERT_GT(offline->HeardFrames(), 80000u);

    const auto before = engine->CountMisses();
    const Link heardLive(first, second, [&] { return live->Player(); });
    ASSERT_TRUE(HostUntil([&] { return heardLive.ended; },
                          [&] { return std::chrono::milliseconds(20 + random() % 21); }));
    heard = Hears(offline->heard, before);
  }
  EXPECT_TRUE(heard);
}

TEST_P(LivePlay, AServerThatDiesIsAnErrorAndSoundReturnsWithIt) {
  auto player = live->Player(live->Wav("endless", Unbroken(48000 * 120)));
  std::vector<std::int32_t> errors;
  player->events.Error.connect([&](std::int32_t number, auto&) { errors.push_back(number); });
  player->Play();
  ASSERT_TRUE(HostUntil([&] { return player->SecondsPlayed() > 0.2f; }));
  server->End(SIGKILL);
  ASSERT_TRUE(HostUntil([&] { return !errors.empty(); }));
  EXPECT_EQ(errors, (std::vector<std::int32_t>{edfLost}));
  const float lostAt = player->SecondsPlayed();
  EXPECT_TRUE(HostUntil([&] { return player->SecondsPlayed() > lostAt + 0.5f; }))
      << "the running order keeps time";
  ASSERT_TRUE(server->Start());
  ASSERT_TRUE(HostUntil([&] { return states.size() == 2; }));
  const float backAt = player->SecondsPlayed();
  ASSERT_TRUE(HostUntil([&] { return player->SecondsPlayed() > backAt + 0.5f; }));
  player.reset();
  ASSERT_TRUE(server->Record());
  bool heard = false;
  for (int attempt = 0; attempt < kAttempts && !heard; ++attempt) {
    const auto before = engine->CountMisses();
    const auto samples = Unbroken(24000, 0.9, 50u + static_cast<unsigned>(attempt));
    player = live->Player(live->Wav("again", samples));
    bool ended = false;
    player->events.AudioEnd.connect([&] { ended = true; });
    player->Play();
    ASSERT_TRUE(HostUntil([&] { return ended; }));
    heard = Hears(test::AsFloat(samples), before);
  }
  EXPECT_TRUE(heard);
  EXPECT_EQ(errors.size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Servers, LivePlay, ::testing::Values("PulseAudio", "JACK"),
                         [](const auto& server) { return server.param; });

}  // namespace
}  // namespace qm
