#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <tuple>

#include "kits/common/Text.h"
#include "playback/PlayerRig.h"

namespace qm::test {
namespace {

constexpr enPlayerStatus kStatuses[] = {psClosed, psOpen, psCued, psPlaying, psPaused, psLocked};

// Statuses | operation | result, new status, events. "opened" is every status with an item.
constexpr const char* kWalk = R"(
closed         | Open(a)     | true open: QueryOpen(a) Opening Opened
opened         | Open(a)     | false same:
closed         | Open(b)     | true open: QueryOpen(b) Opening Opened
opened         | Open(b)     | true open: QueryOpen(b) QueryClose(a) Closing Closed Opening Opened
closed         | Cue()       | false closed:
open           | Cue()       | true cued: QueryCue(a) Cued
cued           | Cue()       | true cued: QueryCue(a)
playing paused | Cue()       | true cued: QueryCue(a) Cued
closed         | Cue(b)      | true cued: QueryCue(b) QueryOpen(b) Opening Opened Cued
opened         | Cue(b)      | true cued: QueryCue(b) QueryOpen(b) QueryClose(a) Closing Closed Opening Opened Cued
closed         | Play()      | false closed:
open           | Play()      | true playing: QueryPlay(a) QueryCue(a) Cued Playing=0/-1
cued           | Play()      | true playing: QueryPlay(a) Playing=0/-1
playing        | Play()      | true playing: QueryPlay(a)
paused         | Play()      | true playing: QueryPlay(a) Playing=5
closed         | Play(b)     | true playing: QueryPlay(b) QueryOpen(b) Opening Opened QueryCue(b) Cued Playing=0/-1
opened         | Play(b)     | true playing: QueryPlay(b) QueryOpen(b) QueryClose(a) Closing Closed Opening Opened QueryCue(b) Cued Playing=0/-1
closed         | Pause()     | false closed:
open cued      | Pause()     | false same: QueryPause(a)
playing paused | Pause()     | true paused: QueryPause(a) Paused
closed         | Seek(50)    | false closed:
open cued      | Seek(50)    | true paused: QuerySeek(a)=50 Paused
playing        | Seek(50)    | true playing: QuerySeek(a)=50
paused         | Seek(50)    | true paused: QuerySeek(a)=50 Paused
closed         | Seek(0)     | false closed:
open cued playing | Seek(0)  | true same: QuerySeek(a)
paused         | Seek(0)     | true cued: QuerySeek(a) Cued
closed         | Seek(50,b)  | true paused: QuerySeek(b)=50 QueryOpen(b) Opening Opened Paused
opened         | Seek(50,b)  | true paused: QuerySeek(b)=50 QueryOpen(b) QueryClose(a) Closing Closed Opening Opened Paused
closed         | CueHook()   | false closed:
open cued paused | CueHook() | true paused: SetPlayHookMode QuerySeek(a)=20 Paused
playing        | CueHook()   | true paused: QueryPause(a) Paused SetPlayHookMode QuerySeek(a)=20 Paused
closed         | PlayHook(a) | true playing: QueryOpen(a) Opening Opened SetPlayHookMode QuerySeek(a)=20 Paused QueryPlay(a) Playing=20
open cued paused | PlayHook(a) | true playing: SetPlayHookMode QuerySeek(a)=20 Paused QueryPlay(a) Playing=20
playing        | PlayHook(a) | true playing: QueryPause(a) Paused SetPlayHookMode QuerySeek(a)=20 Paused QueryPlay(a) Playing=20
closed         | Close()     | true closed:
opened         | Close()     | true closed: QueryClose(a) Closing Closed
closed         | Lock()      | true locked: Locked
opened         | Lock()      | true locked: QueryClose(a) Closing Closed Locked
closed opened locked | UnLock() | true closed: UnLocked
)";

// "status operation" to what comes of it, for every pair.
std::map<std::string, std::string> WalkRows() {
  std::map<std::string, std::string> rows;
  std::istringstream lines(kWalk);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream fields(line);
    std::string statuses, operation, outcome;
    if (!std::getline(fields, statuses, '|')) continue;
    std::getline(fields, operation, '|');
    std::getline(fields, outcome);
    if (const auto at = statuses.find("opened"); at != std::string::npos)
      statuses.replace(at, 6, "open cued playing paused");
    std::istringstream names(statuses);
    for (std::string status; names >> status;) {
      std::string result(Trim(outcome));
      if (const auto at = result.find(" same:"); at != std::string::npos) result.replace(at + 1, 4, status);
      EXPECT_TRUE(rows.emplace(status + " " + std::string(Trim(operation)), result).second) << line;
    }
  }
  for (const auto& [name, run] : Operations()) rows.emplace("locked " + name, "false locked:");
  return rows;
}

