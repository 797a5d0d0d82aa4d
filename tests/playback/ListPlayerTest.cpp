#include "playback/cListPlayer.h"

#include <gtest/gtest.h>

#include <functional>

#include "item/cHDItems.h"
#include "kits/common/Numbers.h"
#include "playback/PlayerRig.h"
#include "playback/cPlayLog.h"
#include "support/HandoverRun.h"

// Lists over the real engine, on the offline device. Items are a second long, with the extro at 0.75 s.
namespace qm {
namespace {

struct ListPlayer : ::testing::Test {
  std::vector<float> sound;
  test::ListRig rig{test::Offline(std::make_unique<test::KeepingSink>(sound))};
  test::TempFolder folder;
  std::shared_ptr<cListPlayer> list = std::make_shared<cListPlayer>(rig.platform);
  std::string heard;    // "frame:Event" of all but positions and levels
  std::string records;  // play log of each finished entry, times left out
  std::int32_t veto = 0;
  std::function<void(std::int32_t)> onEvent;

  void SetUp() override {
    list->SetPlayerCallback(rig.Owner());
    list->InitListPlayer(1, rig.settings);
    list->events.PlayerEvent.connect([this](std::int32_t event, std::string& hdReference, float& sValue1,
                                            float& sValue2, std::string&, std::string&) {
      if (event != pePositionChanged && event != peAudioLevelChanged)
        test::AddWord(heard, std::to_string(rig.engine->Frame()) + ":" +
                                 test::EventWord(event, hdReference, sValue1, sValue2) +
                                 (event == pePlayerListItemFinished ? "(" + hdReference + ")" : ""));
      if (event == pePlayerListItemFinished)
        records += list->PreviousListItemPlayLog()->Serialisation(plsoBasic) + "\n";
      if (event == veto) sValue2 = 1;
      if (onEvent) onEvent(event);
    });
  }
  void TearDown() override { list->TerminateListPlayer(); }

