#include <gtest/gtest.h>

#include <tuple>

#include "kits/common/Dates.h"
#include "playback/PlayerRig.h"

namespace qm::test {
namespace {

TEST(Transport, ItemsThatCannotBeOpened) {
  PlayerRig rig;
  rig.b->SetReference("  ");
  for (const char* operation : {"Open(b)", "Cue(b)", "Play(b)", "Seek(50,b)"})
    EXPECT_FALSE(RunNamed(rig, operation)) << operation;
  rig.a->SetAudioEnd(1, 0);
  EXPECT_FALSE(rig.player->OpenItem(rig.a));
  EXPECT_FALSE(rig.player->OpenItem(nullptr));
  EXPECT_EQ(rig.TakeHeard(), "");

  const auto gone = MakeItem("gone");
  DeleteFile(gone->AudioFileName());
  EXPECT_FALSE(rig.player->PlayItem(gone));
  EXPECT_EQ(rig.TakeHeard(), "QueryPlay(gone) QueryOpen(gone) Opening");
  EXPECT_EQ(rig.player->HDItem(), nullptr);
  EXPECT_EQ(rig.script->TakeCalls(), "");

  rig.player->OpenItem(MakeItem("same"));
  rig.TakeHeard();
  EXPECT_FALSE(rig.player->OpenItem(MakeItem(" SAME ")));  // references are trimmed and ignore case
  EXPECT_EQ(rig.TakeHeard(), "");
}

TEST(Transport, NaturalRun) {
  PlayerRig rig;
  EXPECT_TRUE(rig.player->CueItem(rig.a));
  EXPECT_EQ(rig.TakeHeard(), "QueryCue(a) QueryOpen(a) Opening Opened Cued");
  EXPECT_EQ(rig.script->TakeCalls(),
            "Open(a.wav) AudioEnd(100) AudioStart(0) Mark(61@90) Mark(32@10) Mark(31@1) Mark(42@30) "
            "Mark(41@20) Cue");
  EXPECT_TRUE(rig.player->PlayItem());
  const auto started = rig.player->Start();
  EXPECT_EQ(started, DateTimeNow(*rig.clock));
  rig.clock->Advance(std::chrono::seconds(60));
  rig.player->PauseItem();
  rig.player->PlayItem();
  EXPECT_EQ(rig.player->Start(), started);
  rig.player->SeekItem(10);
  EXPECT_EQ(rig.player->Start(), AddSeconds(DateTimeNow(*rig.clock), -10));
  rig.TakeHeard();
  rig.PlayTo(90);
  rig.Control().Mark(peExtroReached, 0);
  rig.Control().Playing();  // what the control says of its own accord changes nothing
  rig.Control().Paused();
  rig.Control().AudioEnd();
  EXPECT_EQ(rig.player->Status(), psPlaying);
  rig.player->SetLogReference(5.5);
  rig.player->SetPlayedTag(3);
  rig.player->SetPreviewMode(true);
  rig.player->SetReservation(7, "News");  // stays behind the item
  // The close reference belongs to whoever hears the question.
  rig.owner->onEvent = [](std::string&, float& sValue1, float&) {
    if (sValue1 == 7) sValue1 = 8;
  };
  float reference = 7;
  EXPECT_TRUE(rig.player->CloseItem(reference));
  EXPECT_EQ(reference, 8);
  EXPECT_EQ(rig.TakeHeard(),
            "PositionChanged=90/10 ExtroReached AudioEndReached SetPreviewMode Reserved=7 QueryClose(a)=7 "
            "Closing=0/8 Closed=0/8");
  EXPECT_EQ(rig.player->ReservationCaption(), "News");
  EXPECT_EQ(rig.player->PreviousHDItem(), rig.a);
  EXPECT_EQ(rig.player->PreviousSecondsPlayed(), 90);
  EXPECT_EQ(rig.player->SecondsPlayed(), 0);
  EXPECT_EQ(rig.player->SecondsRemaining() + rig.player->SecondsRemainingExtro(), 0);
  EXPECT_EQ(rig.player->LogReference() + rig.player->PlayedTag() + rig.player->PreviewMode(), 0);
}

TEST(Transport, ListenerThenOwnerWithTextsOfTheirOwn) {
  PlayerRig rig;
  rig.player->SetReference(4);
  rig.player->events.PlayerEvent.connect(
      [](std::int32_t event, std::string& hdReference, float& sValue1, float& sValue2, auto&&...) {
        hdReference = "spoilt";
        sValue1 = 99;
        if (!IsQuery(event)) sValue2 = 99;
      });
  EXPECT_TRUE(rig.player->OpenItem(rig.a));
  EXPECT_EQ(rig.owner->heard, "4:QueryOpen(a) 4:Opening 4:Opened");
  EXPECT_EQ(rig.owner->lastReference, "a");
  // A Cancel is shared: the owner sees the listener's, and may take it back.
  rig.veto = peQueryPlay;
  rig.owner->onEvent = [](std::string&, float&, float& cancel) { cancel = 0; };
  EXPECT_TRUE(rig.player->PlayItem());
}

TEST(Transport, SeekKeepsTheSecondsOfAMark) {
  PlayerRig rig;
  rig.a->SetTotalLength(217.3487f);
  rig.script->total = 217.3487f;
  rig.GoTo(psCued);
  for (const float mark : {0.1f, 1.7f, 33.333332f, 170.12346f}) {
    EXPECT_TRUE(rig.player->SeekItem(mark));
    EXPECT_EQ(rig.player->SecondsPlayed(), mark);
  }
  EXPECT_TRUE(rig.player->SeekItemPercent(250));
  EXPECT_EQ(rig.player->SecondsPlayed(), 217.3487f);
  EXPECT_FALSE(rig.player->SeekItemPercent(std::nan("")));
  rig.a->SetTotalLength(0);
  EXPECT_FALSE(rig.player->SeekItem(5));
}

TEST(Transport, PlayOnAPlayingItemReleasesItsLoop) {
  const std::tuple<bool, float, const char*> rows[] = {
      {false, 15, "ExitLoop"}, {true, 15, "UseLoop(0)"}, {false, 3, "UseLoop(0)"}};
  for (const auto& [playToEnd, position, calls] : rows) {
    PlayerRig rig;
    rig.a->SetLoopStart(2);
    rig.a->SetLoopEnd(400);
    rig.a->SetLoopPlayToEnd(playToEnd);
    rig.player->OpenItem(rig.a);
    rig.script->calls.clear();
    rig.player->PlayItem();
    EXPECT_EQ(rig.script->TakeCalls(), "Cue LoopStart(4.5) LoopEnd(100) UseLoop(1) LoopCount(1000) Play");
    rig.script->position = position;
    rig.TakeHeard();
    EXPECT_TRUE(rig.player->PlayItem());
    EXPECT_EQ(rig.script->TakeCalls(), calls);
    EXPECT_EQ(rig.TakeHeard(), "QueryPlay(a) Playing=" + NumberText(position));
  }
}

TEST(Transport, Hook) {
  PlayerRig rig;
  rig.a->SetLoopStart(10);
  rig.a->SetLoopEnd(20);
  EXPECT_TRUE(rig.player->CueItemHook(rig.a));
  EXPECT_EQ(rig.a->LoopEnd(), 0);
  rig.TakeHeard();
  EXPECT_TRUE(rig.player->CueItemHook());  // already there
  EXPECT_EQ(rig.TakeHeard(), "");
  // A cue in hook mode goes to the hook, and is told as cued while the player is paused.
  rig.player->PlayItem();
  rig.script->position = 25;
  rig.TakeHeard();
  EXPECT_TRUE(rig.player->CueItem());
  EXPECT_EQ(rig.TakeHeard(), "QueryCue(a) QuerySeek(a)=20 Paused Cued");
  EXPECT_EQ(rig.player->Status(), psPaused);
  EXPECT_EQ(rig.player->SecondsPlayed(), 20);
  rig.Control().Mark(peHookEndReached, 0);
  EXPECT_EQ(rig.TakeHeard(), "QueryClose(a) Closing Closed HookEndReached");
  EXPECT_FALSE(rig.player->PlayHookMode() || rig.player->CloseAtHookEnd());
  // Without a hook of its own an item is played from its start.
  rig.b->SetHookEnd(1, 0);
  rig.b->SetHookStart(1, 0);
  EXPECT_TRUE(rig.player->PlayItemHook(rig.b));
  EXPECT_EQ(rig.TakeHeard(),
            "QueryOpen(b) Opening Opened SetPlayHookMode QueryPlay(b) QueryCue(b) QuerySeek(b) Cued "
            "Playing=0/-1");
}

TEST(Transport, TerminatedPlayerSaysNothingAndRefusesAll) {
  PlayerRig rig;
  rig.player->SetReference(3);
  rig.GoTo(psPlaying);
  rig.owner->heard.clear();
  rig.player->events.LevelChanged.connect([&](std::int16_t, std::int16_t) { rig.player->TerminatePlayer(); });
  rig.Control().Level(1, 2);
  rig.player->TerminatePlayer();
  EXPECT_EQ(rig.script->control, nullptr);
  EXPECT_EQ(rig.script->TakeCalls(), "RemoveVolumeChange(1) RemoveVolumeChange(2) Volume(100) Close");
  EXPECT_EQ(rig.player->Reference(), 0);
  EXPECT_EQ(rig.player->Status(), psClosed);
  EXPECT_EQ(rig.owner.use_count(), 1);
  for (const auto& [name, run] : Operations()) EXPECT_FALSE(run(rig)) << name;
  EXPECT_FALSE(rig.player->InitPlayer(1, nullptr));
  EXPECT_EQ(rig.TakeHeard() + rig.owner->heard, "");
}

}  // namespace
}  // namespace qm::test