TEST(TransportWalk, EveryStatusTimesEveryOperation) {
  const auto rows = WalkRows();
  for (const enPlayerStatus status : kStatuses) {
    for (const auto& [operation, run] : Operations()) {
      const std::string name = StatusName(status) + " " + operation;
      PlayerRig rig;
      rig.GoTo(status);
      ASSERT_EQ(rig.player->Status(), status);
      EXPECT_EQ(Outcome(rig, operation), rows.at(name)) << name;
      EXPECT_EQ(rig.TakeHeard(), "") << name;
    }
  }
}

TEST(TransportWalk, FailureOfTheControlIsAnsweredAndTakenBack) {
  const std::tuple<enPlayerStatus, const char*, const char*, const char*> rows[] = {
      // from, what the control fails at, operation, outcome
      {psClosed, "Open", "Open(a)", "false closed: QueryOpen(a) Opening Closed"},
      {psCued, "Open", "Open(b)", "false closed: QueryOpen(b) QueryClose(a) Closing Closed Opening Closed"},
      {psPlaying, "Cue", "Cue()", "false open: QueryCue(a)"},
      {psOpen, "Cue", "Play()", "false open: QueryPlay(a) QueryCue(a)"},
      {psCued, "Play", "Play()", "false cued: QueryPlay(a)"},
      {psPaused, "Play", "Play()", "false paused: QueryPlay(a)"},
      {psPlaying, "Pause", "Pause()", "false playing: QueryPause(a)"},
      {psCued, "Seek", "Seek(50)", "false cued: QuerySeek(a)=50"},
      {psPaused, "Seek", "CueHook()",
       "false closed: SetPlayHookMode QuerySeek(a)=20 QueryClose(a) Closing Closed"},
      {psCued, "Close", "Close()", "false cued: QueryClose(a) Closing"},
      {psCued, "Close", "Lock()", "false cued: QueryClose(a) Closing"},
      {psCued, "Close", "Open(b)", "false cued: QueryOpen(b) QueryClose(a) Closing"},
  };
  for (const auto& [from, failing, operation, outcome] : rows) {
    PlayerRig rig;
    rig.GoTo(from);
    rig.script->failing = {failing};
    EXPECT_EQ(Outcome(rig, operation), outcome) << operation;
  }
}

// What was said from a word on, that word left out.
std::string Behind(const std::string& heard, const std::string& word) {
  const auto at = heard.find(word);
  const auto end = heard.find(' ', at);
  return end == std::string::npos ? "" : heard.substr(end + 1);
}

// One question refused, by the listener or by the owner. False when it was not asked.
bool RefuseOne(enPlayerStatus status, const std::string& operation, std::int32_t query, bool byOwner) {
  PlayerRig rig;
  rig.GoTo(status);
  (byOwner ? rig.owner->veto : rig.veto) = query;
  const bool result = RunNamed(rig, operation);
  const std::string word = EventWord(query, "", 0, 0).substr(0, 8);
  if (rig.heard.find(word) == std::string::npos) return false;
  const std::string name = StatusName(status) + " " + operation + ": " + rig.heard;
  const bool hook = operation.find("Hook") != std::string::npos;
  if (hook && query == peQueryPause) return true;  // goes to the hook without a pause
  EXPECT_FALSE(result) << name;
  EXPECT_EQ(Behind(rig.heard, word), hook && query == peQuerySeek ? "QueryClose(a) Closing Closed" : "")
      << name;
  if (rig.heard.starts_with(word) && !hook) {
    EXPECT_EQ(rig.player->Status(), status) << name;
    EXPECT_EQ(rig.script->calls, "") << name;
  }
  return true;
}

TEST(TransportWalk, EveryQuestionCanBeRefused) {
  int refused = 0;
  for (const enPlayerStatus status : kStatuses)
    for (const auto& [operation, run] : Operations())
      for (const auto query : {peQueryOpen, peQueryCue, peQueryPlay, peQueryPause, peQuerySeek, peQueryClose})
        for (const bool byOwner : {false, true}) refused += RefuseOne(status, operation, query, byOwner);
  EXPECT_GT(refused, 100);
}

}  // namespace
}  // namespace qm::test