  std::shared_ptr<cHDItem> Item(const std::string& name, const char* contents = nullptr) {
    const std::string path = folder.File(name + ".wav");
    test::WriteBytes(path, contents ? contents : test::Wav16(test::Noise16(2 * 44100, 0.2), 44100, 2));
    auto item = std::make_shared<cHDItem>();
    item->SetReference(name);
    item->SetItemTitle("Title " + name);
    item->SetAudioFileName(path);
    item->SetTotalLength(1);
    item->SetExtro(1, 0.75f);
    item->SetHookEnd(1, 0.5f);
    item->SetHookStart(1, 0.25f);
    return item;
  }
  void Add(const std::string& names, enListItemType type = hlitFull) {
    for (char name : names) ASSERT_TRUE(list->AddItem(Item(std::string(1, name)), type, "S", 7));
    heard.clear();
  }
  std::string TakeHeard() { return std::exchange(heard, {}); }
};

TEST_F(ListPlayer, TellsOneRunFromEndToEnd) {
  Add("ab");
  EXPECT_FLOAT_EQ(list->TotalLength(), 1.75f);
  ASSERT_TRUE(list->CueItems());
  EXPECT_EQ(TakeHeard(), "0:QueryCue() 0:Opening 0:Opened 0:Cued");
  EXPECT_EQ(list->HDReference(), "List");
  EXPECT_EQ(list->HDItem()->ItemTitle(), "Title a");
  EXPECT_FLOAT_EQ(list->SecondsRemainingExtro(), 1.5f);
  ASSERT_TRUE(list->PlayItems());
  EXPECT_EQ(TakeHeard(), "0:QueryPlay(List) 0:Playing=0/-1");
  rig.Run();
  // The first item runs out under the second, and its end is told as finished.
  EXPECT_EQ(TakeHeard(),
            "33075:ExtroReached 33075:PlayerListCurrentItemChanging=1 33075:PlayerListCurrentItemChanged=2 "
            "44100:PlayerListItemFinished(a) 66150:ExtroReached 77175:PlayerListItemFinished(b) "
            "77175:QueryClose(List) 77175:Closing 77175:PlayerListCleared 77175:Closed");
  EXPECT_EQ(list->Status(), psClosed);
  EXPECT_EQ(list->NumberItems(), 0);
  EXPECT_EQ(list->HDItem(), nullptr);
  EXPECT_EQ(list->PreviousHDItem()->ItemTitle(), "Title b");
  EXPECT_FLOAT_EQ(list->PreviousSecondsPlayed(), 1.75f);
  EXPECT_EQ(sound.size() / 2, 77175u);
}

TEST_F(ListPlayer, ItsClockRunsOverEntriesOfEachType) {
  Add("a");
  Add("h", hlitHook);
  Add("b");
  EXPECT_FLOAT_EQ(list->TotalLength(), 0.75f + 0.25f + 1);
  float latest = 0;
  bool steady = true;
  std::string sections;
  onEvent = [&](std::int32_t event) {
    if (event != pePositionChanged || list->Status() == psClosed) return;
    // A hook hands over a little ahead of its end: the sum of what is counted may run ahead by that.
    steady = steady && list->SecondsPlayed() >= latest - 0.0001f;
    latest = list->SecondsPlayed();
    EXPECT_FLOAT_EQ(list->SecondsRemain(), list->TotalLength() - latest);
    EXPECT_GE(list->SecondsRemainingExtro(), 0);
    EXPECT_LE(list->PercentagePlayed(), 100);
  };
  ASSERT_TRUE(list->PlayItems());
  rig.Run();
  EXPECT_TRUE(steady);
  EXPECT_FLOAT_EQ(list->PreviousSecondsPlayed(), 2);
}

TEST_F(ListPlayer, LeavesARecordOfEachEntry) {
  Add("a");
  Add("h", hlitHook);
  rig.settings->SetGeneralVolume(80);
  list->SetLogReference(3);
  ASSERT_TRUE(list->PlayItems());
  rig.engine->Pump();
  EXPECT_EQ(list->CurrentItemPlayLog()->HardDiskItem()->Reference(), "a");
  rig.Run();
  EXPECT_EQ(list->CurrentItemPlayLog(), nullptr);
  std::string expected = records;
  for (std::size_t from = 0; (from = expected.find("StDt=", from)) != std::string::npos; from += 5)
    expected.replace(from + 5, 19, "?");
  EXPECT_EQ(expected,
            "HDRef=\"a\" StDt=? Dur=1 Flags=16384 Player=1 LogRef=7 SchRef=\"S\"\n"
            "HDRef=\"h\" StDt=? Dur=0.5 Flags=24576 Player=1 LogRef=7 SchRef=\"S\"\n");
}

TEST_F(ListPlayer, WhatCannotBePlayedIsPassedOver) {
  struct {
    const char* what;
    const char* finished;
    std::function<void()> spoil;
  } const rows[] = {
      {"a missing file", "a d ", [&] { DeleteFile(folder.File("b.wav")), DeleteFile(folder.File("c.wav")); }},
      {"no audio", "a c d ", [&] { test::WriteBytes(folder.File("b.wav"), "no audio"); }},
      {"no file left", "a ",
       [&] {
         for (const char* name : {"b.wav", "c.wav", "d.wav"}) DeleteFile(folder.File(name));
       }},
      {"no audio left", "a ",
       [&] {
         for (const char* name : {"b.wav", "c.wav", "d.wav"}) test::WriteBytes(folder.File(name), "x");
       }},
  };
  for (const auto& row : rows) {
    Add("abcd");
    std::string finished;
    onEvent = [&](std::int32_t event) {
      if (event == pePlayerListItemFinished)
        finished += list->PreviousListItemPlayLog()->HardDiskItem()->Reference() + " ";
    };
    ASSERT_TRUE(list->PlayItems()) << row.what;
    row.spoil();
    rig.Run();
    EXPECT_EQ(finished, row.finished) << row.what;
    EXPECT_EQ(list->Status(), psClosed) << row.what;
  }
  // The first entry has to be there for a start.
  Add("ab");
  DeleteFile(folder.File("a.wav"));
  EXPECT_FALSE(list->PlayItems());
  EXPECT_EQ(list->Status(), psClosed);
  EXPECT_EQ(list->NumberItems(), 2);
}

TEST_F(ListPlayer, EntriesWithoutLengthAreRefused) {
  auto endless = Item("e");
  endless->SetAudioEnd(1, 0);
  auto hookless = Item("h");
  hookless->SetHookEnd(1, 0);
  EXPECT_FALSE(list->AddItem(nullptr, hlitFull));
  EXPECT_FALSE(list->AddItem(endless, hlitFull));
  EXPECT_FALSE(list->AddItem(hookless, hlitHook));
  EXPECT_EQ(heard, "");
  EXPECT_TRUE(list->AddItem(endless, hlitSeparator));
  EXPECT_EQ(list->NumberSeparatorItems(), 1);
  EXPECT_EQ(list->TotalLength(), 0);
  EXPECT_FALSE(list->AddList(nullptr));
  EXPECT_FALSE(list->AddList(std::make_shared<cHDItems>()));
}

TEST_F(ListPlayer, EachStepCanBeRefused) {
  Add("ab");
  veto = peQueryCue;
  EXPECT_FALSE(list->CueItems());
  EXPECT_FALSE(list->PlayItems());
  veto = peQueryPlay;
  EXPECT_FALSE(list->PlayItems());
  EXPECT_EQ(list->Status(), psClosed);
  veto = 0;
  ASSERT_TRUE(list->PlayItems());
  veto = peQueryPause;
  EXPECT_FALSE(list->PauseItems());
  veto = peQueryClose;
  EXPECT_FALSE(list->CloseItems());
  EXPECT_FALSE(list->ClearItems());
  EXPECT_EQ(list->NumberItems(), 2);
  EXPECT_EQ(list->Status(), psPlaying);
  veto = 0;
  EXPECT_TRUE(list->CloseItems());
  EXPECT_TRUE(list->CloseItems()) << "closed already";
  EXPECT_FALSE(list->PauseItems());
}

TEST_F(ListPlayer, APausedRunGoesOnWhereItStood) {
  Add("ab");
  ASSERT_TRUE(list->PlayItems());
  for (int i = 0; i < 40; ++i) rig.engine->Pump();
  const float stands = list->SecondsPlayed();
  ASSERT_TRUE(list->PauseItems());
  ASSERT_TRUE(list->PauseItems());
  EXPECT_EQ(list->Status(), psPaused);
  rig.Run();
  EXPECT_EQ(list->SecondsPlayed(), stands);
  ASSERT_TRUE(list->PlayItems());
  rig.Run();
  EXPECT_FLOAT_EQ(list->PreviousSecondsPlayed(), 1.75f);
}

TEST_F(ListPlayer, EntriesAreTakenOutAsLongAsTheyHaveNotBegun) {
  Add("abcd");
  EXPECT_FALSE(list->RemoveItem(0));
  EXPECT_FALSE(list->RemoveItem(5));
  ASSERT_TRUE(list->CueItems());
  ASSERT_TRUE(list->RemoveItem(1)) << "the next is cued in its place";
  EXPECT_EQ(list->CurrentItemHDRef(), "b");
  EXPECT_EQ(list->Status(), psCued);
  ASSERT_TRUE(list->PlayItems());
  std::string finished;
  bool removed = false;
  onEvent = [&](std::int32_t event) {
    if (event == pePlayerListItemFinished)
      finished += list->PreviousListItemPlayLog()->HardDiskItem()->Reference();
    // By now the second entry waits on a player.
    if (event != pePositionChanged || removed || list->SecondsPlayed() < 0.5f) return;
    removed = true;
    EXPECT_FALSE(list->RemoveItem(1));
    EXPECT_TRUE(list->RemoveItem(2));
  };
  rig.Run();
  EXPECT_EQ(finished, "bd");
  EXPECT_FLOAT_EQ(list->PreviousSecondsPlayed(), 1.75f);
}

TEST_F(ListPlayer, WithheldEventsTakeTheRecordsWithThem) {
  Add("ab");
  list->SetRaiseEvents(false);
  ASSERT_TRUE(list->PlayItems());
  rig.Run();
  EXPECT_EQ(records, "");
  EXPECT_EQ(list->PreviousListItemPlayLog(), nullptr);
  EXPECT_EQ(heard.find("Changed"), std::string::npos) << heard;
  EXPECT_EQ(list->Status(), psClosed);
}

// Whatever a listener does from within whichever event, the list stays in order.
TEST_F(ListPlayer, ListenersMayDoAnything) {
  const std::pair<const char*, std::function<void()>> deeds[] = {
      {"close", [&] { list->CloseItems(); }},
      {"clear", [&] { list->ClearItems(); }},
      {"cue", [&] { list->CueItems(); }},
      {"pause", [&] { list->PauseItems(); }},
      {"play", [&] { list->PlayItems(); }},
      {"remove", [&] { list->RemoveItem(list->CurrentItem() + 1); }},
      {"add", [&] { list->AddItem(Item("z"), hlitFull); }},
      {"terminate", [&] { list->TerminateListPlayer(); }},
  };
  for (std::int32_t at : {peQueryCue, peOpening, peOpened, peCued, peQueryPlay, pePlaying, pePositionChanged,
                          pePlayerListCurrentItemChanging, pePlayerListCurrentItemChanged, peExtroReached,
                          pePlayerListItemFinished, peQueryClose, peClosing, pePlayerListCleared, peClosed}) {
    for (const auto& [name, deed] : deeds) {
      onEvent = nullptr;
      list->TerminateListPlayer();
      list = std::make_shared<cListPlayer>(rig.platform);
      SetUp();
      Add("ab");
      int times = 0;
      onEvent = [&, act = deed](std::int32_t event) {
        if (event == at && ++times == 1) act();
      };
      list->PlayItems();
      rig.Run();
      EXPECT_GE(times, 1) << PlayerEventName(at);
      onEvent = nullptr;
      if (list->Status() != psClosed) {
        list->PlayItems();
        rig.Run();
        EXPECT_EQ(list->Status(), psClosed) << name << " from " << PlayerEventName(at);
      }
    }
  }
}

TEST_F(ListPlayer, TheLastHolderMayLetGoFromWithinAnEvent) {
  Add("ab");
  onEvent = [&](std::int32_t event) {
    if (event == pePlayerListCurrentItemChanged) list.reset();
  };
  ASSERT_TRUE(list->PlayItems());
  rig.Run();
  EXPECT_EQ(list, nullptr);
  list = std::make_shared<cListPlayer>(rig.platform);
}

}  // namespace
}  // namespace qm
