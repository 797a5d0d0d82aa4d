#include <gtest/gtest.h>

#include "kits/common/Dates.h"
#include "kits/common/Files.h"
#include "kits/common/Text.h"
#include "playback/PlayerRig.h"
#include "services/Diagnostics.h"

namespace qm::test {
namespace {

TEST(Transport, FailureOfTheControlIsAnsweredAndTakenBack) {
  const struct {
    enPlayerStatus from;
    const char* failing;
    const char* operation;
    enPlayerStatus to;
    const char* heard;
  } rows[] = {
      {psClosed, "Open", "Open(a)", psClosed, "QueryOpen(a) Opening Closed"},
      {psCued, "Open", "Open(b)", psClosed, "QueryOpen(b) QueryClose(a) Closing Closed Opening Closed"},
      {psOpen, "Cue", "Cue()", psOpen, "QueryCue(a)"},
      {psPlaying, "Cue", "Cue()", psOpen, "QueryCue(a)"},
      {psOpen, "Cue", "Play()", psOpen, "QueryPlay(a) QueryCue(a)"},
      {psCued, "Play", "Play()", psCued, "QueryPlay(a)"},
      {psPaused, "Play", "Play()", psPaused, "QueryPlay(a)"},
      {psPlaying, "Pause", "Pause()", psPlaying, "QueryPause(a)"},
      {psCued, "Seek", "Seek(50)", psCued, "QuerySeek(a)=50"},
      {psPaused, "Seek", "CueHook()", psClosed,
       "SetPlayHookMode QuerySeek(a)=20 QueryClose(a) Closing Closed"},
      {psCued, "Close", "Close()", psCued, "QueryClose(a) Closing"},
      {psCued, "Close", "Lock()", psCued, "QueryClose(a) Closing"},
      {psCued, "Close", "Open(b)", psCued, "QueryOpen(b) QueryClose(a) Closing"},
  };
  for (const auto& row : rows) {
    PlayerRig rig;
    rig.GoTo(row.from);
    rig.script->failing = {row.failing};
    EXPECT_FALSE(RunNamed(rig, row.operation)) << row.operation;
    EXPECT_EQ(rig.player->Status(), row.to) << row.operation;
    EXPECT_EQ(rig.TakeHeard(), row.heard) << row.operation;
  }
}

TEST(Transport, PlayerRecoversFromAControlThatWouldNotClose) {
  PlayerRig rig;
  rig.GoTo(psCued);
  rig.script->failing = {"Close"};
  EXPECT_FALSE(rig.player->CloseItem());
  EXPECT_TRUE(rig.player->CloseItem());  // the fields are cleared already
  EXPECT_EQ(rig.player->Section(), epsEmpty);
  EXPECT_FALSE(rig.player->PlayItem());
  rig.TakeHeard();
  EXPECT_TRUE(rig.player->PlayItem(rig.a));
  EXPECT_EQ(rig.TakeHeard(), "QueryPlay(a) QueryOpen(a) Opening Opened QueryCue(a) Cued Playing=0/-1");
}

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
  EXPECT_EQ(rig.player->Status(), psClosed);
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
  EXPECT_EQ(rig.player->Start(), DateTimeNow(*rig.clock));
  rig.PlayTo(1);
  rig.Control().Mark(peIntroStartReached, 0);
  rig.PlayTo(90);
  rig.Control().Mark(peExtroReached, 0);
  rig.Control().Mark(77, 0);
  rig.Control().Playing();
  rig.Control().Paused();
  rig.Control().AudioEnd();
  EXPECT_EQ(rig.player->Status(), psPlaying);
  rig.player->SetLogReference(5.5);
  rig.player->SetPlayedTag(3);
  rig.player->SetPreviewMode(true);
  float reference = 7;
  EXPECT_TRUE(rig.player->CloseItem(reference));
  EXPECT_EQ(
      rig.TakeHeard(),
      "QueryPlay(a) Playing=0/-1 PositionChanged=1/99 IntroStartReached PositionChanged=90/10 ExtroReached "
      "AudioEndReached SetPreviewMode QueryClose(a)=7 Closing=0/7 Closed=0/7");
  EXPECT_EQ(rig.player->PreviousHDItem(), rig.a);
  EXPECT_EQ(rig.player->PreviousSecondsPlayed(), 90);
  EXPECT_EQ(
      rig.player->SecondsPlayed() + rig.player->SecondsRemaining() + rig.player->SecondsRemainingExtro(), 0);
  EXPECT_EQ(rig.player->LogReference() + rig.player->PlayedTag() + rig.player->PreviewMode(), 0);
  EXPECT_EQ(rig.player->HDItem(), nullptr);
}

TEST(Transport, CloseReferenceBelongsToWhoeverHearsTheQuestion) {
  PlayerRig rig;
  rig.GoTo(psCued);
  rig.owner->onEvent = [](std::string&, float& sValue1, float&) {
    if (sValue1 == 7) sValue1 = 8;
  };
  float reference = 7;
  EXPECT_TRUE(rig.player->CloseItem(reference));
  EXPECT_EQ(rig.TakeHeard(), "QueryClose(a)=7 Closing=0/8 Closed=0/8");
  EXPECT_EQ(reference, 8);
}

TEST(Transport, ListenerThenOwnerWithTextsOfTheirOwn) {
  PlayerRig rig;
  rig.player->SetReference(4);
  rig.owner->heard.clear();
  auto spoiler =
      rig.player->events.PlayerEvent.connect([](std::int32_t event, std::string& hdReference, float& sValue1,
                                                float& sValue2, std::string&, std::string&) {
        hdReference = "spoilt";
        sValue1 = 99;
        if (event != peQueryOpen) sValue2 = 99;
      });
  rig.owner->onEvent = [&](std::string& hdReference, float&, float&) {
    EXPECT_EQ(hdReference, "a") << rig.heard;
  };
  EXPECT_TRUE(rig.player->OpenItem(rig.a));
  EXPECT_EQ(rig.owner->heard, "4:QueryOpen(a) 4:Opening 4:Opened");

  spoiler.disconnect();

  // A Cancel is shared: the owner sees the listener's, and may take it back.
  rig.veto = peQueryPause;
  rig.player->PlayItem();
  rig.owner->onEvent = [&](std::string&, float&, float& cancel) { cancel = 0; };
  EXPECT_TRUE(rig.player->PauseItem());
}

TEST(Transport, StartIsKeptOverAPauseAndMovedByASeek) {
  PlayerRig rig;
  rig.GoTo(psPlaying);
  const auto started = rig.player->Start();
  rig.clock->Advance(std::chrono::seconds(60));
  rig.player->PauseItem();
  rig.player->PlayItem();
  EXPECT_EQ(rig.player->Start(), started);
  rig.player->SeekItem(10);
  EXPECT_EQ(rig.player->Start(), AddSeconds(DateTimeNow(*rig.clock), -10));
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
  const struct {
    bool playToEnd;
    float position;
    const char* calls;
  } rows[] = {{false, 15, "ExitLoop"}, {true, 15, "UseLoop(0)"}, {false, 5, "UseLoop(0)"}};
  for (const auto& row : rows) {
    PlayerRig rig;
    rig.a->SetLoopStart(2);
    rig.a->SetLoopEnd(400);
    rig.a->SetLoopPlayToEnd(row.playToEnd);
    rig.player->OpenItem(rig.a);
    rig.script->calls.clear();
    rig.player->PlayItem();
    EXPECT_EQ(rig.script->TakeCalls(), "Cue LoopStart(4.5) LoopEnd(100) UseLoop(1) LoopCount(1000) Play");
    rig.script->control->SetLoopStart(10);
    rig.script->position = row.position;
    rig.script->calls.clear();
    rig.TakeHeard();
    EXPECT_TRUE(rig.player->PlayItem());
    EXPECT_EQ(rig.script->TakeCalls(), row.calls);
    EXPECT_EQ(rig.TakeHeard(), "QueryPlay(a) Playing=" + NumberText(row.position));
  }
}

TEST(Transport, HookPlaysItsSpanAndClosesItself) {
  PlayerRig rig;
  rig.a->SetLoopStart(10);
  rig.a->SetLoopEnd(20);
  EXPECT_TRUE(rig.player->CueItemHook(rig.a));
  EXPECT_EQ(rig.TakeHeard(), "QueryOpen(a) Opening Opened SetPlayHookMode QuerySeek(a)=20 Paused");
  EXPECT_EQ(rig.a->LoopEnd(), 0);
  EXPECT_TRUE(rig.player->CueItemHook());  // already there
  EXPECT_EQ(rig.TakeHeard(), "");
  EXPECT_TRUE(rig.player->PlayItemHook());
  rig.Control().Mark(peHookEndReached, 0);
  EXPECT_EQ(
      rig.TakeHeard(),
      "SetPlayHookMode QuerySeek(a)=20 QueryPlay(a) Playing=20 QueryClose(a) Closing Closed HookEndReached");
  EXPECT_EQ(rig.owner->lastReference, "");
  EXPECT_FALSE(rig.player->PlayHookMode());
}

TEST(Transport, CueInHookModeIsCuedWhilePaused) {
  PlayerRig rig;
  rig.GoTo(psPlaying);
  rig.player->SetPlayHookMode(true);
  rig.TakeHeard();
  EXPECT_TRUE(rig.player->CueItem());
  EXPECT_EQ(rig.TakeHeard(), "QueryCue(a) QuerySeek(a)=20 Paused Cued");
  EXPECT_EQ(rig.script->TakeCalls(), "Pause Seek(20)");
  EXPECT_EQ(rig.player->Status(), psPaused);
  EXPECT_EQ(rig.player->SecondsPlayed(), 20);
}

TEST(Transport, HookOfAnItemWithoutOne) {
  PlayerRig rig;
  rig.a->SetHookEnd(1, 0);
  EXPECT_TRUE(rig.player->CueItemHook(rig.a));
  EXPECT_EQ(rig.TakeHeard(), "QueryOpen(a) Opening Opened SetPlayHookMode");
  EXPECT_EQ(rig.player->Status(), psOpen);
  rig.a->SetHookStart(1, 0);
  EXPECT_TRUE(rig.player->PlayItemHook());
  EXPECT_EQ(rig.TakeHeard(), "SetPlayHookMode QueryPlay(a) QueryCue(a) QuerySeek(a) Cued Playing=0/-1");
}

TEST(Transport, NothingIsSaidBehindATermination) {
  PlayerRig rig;
  rig.GoTo(psPlaying);
  rig.player->events.LevelChanged.connect([&](std::int16_t, std::int16_t) { rig.player->TerminatePlayer(); });
  rig.Control().Level(1, 2);
  EXPECT_EQ(rig.TakeHeard(), "");
}

TEST(Transport, TerminatedPlayerSaysNothingAndRefusesAll) {
  PlayerRig rig;
  rig.player->SetReference(3);
  rig.GoTo(psPlaying);
  rig.owner->heard.clear();
  rig.player->TerminatePlayer();
  rig.player->TerminatePlayer();
  EXPECT_EQ(rig.TakeHeard() + rig.owner->heard, "");
  EXPECT_EQ(rig.script->control, nullptr);
  EXPECT_EQ(rig.script->TakeCalls(), "RemoveVolumeChange(1) RemoveVolumeChange(2) Volume(100) Close");
  EXPECT_EQ(rig.player->Reference(), 0);
  EXPECT_EQ(rig.player->Status(), psClosed);
  EXPECT_EQ(rig.player->PlayerCallback(), nullptr);
  EXPECT_EQ(rig.owner.use_count(), 1);
  for (const auto& operation : Operations()) EXPECT_FALSE(operation.run(rig)) << operation.name;
  EXPECT_EQ(rig.TakeHeard(), "");
}

TEST(Transport, EachOperationIsTraced) {
  const TempFolder folder;
  PlayerRig rig;
  SetDiagnostics({rig.clock, MemoryRegistry(), nullptr, folder.Path(), "trace"});
  SetDebugMode(5);
  rig.player->InitPlayer(1, nullptr);
  rig.veto = peQueryPause;
  rig.player->CueItem(rig.a);
  rig.player->PauseItem();
  SetDebugMode(0);
  SetDiagnostics({});
  std::string lines,
      text = ReadBytes(folder.File("trace." + CompactDateText(DateTimeNow(*rig.clock).Date) + ".log"));
  for (std::size_t at = 0, end; (end = text.find('\n', at)) != std::string::npos; at = end + 1)
    lines +=
        std::string(Trim(std::string_view(text).substr(at + 8, end - at - 8))) + "\n";  // without the time
  EXPECT_EQ(lines,
            "Start BasePlayer(0).InitPlayer\nLoading Audio Engine\nFinish BasePlayer(0).InitPlayer\n"
            "Start BasePlayer(1).CueItem\nStart BasePlayer(1).OpenItem\nFinish BasePlayer(1).OpenItem\n"
            "Finish BasePlayer(1).CueItem\nStart BasePlayer(1).PauseItem\nExit : Cancelled\n");
}

}  // namespace
}  // namespace qm::test
