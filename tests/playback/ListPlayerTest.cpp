#include "playback/cListPlayer.h"

#include <gtest/gtest.h>

#include <functional>

#include "item/cHDItems.h"
#include "kits/common/Numbers.h"
#include "playback/PlayerRig.h"
#include "playback/cPlayLog.h"
#include "support/HandoverRun.h"

// Lists over the real engine, on the offline device. Items are a second long, with the extro at 0.75 s.
namespace qm::test {
namespace {

struct ListPlayer : ::testing::Test {
  std::vector<float> sound;
  ListRig rig{Offline(std::make_unique<MemorySink>(sound))};
  TempFolder folder;
  std::shared_ptr<cListPlayer> list = std::make_shared<cListPlayer>(rig.platform);
  std::string heard;     // "frame:Event" of all but positions and levels
  std::string finished;  // references of the entries that have finished
  std::int32_t veto = 0;
  std::function<void(std::int32_t)> onEvent;

  void SetUp() override {
    list->SetPlayerCallback(rig.Owner());
    list->InitListPlayer(1, rig.settings);
    list->events.PlayerEvent.connect(
        [this](std::int32_t event, std::string& hdReference, float& sValue1, float& sValue2, auto&&...) {
          if (event != pePositionChanged && event != peAudioLevelChanged)
            AddWord(heard, std::to_string(rig.engine->Frame()) + ":" +
                               EventWord(event, hdReference, sValue1, sValue2) +
                               (event == pePlayerListItemFinished ? "(" + hdReference + ")" : ""));
          if (event == pePlayerListItemFinished)
            finished += list->PreviousListItemPlayLog()->HardDiskItem()->Reference();
          if (event == veto) sValue2 = 1;
          if (onEvent) onEvent(event);
        });
  }
  void TearDown() override {
    if (list) list->TerminateListPlayer();
  }

  std::shared_ptr<cHDItem> Item(const std::string& name) {
    const std::string path = folder.File(name + ".wav");
    WriteBytes(path, Wav16(Noise16(2 * 44100, 0.2), 44100, 2));
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
  const std::string record = list->PreviousListItemPlayLog()->Serialisation(plsoBasic);
  EXPECT_TRUE(record.ends_with(" Dur=1 Flags=16384 Player=1 LogRef=7 SchRef=\"S\"")) << record;
}

TEST_F(ListPlayer, ItsClockRunsOverEntriesOfEachType) {
  Add("a");
  Add("h", hlitHook);
  Add("b");
  EXPECT_FLOAT_EQ(list->TotalLength(), 0.75f + 0.25f + 1);
  float latest = 0;
  onEvent = [&](std::int32_t event) {
    if (event != pePositionChanged || list->Status() == psClosed) return;
    // A hook hands over a little ahead of its end: the sum of what is counted may run ahead by that.
    EXPECT_GE(list->SecondsPlayed(), latest - 0.0001f);
    latest = list->SecondsPlayed();
    EXPECT_FLOAT_EQ(list->SecondsRemain(), list->TotalLength() - latest);
    EXPECT_GE(list->SecondsRemainingExtro(), 0);
    EXPECT_LE(list->PercentagePlayed(), 100);
  };
  ASSERT_TRUE(list->PlayItems());
  rig.Run();
  EXPECT_FLOAT_EQ(list->PreviousSecondsPlayed(), 2);
}

TEST_F(ListPlayer, WhatCannotBePlayedIsPassedOver) {
  const struct {
    const char* spoilt;
    const char* contents;  // none: deleted
    const char* finished;
  } rows[] = {{"bc", nullptr, "ad"}, {"b", "no audio", "acd"}, {"bcd", nullptr, "a"}, {"bcd", "x", "a"}};
  for (const auto& row : rows) {
    Add("abcd");
    finished.clear();
    ASSERT_TRUE(list->PlayItems()) << row.spoilt;
    for (const char* name = row.spoilt; *name; ++name) {
      const std::string path = folder.File(std::string(1, *name) + ".wav");
      row.contents ? WriteBytes(path, row.contents) : static_cast<void>(DeleteFile(path));
    }
    rig.Run();
    EXPECT_EQ(finished, row.finished) << row.spoilt;
    EXPECT_EQ(list->Status(), psClosed) << row.spoilt;
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
}

TEST_F(ListPlayer, EachStepCanBeRefused) {
  Add("ab");
  veto = peQueryCue;
  EXPECT_FALSE(list->CueItems() || list->PlayItems());
  veto = peQueryPlay;
  EXPECT_FALSE(list->PlayItems());
  EXPECT_EQ(list->Status(), psClosed);
  veto = 0;
  ASSERT_TRUE(list->PlayItems());
  veto = peQueryPause;
  EXPECT_FALSE(list->PauseItems());
  veto = peQueryClose;
  EXPECT_FALSE(list->CloseItems() || list->ClearItems());
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
  bool removed = false;
  onEvent = [&](std::int32_t event) {
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
  EXPECT_EQ(finished, "");
  EXPECT_EQ(list->PreviousListItemPlayLog(), nullptr);
  EXPECT_EQ(heard.find("Changed"), std::string::npos) << heard;
  EXPECT_EQ(list->Status(), psClosed);
}

// Whatever a listener does from within whichever event, the list stays in order.
TEST_F(ListPlayer, ListenersMayDoAnything) {
  const std::function<void()> deeds[] = {
      [&] { list->CloseItems(); },
      [&] { list->ClearItems(); },
      [&] { list->CueItems(); },
      [&] { list->PauseItems(); },
      [&] { list->PlayItems(); },
      [&] { list->RemoveItem(list->CurrentItem() + 1); },
      [&] { list->AddItem(Item("z"), hlitFull); },
      [&] { list->TerminateListPlayer(); },
      [&] { list.reset(); },
  };
  for (std::int32_t at : {peQueryCue, peOpening, peOpened, peCued, peQueryPlay, pePlaying, pePositionChanged,
                          pePlayerListCurrentItemChanging, pePlayerListCurrentItemChanged, peExtroReached,
                          pePlayerListItemFinished, peQueryClose, peClosing, pePlayerListCleared, peClosed}) {
    for (const auto& deed : deeds) {
      SCOPED_TRACE(std::string(PlayerEventName(at)) + " " + std::to_string(&deed - deeds));
      onEvent = nullptr;
      if (list) list->TerminateListPlayer();
      list = std::make_shared<cListPlayer>(rig.platform);
      SetUp();
      Add("ab");
      int times = 0;
      onEvent = [&](std::int32_t event) {
        if (event == at && ++times == 1) deed();
      };
      list->PlayItems();
      rig.Run();
      EXPECT_GE(times, 1);
      onEvent = nullptr;
      EXPECT_EQ(list == nullptr, &deed == std::end(deeds) - 1);
      if (!list || list->Status() == psClosed) continue;
      list->PlayItems();
      rig.Run();
      EXPECT_EQ(list->Status(), psClosed);
    }
  }
}

}  // namespace
}  // namespace qm::test
