#include <gtest/gtest.h>

#include <tuple>

#include "playback/PlayerRig.h"
#include "support/HandoverRun.h"

namespace qm::test {
namespace {

// A main item under a sweeper that is cued, both told to the same owner settings.
struct LinkRig {
  PlayerRig main, sweeper;

  explicit LinkRig(float introEnd = 20) {
    sweeper.owner->settings = main.owner->settings;
    main.owner->settings->SetUsePlayerDucking(true);
    main.owner->settings->SetDuckAudioVolume(60);
    main.player->SetReference(1);
    sweeper.player->SetReference(2);
    main.a->SetIntroEnd(1, introEnd);
    sweeper.a->SetReference("s");
    sweeper.a->SetExtro(1, 8);
    main.GoTo(psCued);
    sweeper.GoTo(psCued);
  }
  bool Link() { return main.player->AddSweeperPlayerLink(sweeper.player); }
  std::string Heard() { return main.TakeHeard() + " | " + sweeper.TakeHeard(); }
  std::string Calls() { return main.script->TakeCalls() + " | " + sweeper.script->TakeCalls(); }
};

// Linked, and nothing remembered of how.
struct LinkedRig : LinkRig {
  explicit LinkedRig(float introEnd = 20) : LinkRig(introEnd) {
    EXPECT_TRUE(Link());
    Heard(), Calls();
  }
};

TEST(Link, WhoeverHasTheLongerWayStartsFirst) {
  const std::tuple<float, bool, const char*, const char*> rows[] = {
      // end of the intro, ducking, what is heard and what the controls are told: main | sweeper
      {20, true, "Linked=2 | Linked=1",
       "Mark(21@12) AddVolumeChange(1,11.5,0.5,100,60,-1) AddVolumeChange(2,19.5,0.5,60,100,-1) | "},
      {20, false, "Linked=2 | VolumeChanged=70 Linked=1", "Volume(100) Mark(21@12) | Volume(70)"},
      {5, true, "Linked=1 | Linked=2",
       "AddVolumeChange(1,0,0,100,60,-1) AddVolumeChange(2,4.5,0.5,60,100,-1) | Mark(21@3)"},
      {8, true, "Linked=1 | Linked=2",
       "AddVolumeChange(1,0,0,100,60,-1) AddVolumeChange(2,7.5,0.5,60,100,-1) | RemoveMark(21)"},
  };
  for (const auto& [introEnd, ducking, heard, calls] : rows) {
    LinkRig rig(introEnd);
    rig.main.owner->settings->SetUsePlayerDucking(ducking);
    rig.main.owner->settings->SetSweptAudioVolume(70);
    EXPECT_TRUE(rig.Link());
    EXPECT_EQ(rig.Heard(), heard);
    EXPECT_EQ(rig.Calls(), calls);
    EXPECT_EQ(rig.main.owner->lastReference, "");
    EXPECT_TRUE(rig.sweeper.player->Sweeper() && !rig.main.player->Sweeper());
    EXPECT_EQ(rig.main.player->LinkedToPlayer(), rig.sweeper.player);
    EXPECT_EQ(rig.sweeper.player->LinkedToPlayer(), rig.main.player);
  }
}

TEST(Link, Refused) {
  LinkRig rig;
  for (const auto& other : {std::shared_ptr<cBasePlayer>(), rig.main.player})
    EXPECT_FALSE(rig.main.player->AddSweeperPlayerLink(other));
  EXPECT_FALSE(rig.main.player->SetPlayerLink(rig.main.player, true));
  // Two that wait for each other.
  rig.main.player->SetPlayerLink(rig.sweeper.player, true);
  rig.sweeper.player->SetPlayerLink(rig.main.player, true);
  EXPECT_FALSE(rig.main.player->PlayItem());
  EXPECT_EQ(rig.main.player->Status(), psCued);
  rig.main.player->RemoveSweeperPlayerLink(false);
  rig.sweeper.player->PlayItem();
  EXPECT_FALSE(rig.Link());  // no longer cued
  EXPECT_EQ(rig.main.player->LinkedToPlayer(), nullptr);
}

TEST(Link, FirstPlayerTriggersTheOther) {
  LinkedRig rig;
  // Play on the sweeper starts only the main item, which plays first.
  EXPECT_TRUE(rig.sweeper.player->PlayItem());
  EXPECT_EQ(rig.Heard(), "QueryPlay(a) Playing=0/-1 | QueryPlay(s)");
  std::string order;
  for (auto* one : {&rig.main, &rig.sweeper})
    one->onEvent = [&order, &rig, one](std::int32_t event) {
      AddWord(order, (one == &rig.main ? "M:" : "S:") + EventWord(event, "", 0, 0));
    };
  rig.main.Control().Mark(peSweeperStartReached, 0);
  EXPECT_EQ(order,
            "S:LinkCleared M:LinkQueryPlay() S:QueryPlay() S:Playing M:LinkPlayed M:LinkCleared "
            "M:SweeperStartReached");
  EXPECT_EQ(rig.main.TakeHeard(), "LinkQueryPlay(s)=2 LinkPlayed=2 LinkCleared SweeperStartReached");
}

// A veto leaves this side of the link standing; a link that the question took away plays nothing.
TEST(Link, TriggerThatIsRefused) {
  for (const bool byVeto : {true, false}) {
    LinkedRig rig;
    rig.main.onEvent = [&](std::int32_t event) {
      if (event == peLinkQueryPlay && !byVeto) rig.main.player->RemoveSweeperPlayerLink(true);
    };
    if (byVeto) rig.main.veto = peLinkQueryPlay;
    rig.main.Control().Mark(peSweeperStartReached, 0);
    EXPECT_EQ(rig.main.player->LinkedToPlayer(), byVeto ? rig.sweeper.player : nullptr);
    EXPECT_EQ(rig.sweeper.TakeHeard(), "LinkCleared");
    EXPECT_EQ(rig.sweeper.player->Status(), psCued);
  }
}

TEST(Link, CloseUndoesTheLinkAndTheDuck) {
  LinkedRig rig(5);
  rig.sweeper.player->PlayItem();
  rig.main.script->control->SetVolume(60);  // ducked
  rig.Heard();
  rig.Calls();
  EXPECT_TRUE(rig.sweeper.player->CloseItem());
  EXPECT_EQ(rig.Heard(), "VolumeChanged=100 LinkCleared | QueryClose(s) Closing LinkCleared Closed");
  EXPECT_EQ(rig.main.script->TakeCalls(), "RemoveVolumeChange(1) RemoveVolumeChange(2) Volume(100)");
  EXPECT_FALSE(rig.sweeper.player->Sweeper());
}

TEST(Link, SweeperThatEndsOnItsOwnLeavesItsVolumeAlone) {
  for (const float position : {99.75f, 99.5f}) {
    PlayerRig rig;
    rig.GoTo(psPlaying);
    rig.player->SetSweeper(true);
    rig.PlayTo(position);
    rig.player->CloseItem();
    EXPECT_EQ(rig.script->TakeCalls(),
              position == 99.75f ? "Close" : "RemoveVolumeChange(1) RemoveVolumeChange(2) Volume(100) Close");
  }
}

TEST(Link, OpenDropsItWithoutNotice) {
  LinkedRig rig;
  rig.main.player->UnLockPlayer();
  rig.Heard();
  EXPECT_TRUE(rig.main.player->OpenItem(rig.main.b));
  EXPECT_EQ(rig.Heard(), "QueryOpen(b) Opening Opened | ");
  EXPECT_EQ(rig.main.player->LinkedToPlayer(), nullptr);
  // A new link of the main player is not the old partner's to undo.
  PlayerRig third;
  EXPECT_TRUE(rig.main.player->SetPlayerLink(third.player, false));
  rig.sweeper.player->CloseItem();
  EXPECT_EQ(rig.main.player->LinkedToPlayer(), third.player);
}

TEST(Link, PartnerThatIsGoneLeavesNoLinkBehind) {
  for (const bool open : {true, false}) {
    LinkRig rig;
    if (!open) rig.main.player->CloseItem();
    rig.main.player->SetPlayerLink(rig.sweeper.player, false);
    rig.sweeper.player->SetPlayerLink(rig.main.player, true);
    rig.Heard();
    rig.main.player.reset();
    EXPECT_EQ(rig.sweeper.TakeHeard(), "LinkCleared");
    EXPECT_TRUE(rig.sweeper.player->PlayItem());
    EXPECT_EQ(rig.sweeper.player->Status(), psPlaying);
  }
}

// A sweeper over an intro on the real engine, either of them first: both start on their exact frames, and the
// sweeper's extro falls on the end of the intro.
TEST(Link, StartsOnTheExactFrame) {
  for (const float introEnd : {1.2f, 0.3f}) {
    std::vector<float> sound;
    std::string heard;
    ListRig rig(Offline(std::make_unique<MemorySink>(sound)), 2);
    rig.settings->SetUsePlayerDucking(false);
    const TempFolder folder;
    const std::vector<std::int16_t> noise[] = {Noise16(2 * 88200, 0.4, 3), Noise16(2 * 44100, 0.4, 4)};
    std::shared_ptr<cBasePlayer> players[2];
    for (const int n : {0, 1}) {
      auto item = MakeItem(n == 0 ? "main" : "sweep");
      item->SetAudioFileName(folder.File(item->Reference() + ".wav"));
      WriteBytes(item->AudioFileName(), Wav16(noise[n], ListRig::kRate, 2));
      item->SetTotalLength(n == 0 ? 2 : 1);
      n == 0 ? item->SetIntroEnd(1, introEnd) : item->SetExtro(1, 0.75f);
      players[n] = std::make_shared<cBasePlayer>(rig.platform);
      players[n]->SetPlayerCallback(rig.Owner());
      players[n]->InitPlayer(static_cast<std::int16_t>(n + 1), rig.settings);
      players[n]->events.PlayerEvent.connect([&, n, item](std::int32_t event, auto&&...) {
        if (event == peExtroReached) {
          EXPECT_GE(players[n]->SecondsPlayed(), item->Extro(1));
        }
        AddWord(heard, std::to_string(n) + "@" + std::to_string(rig.engine->Frame()) + ":" +
                           std::string(PlayerEventName(event)));
      });
      ASSERT_TRUE(players[n]->CueItem(item));
    }
    ASSERT_TRUE(players[0]->AddSweeperPlayerLink(players[1]));
    ASSERT_TRUE(players[0]->PlayItem());
    rig.Run();
    const bool mainFirst = introEnd > 0.75f;
    const auto gap = static_cast<std::size_t>(std::llrint(std::fabs(introEnd - 0.75f) * 44100));
    const std::size_t starts[] = {mainFirst ? 0 : gap, mainFirst ? gap : 0};
    std::vector<float> expected(2 * (starts[0] + 88200));
    for (std::size_t n : {0u, 1u})
      for (std::size_t i = 0; i < noise[n].size(); ++i)
        expected[2 * starts[n] + i] += static_cast<float>(noise[n][i]) / 32768;
    ASSERT_EQ(sound.size(), expected.size());
    for (std::size_t i = 0; i < sound.size(); ++i) ASSERT_NEAR(sound[i], expected[i], 1e-6f) << i;
    const std::string trigger = (mainFirst ? "0@" : "1@") + std::to_string(gap) + ":pe";
    EXPECT_NE(heard.find(trigger + "LinkQueryPlay"), std::string::npos) << heard;
    EXPECT_NE(heard.find(trigger + "SweeperStartReached"), std::string::npos) << heard;
    for (const auto& player : players) player->TerminatePlayer();
  }
}

}  // namespace
}  // namespace qm::test
