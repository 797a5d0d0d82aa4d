#include <gtest/gtest.h>

#include "item/cHDItem.h"
#include "kits/common/Registry.h"
#include "kits/sound/engine/EngineBench.h"
#include "playback/PlayerRig.h"

// Base players over the real engine, on the offline device: what they say, at which frame, and what is heard.
namespace qm {
namespace {

using test::EngineBench;
using test::Noise16;

struct EngineRig {
  EngineBench bench;
  std::shared_ptr<const Platform> platform =
      std::make_shared<const Platform>(Platform{SystemClock(), MemoryRegistry(), nullptr, bench.engine});
  std::shared_ptr<test::TestOwner> owner = std::make_shared<test::TestOwner>();
  std::string heard;  // "frame:Event" of everything but positions and levels

  EngineRig() {
    owner->settings = std::make_shared<cAudioSettings>(platform, bench.engine);
    owner->settings->SetMaxPlayers(2);
    for (std::int16_t n = 1; n <= 2; ++n)
      owner->settings->SetPlayerSoundDevice(n, static_cast<std::int16_t>(bench.device));
  }

  std::shared_ptr<cBasePlayer> Player(std::int16_t number) {
    auto player = std::make_shared<cBasePlayer>(platform);
    player->SetPlayerCallback(owner);
    player->InitPlayer(number, owner->settings);
    player->events.PlayerEvent.connect(
        [this, number](std::int32_t event, std::string&, float&, float&, std::string&, std::string&) {
          if (event == pePositionChanged || event == peAudioLevelChanged || event == peVolumeChanged) return;
          test::AddWord(heard, std::to_string(number) + "@" + std::to_string(bench.engine->Frame()) + ":" +
                                   std::string(PlayerEventName(event)).substr(2));
        });
    return player;
  }

