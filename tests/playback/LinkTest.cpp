#include <gtest/gtest.h>

#include "playback/PlayerRig.h"

namespace qm::test {
namespace {

// A main item under a sweeper that is cued, both told to the same owner settings.
struct LinkRig {
  PlayerRig main, sweeper;

  explicit LinkRig(float introEnd = 20, float sweeperExtro = 8) {
    sweeper.owner->settings = main.owner->settings;
    main.owner->settings->SetUsePlayerDucking(true);
    main.owner->settings->SetDuckAudioVolume(60);
    main.player->SetReference(1);
    sweeper.player->SetReference(2);
    main.a->SetIntroEnd(1, introEnd);
    sweeper.a->SetReference("s");
    sweeper.a->SetExtro(1, sweeperExtro);
    main.GoTo(psCued);
    sweeper.GoTo(psCued);
  }
  bool Link() { return main.player->AddSweeperPlayerLink(sweeper.player); }
  void Forget() {
    for (auto* rig : {&main, &sweeper}) rig->heard = rig->script->calls = "";
  }
  std::string Heard() { return main.TakeHeard() + " | " + sweeper.TakeHeard(); }
  std::string Calls() { return main.script->TakeCalls() + " | " + sweeper.script->TakeCalls(); }
};

TEST(Link, WhoeverHasTheLongerWayStartsFirst) {
  const struct {
    float introEnd, sweeperExtro;
    bool ducking;
    const char* heard;  // main | sweeper
    const char* calls;
  } rows[] = {
      {20, 8, true, "Linked=2 | Linked=1",
       "Mark(21@12) AddVolumeChange(1,11.5,0.5,100,60,-1) AddVolumeChange(2,19.5,0.5,60,100,-1) | "},
      {20, 8, false, "Linked=2 | VolumeChanged=70 Linked=1", "Volume(100) Mark(21@12) | Volume(70)"},
      {5, 8, true, "Linked=1 | Linked=2",
       "AddVolumeChange(1,0,0,100,60,-1) AddVolumeChange(2,4.5,0.5,60,100,-1) | Mark(21@3)"},
      {5, 8, false, "Linked=1 | VolumeChanged=70 Linked=2", "Volume(100) | Volume(70) Mark(21@3)"},
      {8, 8, true, "Linked=1 | Linked=2",
       "AddVolumeChange(1,0,0,100,60,-1) AddVolumeChange(2,7.5,0.5,60,100,-1) | RemoveMark(21)"},
  };
  for (const auto& row : rows) {
    LinkRig rig(row.introEnd, row.sweeperExtro);
    rig.main.owner->settings->SetUsePlayerDucking(row.ducking);
    rig.main.owner->settings->SetSweptAudioVolume(70);
    EXPECT_TRUE(rig.Link());
    EXPECT_EQ(rig.Heard(), row.heard);
    EXPECT_EQ(rig.Calls(), row.calls);
    EXPECT_EQ(rig.main.owner->lastReference, "");
    EXPECT_TRUE(rig.sweeper.player->Sweeper());
    EXPECT_FALSE(rig.main.player->Sweeper());
    EXPECT_EQ(rig.main.player->LinkedToPlayer(), rig.sweeper.player);
    EXPECT_EQ(rig.sweeper.player->LinkedToPlayer(), rig.main.player);
  }
}

TEST(Link, RefusedLinks) {
  LinkRig rig;
  EXPECT_FALSE(rig.main.player->AddSweeperPlayerLink(nullptr));
  EXPECT_FALSE(rig.main.player->AddSweeperPlayerLink(rig.main.player));
  EXPECT_FALSE(rig.main.player->SetPlayerLink(rig.main.player, true));
  rig.sweeper.player->PlayItem();
  EXPECT_FALSE(rig.Link());  // no longer cued
  rig.sweeper.player->CloseItem();
  EXPECT_FALSE(rig.Link());
  rig.Forget();
  EXPECT_EQ(rig.main.player->LinkedToPlayer(), nullptr);
}

TEST(Link, FirstPlayerTriggersTheOther) {
  LinkRig rig;
  rig.Link();
  rig.Forget();
  // Play on the sweeper starts only the main item, which plays first.
  EXPECT_TRUE(rig.sweeper.player->PlayItem());
  EXPECT_EQ(rig.Heard(), "QueryPlay(a) Playing=0/-1 | QueryPlay(s)");
  std::string order;
  for (auto* one : {&rig.main, &rig.sweeper})
    one->onEvent = [&order, &rig, one](std::int32_t event) {
      order += std::string(one == &rig.main ? "M:" : "S:") + (PlayerEventName(event) + 2) + " ";
    };
  rig.main.Control().Mark(peSweeperStartReached, 0);
  EXPECT_EQ(order,
            "S:LinkCleared M:LinkQueryPlay S:QueryPlay S:Playing M:LinkPlayed M:LinkCleared "
            "M:SweeperStartReached ");
  EXPECT_EQ(rig.Heard(),
            "LinkQueryPlay(s)=2 LinkPlayed=2 LinkCleared SweeperStartReached | LinkCleared QueryPlay(s) "
            "Playing=0/-1");
  EXPECT_EQ(rig.main.player->LinkedToPlayer(), nullptr);
}

TEST(Link, RefusedTriggerLeavesThisSideStanding) {
  LinkRig rig;
  rig.Link();
  rig.main.player->PlayItem();
  rig.Forget();
  rig.main.veto = peLinkQueryPlay;
  rig.main.Control().Mark(peSweeperStartReached, 0);
  EXPECT_EQ(rig.Heard(), "LinkQueryPlay(s)=2 SweeperStartReached | LinkCleared");
  EXPECT_EQ(rig.main.player->LinkedToPlayer(), rig.sweeper.player);
  EXPECT_EQ(rig.sweeper.player->Status(), psCued);
}

TEST(Link, TriggerWhoseLinkIsTakenAwayPlaysNothing) {
  LinkRig rig;
  rig.Link();
  rig.main.player->PlayItem();
  rig.Forget();
  rig.main.onEvent = [&](std::int32_t event) {
    if (event == peLinkQueryPlay) rig.main.player->RemoveSweeperPlayerLink(true);
  };
  rig.main.Control().Mark(peSweeperStartReached, 0);
  EXPECT_EQ(rig.Heard(), "LinkQueryPlay(s)=2 LinkCleared SweeperStartReached | LinkCleared");
  EXPECT_EQ(rig.sweeper.player->Status(), psCued);
}

TEST(Link, CloseUndoesTheLinkAndTheDuck) {
  LinkRig rig(5, 8);
  rig.Link();
  rig.sweeper.player->PlayItem();
  rig.main.script->control->SetVolume(60);  // ducked
  rig.Forget();
  EXPECT_TRUE(rig.sweeper.player->CloseItem());
  EXPECT_EQ(rig.Heard(), "VolumeChanged=100 LinkCleared | QueryClose(s) Closing LinkCleared Closed");
  EXPECT_EQ(rig.main.script->TakeCalls(), "RemoveVolumeChange(1) RemoveVolumeChange(2) Volume(100)");
  EXPECT_FALSE(rig.sweeper.player->Sweeper());
}

TEST(Link, SweeperThatEndsOnItsOwnLeavesItsVolumeAlone) {
  for (const bool atEnd : {true, false}) {
    LinkRig rig;
    rig.Link();
    rig.sweeper.player->PlayItem();
    rig.sweeper.player->RemoveSweeperPlayerLink(false);
    rig.sweeper.PlayTo(atEnd ? 99.75f : 99.5f);
    rig.Forget();
    rig.sweeper.player->SetSweeper(true);
    rig.sweeper.player->CloseItem();
    EXPECT_EQ(rig.sweeper.script->TakeCalls(),
              atEnd ? "Close" : "RemoveVolumeChange(1) RemoveVolumeChange(2) Volume(100) Close");
  }
}

TEST(Link, OpenDropsItWithoutNotice) {
  LinkRig rig;
  rig.Link();
  rig.main.player->UnLockPlayer();
  rig.Forget();
  EXPECT_TRUE(rig.main.player->OpenItem(rig.main.b));
  EXPECT_EQ(rig.Heard(), "QueryOpen(b) Opening Opened | ");
  EXPECT_EQ(rig.main.player->LinkedToPlayer(), nullptr);
  // A new link of the main player is not the old partner's to undo.
  PlayerRig third;
  third.GoTo(psCued);
  EXPECT_TRUE(rig.main.player->SetPlayerLink(third.player, false));
  rig.sweeper.player->CloseItem();
  EXPECT_EQ(rig.main.player->LinkedToPlayer(), third.player);
}

TEST(Link, PartnerThatIsGoneLeavesNoLinkBehind) {
  for (const bool terminated : {true, false}) {
    LinkRig rig;
    rig.Link();
    rig.Forget();
    if (terminated) rig.main.player->TerminatePlayer();
    rig.main.player.reset();
    EXPECT_EQ(rig.sweeper.TakeHeard(), "LinkCleared");
    EXPECT_EQ(rig.sweeper.player->LinkedToPlayer(), nullptr);
    EXPECT_TRUE(rig.sweeper.player->PlayItem());
    EXPECT_EQ(rig.sweeper.player->Status(), psPlaying);
  }
}

TEST(Link, PartnerThatHasNothingOpenMayGoAsWell) {
  LinkRig rig;
  rig.main.player->CloseItem();
  rig.main.player->SetPlayerLink(rig.sweeper.player, false);
  rig.sweeper.player->SetPlayerLink(rig.main.player, true);
  rig.Forget();
  rig.main.player.reset();
  EXPECT_EQ(rig.sweeper.TakeHeard(), "LinkCleared");
}

TEST(Link, TwoPlayersThatWaitForEachOtherRefuse) {
  LinkRig rig;
  rig.main.player->SetPlayerLink(rig.sweeper.player, true);
  rig.sweeper.player->SetPlayerLink(rig.main.player, true);
  EXPECT_FALSE(rig.main.player->PlayItem());
  EXPECT_EQ(rig.main.player->Status(), psCued);
}

}  // namespace
}  // namespace qm::test
