#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>

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

std::vector<std::vector<std::string>> Rows(const char* text) {
  std::vector<std::vector<std::string>> rows;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream fields(line);
    if (!line.empty()) rows.emplace_back();
    for (std::string field; std::getline(fields, field, '|');) rows.back().emplace_back(Trim(field));
  }
  return rows;
}

// "status operation" to what comes of it, for every pair.
std::map<std::string, std::string> WalkRows() {
  std::map<std::string, std::string> rows;
  for (std::vector<std::string>& row : Rows(kWalk)) {
    if (const auto at = row[0].find("opened"); at != std::string::npos)
      row[0].replace(at, 6, "open cued playing paused");
    std::istringstream names(row[0]);
    for (std::string status; names >> status;) {
      std::string result = row[2];
      if (const auto at = result.find(" same:"); at != std::string::npos) result.replace(at + 1, 4, status);
      EXPECT_TRUE(rows.emplace(status + " " + row[1], result).second) << status << " " << row[1];
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

// Status | what goes wrong | operation | outcome. A control fails at what follows "fails", raises an error as
// well at what follows "tells", and goes on behind the error at what follows "warns"; a listener does what
// follows the name of an event when it first hears it, and nothing fails from then on.
constexpr const char* kTwists = R"(
closed  | fails Open  | Open(a)   | false closed: QueryOpen(a) Opening Closed
cued    | fails Open  | Open(b)   | false closed: QueryOpen(b) QueryClose(a) Closing Closed Opening Closed
playing | fails Cue   | Cue()     | false open: QueryCue(a)
open    | fails Cue   | Play()    | false open: QueryPlay(a) QueryCue(a)
cued    | fails Play  | Play()    | false cued: QueryPlay(a)
paused  | fails Play  | Play()    | false paused: QueryPlay(a)
playing | fails Pause | Pause()   | false playing: QueryPause(a)
cued    | fails Seek  | Seek(50)  | false cued: QuerySeek(a)=50
paused  | fails Seek  | CueHook() | false closed: SetPlayHookMode QuerySeek(a)=20 QueryClose(a) Closing Closed
cued    | fails Close | Close()   | false cued: QueryClose(a) Closing
cued    | fails Close | Lock()    | false cued: QueryClose(a) Closing
cued    | fails Close | Open(b)   | false cued: QueryOpen(b) QueryClose(a) Closing
cued    | warns Play Error Play(b)    | Play()   | false playing: QueryPlay(a) Error=7 QueryPlay(b) QueryOpen(b) QueryClose(a) Closing Closed Opening Opened QueryCue(b) Cued Playing=0/-1
open    | tells Seek Error Close()    | Seek(50) | false closed: QuerySeek(a)=50 Error=7 QueryClose(a) Closing Closed
open    | volume 50 VolumeChanged Close() | Cue() | false closed: QueryCue(a) VolumeChanged=100 QueryClose(a) Closing Closed
open    | QueryCue Close()    | Cue()       | false closed: QueryCue(a) QueryClose(a) Closing Closed
open    | QueryOpen Open(b)   | Open(b)     | false open: QueryOpen(b) QueryOpen(b) QueryClose(a) Closing Closed Opening Opened
closed  | Opened Close()      | Play(b)     | false closed: QueryPlay(b) QueryOpen(b) Opening Opened QueryClose(b) Closing Closed
closed  | Opening Lock()      | Open(b)     | false locked: QueryOpen(b) Opening Locked
open    | QuerySeek Seek(50)  | Seek(50)    | true paused: QuerySeek(a)=50 Paused
playing | Paused Close()      | PlayHook(a) | false closed: QueryPause(a) Paused QueryClose(a) Closing Closed
open    | Closing Lock()      | Close()     | true closed: QueryClose(a) Closing Closed
open    | Closing Open(b)     | Close()     | true closed: QueryClose(a) Closing QueryOpen(b) Closed
open    | Closed Open(b)      | Lock()      | false open: QueryClose(a) Closing Closed QueryOpen(b) Opening Opened
open    | QueryClose UnLock() | Close()     | true closed: QueryClose(a) UnLocked
)";

TEST(TransportWalk, FailuresAndAnswersFromWithinLeaveItInOrder) {
  for (const auto& row : Rows(kTwists)) {
    PlayerRig rig;
    rig.GoTo(*std::find_if(std::begin(kStatuses), std::end(kStatuses),
                           [&](enPlayerStatus status) { return StatusName(status) == row[0]; }));
    std::istringstream twists(row[1]);
    for (std::string twist, what; twists >> twist >> what;) {
      rig.script->tellErrors |= twist == "tells";
      if (twist == "fails" || twist == "tells")
        rig.script->failing = {what};
      else if (twist == "warns")
        rig.script->warning = {what};
      else if (twist == "volume")
        rig.player->SetPlayVolume(static_cast<std::int16_t>(ParseWhole(what)));
      else
        rig.onEvent = [&, twist, what, answered = false](std::int32_t event) mutable {
          if (std::string(PlayerEventName(event)) != "pe" + twist || std::exchange(answered, true)) return;
          rig.script->failing.clear(), rig.script->warning.clear();
          RunNamed(rig, what);
        };
    }
    rig.TakeHeard();
    EXPECT_EQ(Outcome(rig, row[2]), row[3]) << row[1] << " " << row[2];
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
