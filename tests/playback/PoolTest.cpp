#include <gtest/gtest.h>

#include <tuple>

#include "audio/cRecorder.h"
#include "kits/sound/cAudioFormat.h"
#include "playback/PoolRig.h"

namespace qm {
namespace {

using test::MakeItem;
using test::PoolRig;

TEST(Pool, IsBuiltFromTheSettingsAndTakenDown) {
  PoolRig rig(3);
  EXPECT_EQ(rig.pool->NumberPlayers(), 3);
  EXPECT_EQ(rig.pool->Player(0), nullptr);
  EXPECT_EQ(rig.pool->Player(4), nullptr);
  EXPECT_NE(rig.pool->Recorder(), nullptr);
  EXPECT_EQ(rig.sound->scripts.size(), 3u) << "list players are made on demand";
  const auto kept = rig.pool->Player(2);
  ASSERT_TRUE(kept->PlayItem(MakeItem("a")));
  rig.pool->SetNumberPlayers(0);
  EXPECT_EQ(rig.pool->NumberPlayers(), 3) << "below 1 is ignored";
  rig.pool->SetMaxNumberPlayers(2);
  EXPECT_EQ(rig.pool->NumberPlayers(), 2);
  rig.pool->SetNumberPlayers(8);
  EXPECT_EQ(rig.pool->NumberPlayers(), 2);
  EXPECT_EQ(kept->Status(), psPlaying);
  rig.pool->SetAudioSettings(nullptr);
  EXPECT_EQ(kept->Status(), psPlaying) << "no settings, no change";
  rig.pool->SetAutoInitListPlayers(true);
  rig.pool->SetAudioSettings(rig.pool->AudioSettings());
  EXPECT_EQ(kept->BasePlayer(), nullptr) << "built anew";
  EXPECT_EQ(rig.sound->scripts.size(), 3u + 2 * 4);
  rig.pool->Terminate();
  EXPECT_EQ(rig.pool->NumberPlayers(), 0);
  EXPECT_EQ(rig.pool->Recorder(), nullptr);
  rig.pool->Terminate();
}

TEST(Pool, AvailablePlayersAreFoundByStatusRangeAndReservation) {
  PoolRig rig(5);
  rig.Player(1).PlayItem(MakeItem("a"));
  rig.Player(2).CueItem(MakeItem("b"));
  rig.Player(3).SetReservation(7, "News");
  rig.Player(5).LockPlayer();
  const std::tuple<enPlayerStatus, std::int16_t, std::int16_t, std::int32_t, std::int16_t> rows[] = {
      // status, first and last, reservation: the player found
      {psClosed, -1, -1, 0, 4}, {psCued, -1, -1, 0, 2},   {psPlaying, -1, -1, 0, 1}, {psClosed, 5, 1, 0, 4},
      {psCued, 5, 1, 0, 4},     {psClosed, -1, -1, 7, 3}, {psClosed, 1, 2, 0, 0},    {psClosed, 4, 99, 0, 4},
      {psClosed, 0, 0, 0, 0},   {psClosed, -1, -1, 8, 0}, {psLocked, 5, 5, 0, 5},
  };
  for (const auto& [status, first, last, reservation, found] : rows)
    EXPECT_EQ(rig.pool->GetFirstAvailablePlayer(status, first, last, reservation), found)
        << status << " " << first << " to " << last << " for " << reservation;
  EXPECT_EQ(rig.pool->GetNumberAvailablePlayers(psClosed), 2);
  EXPECT_EQ(rig.pool->GetNumberAvailablePlayers(psCued), 3);
  EXPECT_EQ(rig.pool->GetNumberPlayersInUse(), 3) << "a locked one is in use";
  rig.pool->AudioSettings()->SetFirstPlayer(3);
  EXPECT_EQ(rig.pool->GetFirstAvailablePlayer(psPlaying), 4);
}

TEST(Pool, PlayersAreReservedUntilCleared) {
  PoolRig rig(4);
  rig.Player(2).PlayItem(MakeItem("a"));
  rig.TakeHeard();
  EXPECT_EQ(rig.pool->ReservePlayers(5, 1, 3, 9, "News"), 2);
  EXPECT_EQ(rig.TakeHeard(), "1:Reserved=9 3:Reserved=9");
  EXPECT_EQ(rig.Player(3).ReservationCaption(), "News");
  EXPECT_EQ(rig.pool->GetNumberReservedPlayers(9), 2);
  EXPECT_EQ(rig.pool->GetFirstAvailablePlayer(psClosed, 1, 3), 0);
  EXPECT_EQ(rig.pool->ClearPlayerReservations(8), 0);
  EXPECT_EQ(rig.pool->ClearPlayerReservations(9), 2);
  EXPECT_EQ(rig.TakeHeard(), "1:ReservationCleared=9 3:ReservationCleared=9");
}

TEST(Pool, ItemsAreFoundByReferenceAndLogLine) {
  PoolRig rig(4);
  rig.Player(1).PlayItem(MakeItem("run"));
  rig.Player(1).SetLogReference(5);
  rig.Player(2).CueItem(MakeItem("cued"));
  rig.Player(3).CueItem(MakeItem("logged"));
  rig.Player(3).SetLogReference(6);
  const std::tuple<const char*, double, int, int, int> rows[] = {
      // loaded, running, held
      {"CUED ", 0, 2, 0, 2}, {"logged", 0, 0, 0, 3}, {"logged", 6, 3, 0, 3}, {"logged", 5, 0, 0, 0},
      {"RUN", 0, 0, 1, 1},   {"run", 5, 0, 1, 1},    {"", 6, 3, 0, 3},       {"", 5, 0, 1, 1},
      {"", 0, 0, 0, 0},      {"none", 0, 0, 0, 0},
  };
  for (const auto& [reference, log, loaded, running, held] : rows) {
    EXPECT_EQ(rig.pool->IsHDReferenceLoaded(reference, log), loaded) << reference << " " << log;
    EXPECT_EQ(rig.pool->IsHDReferenceRunning(reference, log), running) << reference << " " << log;
    EXPECT_EQ(rig.pool->GetPlayerIndexByHDReference(reference, log), held) << reference << " " << log;
  }
  EXPECT_EQ(rig.pool->GetPlayerByHDReference("cued"), rig.pool->Player(2));
  EXPECT_EQ(rig.pool->GetPlayerByHDReference("none"), nullptr);
  EXPECT_EQ(rig.pool->GetFirstUsedListPlayer(), 0);
  rig.Player(4).ListAddItem(MakeItem("x"), hlitFull);
  EXPECT_EQ(rig.pool->GetFirstUsedListPlayer(), 4);
}

TEST(Pool, QuickOperationsFindAPlayer) {
  PoolRig rig(3);
  auto a = MakeItem("a");
  auto nameless = MakeItem("b");
  nameless->SetReference("");
  auto fileless = MakeItem("c");
  fileless->SetAudioFileName("");
  EXPECT_EQ(rig.pool->QuickCueHDItem(nullptr), 0);
  EXPECT_EQ(rig.pool->QuickCueHDItem(nameless), 0);
  EXPECT_EQ(rig.pool->QuickPlayHDItem(fileless), 0);
  EXPECT_EQ(rig.pool->QuickCueHDItem(a, 3), 3);
  EXPECT_EQ(rig.Player(3).InitialVolume(), 90) << "the general volume";
  EXPECT_EQ(rig.pool->QuickCueHDItem(a), 3) << "where it is already";
  EXPECT_EQ(rig.pool->QuickPlayHDItem(a, -5), 3);
  EXPECT_EQ(rig.Player(3).Status(), psPlaying);
  EXPECT_EQ(rig.pool->QuickPlayHDItem(MakeItem("d"), 0, 40), 1);
  EXPECT_EQ(rig.Player(1).InitialVolume(), 40);
  EXPECT_EQ(rig.pool->QuickCueHDItem(MakeItem("e"), 99), 2);
  EXPECT_EQ(rig.pool->QuickCueHDItem(MakeItem("f")), 2) << "over what is only cued";
  EXPECT_EQ(rig.Player(2).HDReference(), "f");
  EXPECT_EQ(rig.pool->PlayAll(), 1);
  EXPECT_EQ(rig.pool->QuickCueHDItem(MakeItem("g")), 0) << "all are playing";
}

TEST(Pool, FunctionKeysWorkThePlayers) {
  constexpr std::int16_t F1 = 112, kShift = 1, kControl = 2, kAlt = 4;
  struct {
    const char* what;
    std::int16_t players;
    bool reserved;
    std::int16_t key, held;
    const char* did;  // questions asked and what the players said
  } const rows[] = {
      // Player 1 plays "a" at 20 s, player 2 has "b" cued, player 3 is closed, player 4 locked.
      {"play", 4, false, F1 + 4, 0, "?2:playing 2:QueryPlay(b) 2:Playing=0/-1"},
      {"pause", 4, false, F1 + 1, 0, "?1:paused 1:QueryPause(a) 1:Paused"},
      {"pause under control", 4, false, F1 + 1, kControl, "?1:paused 1:QueryPause(a) 1:Paused"},
      {"cue is at once", 4, false, F1 + 6, 0, "?2:cued 2:QueryCue(b)"},
      {"close", 4, false, F1 + 7, 0, "?2:closed 2:QueryClose(b) 2:Closing 2:Closed"},
      {"back 5 s", 4, false, F1, kControl, "1:QuerySeek(a)=15"},
      {"to the start", 4, false, F1 + 2, kControl, "1:QuerySeek(a)"},
      {"forward 5 s", 4, false, F1 + 3, kControl, "1:QuerySeek(a)=25"},
      {"a closed player", 4, false, F1 + 8, 0, ""},
      {"alt loads it", 4, false, F1 + 8, kAlt,
       "?3:playing 3:QueryPlay(x) 3:QueryOpen(x) 3:Opening 3:Opened 3:QueryCue(x) 3:Cued 3:Playing=0/-1"},
      {"alt replaces", 4, false, F1 + 6, kAlt,
       "?2:cued 2:QueryCue(x) 2:QueryOpen(x) 2:QueryClose(b) 2:Closing 2:Closed 2:Opening 2:Opened 2:Cued"},
      {"a locked player", 4, false, F1 + 12, 0, ""},
      {"no such player", 2, false, F1 + 8, kAlt, ""},
      {"shift goes three players on", 7, false, F1 + 12, kShift, ""},
      {"shift in the third group of many", 7, false, F1 + 8, kShift | kAlt,
       "?6:playing 6:QueryPlay(x) 6:QueryOpen(x) 6:Opening 6:Opened 6:QueryCue(x) 6:Cued 6:Playing=0/-1"},
      {"shift in the third group of few", 5, false, F1 + 10, kShift | kAlt, ""},
      {"reserved keys", 4, true, F1 + 1, 0, ""},
      {"the first of the others", 4, true, F1 + 5, 0, "?1:paused 1:QueryPause(a) 1:Paused"},
      {"shift goes two players on", 4, true, F1 + 4, kShift | kAlt,
       "?3:playing 3:QueryPlay(x) 3:QueryOpen(x) 3:Opening 3:Opened 3:QueryCue(x) 3:Cued 3:Playing=0/-1"},
      {"no function key", 4, false, F1 - 1, 0, ""},
      {"behind the last", 4, false, F1 + 16, 0, ""},
  };
  for (const auto& row : rows) {
    PoolRig rig(row.players);
    rig.pool->SetF1toF4Reserved(row.reserved);
    rig.Player(1).PlayItem(MakeItem("a"));
    rig.PlayTo(1, 20);
    rig.Player(2).CueItem(MakeItem("b"));
    if (row.players >= 4) rig.Player(4).LockPlayer();
    rig.TakeHeard();
    bool allow = true;
    rig.pool->events.CheckPlayerKeyCommand.connect(
        [&](std::int16_t player, enPlayerStatus status, bool& allowed) {
          test::AddWord(rig.heard, "?" + std::to_string(player) + ":" + test::StatusName(status));
          allowed = allow;
        });
    EXPECT_EQ(rig.pool->CheckKeyPress(row.key, row.held, MakeItem("x")), *row.did != 0) << row.what;
    EXPECT_EQ(rig.TakeHeard(), row.did) << row.what;
    if (row.did[0] != '?') continue;
    allow = false;
    EXPECT_FALSE(rig.pool->CheckKeyPress(row.key, row.held, MakeItem("y"))) << row.what;
    EXPECT_EQ(rig.TakeHeard().find("Query"), std::string::npos) << row.what;
  }
}

TEST(Pool, ShiftAndTheThirdGroupWorkTheRecorder) {
  constexpr std::int16_t F9 = 120, kShift = 1, kControl = 2, kAlt = 4;
  struct {
    std::int16_t key, held;
    const char* told;  // events of the recorder
  } const rows[] = {
      {F9, kShift, "5"},
      {F9 + 1, kShift, "9"},
      {F9 + 2, kShift, ""},
      {F9 + 3, kShift | kControl, "18=2"},
      {F9 + 3, kShift | kAlt, "18"},
      {F9 + 1, 0, ""},
  };
  for (const auto& row : rows) {
    PoolRig rig(3);
    auto item = MakeItem("take");
    auto format = std::make_shared<cAudioFormat>();
    format->SetFormatType(2), format->SetWAVFormatTag(1);
    format->SetSampleRate(8000), format->SetChannels(1);
    ASSERT_TRUE(rig.pool->Recorder()->RecordItem(item, format));
    rig.sound->recording->events.Position();
    std::string told;
    rig.pool->events.RecorderEvent.connect([&](std::int32_t event, std::string&, float& sValue1, auto&&...) {
      test::AddWord(told, std::to_string(event) + (sValue1 != 0 ? "=" + NumberText(sValue1) : ""));
    });
    EXPECT_EQ(rig.pool->CheckKeyPress(row.key, row.held, nullptr), *row.told != 0) << row.key;
    EXPECT_EQ(told, row.told) << row.key << "+" << row.held;
  }
}

TEST(Pool, MayBeLetGoFromWithinAnEvent) {
  PoolRig rig(2);
  auto pool = std::make_shared<cPlayers>(rig.platform);
  pool->SetAudioSettings(rig.pool->AudioSettings());
  pool->events.PlayerEvent.connect([&](auto&&...) { pool.reset(); });
  const auto player = pool->Player(1);
  EXPECT_FALSE(player->PlayItem(MakeItem("a")));
  EXPECT_EQ(pool, nullptr);
}

}  // namespace
}  // namespace qm
