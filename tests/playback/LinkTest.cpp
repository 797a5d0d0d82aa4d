#include <gtest/gtest.h>

#include "playback/PlayerRig.h"

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
    Heard();
    Calls();
  }
};

TEST(Link, WhoeverHasTheLongerWayStartsFirst) {
  const struct {
    float introEnd;
    bool ducking;
    const char* heard;  // main | sweeper
    const char* calls;
  } rows[] = {
      {20, true, "Linked=2 | Linked=1",
       "Mark(21@12) AddVolumeChange(1,11.5,0.5,100,60,-1) AddVolumeChange(2,19.5,0.5,60,100,-1) | "},
      {20, false, "Linked=2 | VolumeChanged=70 Linked=1", "Volume(100) Mark(21@12) | Volume(70)"},
      {5, true, "Linked=1 | Linked=2",
       "AddVolumeChange(1,0,0,100,60,-1) AddVolumeChange(2,4.5,0.5,60,100,-1) | Mark(21@3)"},
      {8, true, "Linked=1 | Linked=2",
       "AddVolumeChange(1,0,0,100,60,-1) AddVolumeChange(2,7.5,0.5,60,100,-1) | RemoveMark(21)"},
  };
  for (const auto& row : rows) {
    LinkRig rig(row.introEnd);
    rig.main.owner->settings->SetUsePlayerDucking(row.ducking);
    rig.main.owner->settings->SetSweptAudioVolume(70);
    EXPECT_TRUE(rig.Link());
    EXPECT_EQ(rig.Heard(), row.heard);
    EXPECT_EQ(rig.Calls(), row.calls);
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
  EXPECT_EQ(rig.main.player->LinkedToPlayer(), nullptr);
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

}  // namespace
}  // namespace qm::test