  std::shared_ptr<cHDItem> Item(const std::string& name, const std::vector<std::int16_t>& samples) {
    auto item = std::make_shared<cHDItem>();
    item->SetReference(name);
    item->SetAudioFileName(bench.Wav(name, samples));
    item->SetTotalLength(static_cast<float>(samples.size() / 2) / 44100);
    item->SetExtro(1, item->TotalLength());
    return item;
  }
};

TEST(EngineRun, ANaturalRunTellsEverythingAtItsFrame) {
  EngineRig rig;
  const auto noise = Noise16(2 * 88200);
  auto item = rig.Item("a", noise);
  item->SetAudioStart(1, 0.25f);
  item->SetIntroStart(1, 0.5f);
  item->SetIntroEnd(1, 0.75f);
  item->SetExtro(1, 1.5f);
  auto player = rig.Player(1);
  player->events.PlayerEvent.connect(
      [&](std::int32_t event, std::string&, float&, float&, std::string&, std::string&) {
        if (event == peExtroReached) {
          EXPECT_GE(player->SecondsPlayed(), 1.5f);
        }
        if (event == peAudioEndReached) player->CloseItem();
      });
  ASSERT_TRUE(player->PlayItem(item));
  rig.bench.Run();
  EXPECT_EQ(rig.heard,
            "1@0:QueryPlay 1@0:QueryOpen 1@0:Opening 1@0:Opened 1@0:QueryCue 1@0:Cued 1@0:Playing "
            "1@11025:IntroStartReached 1@22050:IntroEndReached 1@55125:ExtroReached 1@77175:AudioEndReached "
            "1@77175:QueryClose 1@77175:Closing 1@77175:Closed");
  ASSERT_EQ(rig.bench.HeardFrames(), 77175u);
  for (std::size_t i = 0; i < 77175; ++i) ASSERT_EQ(rig.bench.Heard16(i), noise[2 * (i + 11025)]);
  EXPECT_EQ(player->Status(), psClosed);
  EXPECT_FLOAT_EQ(player->PreviousSecondsPlayed(), 2);
}

// A sweeper over an intro, either of them first: both start on their exact frames, and the sweeper's extro
// falls on the end of the intro.
TEST(EngineRun, ASweeperLinkStartsOnTheExactFrame) {
  for (const float introEnd : {1.2f, 0.3f}) {
    EngineRig rig;
    rig.owner->settings->SetUsePlayerDucking(false);
    const auto mainNoise = Noise16(2 * 88200, 0.4, 3), sweepNoise = Noise16(2 * 44100, 0.4, 4);
    auto mainItem = rig.Item("main", mainNoise), sweepItem = rig.Item("sweep", sweepNoise);
    mainItem->SetIntroEnd(1, introEnd);
    sweepItem->SetExtro(1, 0.75f);
    auto main = rig.Player(1), sweeper = rig.Player(2);
    ASSERT_TRUE(main->CueItem(mainItem));
    ASSERT_TRUE(sweeper->CueItem(sweepItem));
    ASSERT_TRUE(main->AddSweeperPlayerLink(sweeper));
    ASSERT_TRUE(main->PlayItem());
    rig.bench.Run();
    const bool mainFirst = introEnd > 0.75f;
    const auto gap = static_cast<std::size_t>(std::llrint(std::fabs(introEnd - 0.75f) * 44100));
    const std::size_t mainAt = mainFirst ? 0 : gap, sweepAt = mainFirst ? gap : 0;
    ASSERT_EQ(rig.bench.HeardFrames(), mainAt + 88200);
    for (std::size_t i = 0; i < rig.bench.HeardFrames(); ++i) {
      std::int32_t expected = i >= mainAt ? mainNoise[2 * (i - mainAt)] : 0;
      if (i >= sweepAt && i < sweepAt + 44100) expected += sweepNoise[2 * (i - sweepAt)];
      ASSERT_EQ(rig.bench.Heard16(i), expected) << i;
    }
    const std::string trigger = (mainFirst ? "1@" : "2@") + std::to_string(gap) + ":";
    EXPECT_NE(rig.heard.find(trigger + "LinkQueryPlay"), std::string::npos) << rig.heard;
    EXPECT_NE(rig.heard.find(trigger + "SweeperStartReached"), std::string::npos) << rig.heard;
  }
}

TEST(EngineRun, AFadeTellsItsFireLevelWhereItFallsToIt) {
  EngineRig rig;
  auto item = rig.Item("a", std::vector<std::int16_t>(2 * 132300, 8192));
  auto player = rig.Player(1);
  ASSERT_TRUE(player->PlayItem(item));
  ASSERT_TRUE(player->Fade(0.5f, 2, pvcFadeOut));
  rig.heard.clear();
  rig.bench.Run();
  // 65 per cent of full volume, after 0.7 of the two seconds.
  EXPECT_EQ(rig.heard,
            "1@22050:VolumeChangeStartNotify 1@52920:FadingOut 1@52920:VolumeChangeNotify "
            "1@110250:VolumeChangeEndNotify 1@132300:ExtroReached 1@132300:AudioEndReached");
  EXPECT_TRUE(player->FadeNotified());
  EXPECT_EQ(player->PlayVolume(), 0);
}

TEST(EngineRun, AHookPlaysFromItsStartAndClosesAtItsEnd) {
  EngineRig rig;
  const auto noise = Noise16(2 * 88200);
  auto item = rig.Item("a", noise);
  item->SetHookEnd(1, 1.25f);
  item->SetHookStart(1, 0.333333f);
  auto player = rig.Player(1);
  ASSERT_TRUE(player->PlayItemHook(item));
  rig.heard.clear();
  rig.bench.Run();
  const std::size_t from = 14700, length = 55125 - from;
  EXPECT_EQ(rig.heard,
            "1@0:HookStartReached 1@40425:QueryClose 1@40425:Closing 1@40425:Closed 1@40425:HookEndReached");
  ASSERT_GE(rig.bench.HeardFrames(), length);
  for (std::size_t i = 0; i < length; ++i) ASSERT_EQ(rig.bench.Heard16(i), noise[2 * (i + from)]) << i;
  EXPECT_LE(rig.bench.HeardFrames(), length + 220) << "the ramp of the close and nothing more";
}

}  // namespace
}  // namespace qm
