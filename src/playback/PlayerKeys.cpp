#include <array>
#include <cctype>

#include "audio/cRecorder.h"
#include "item/cHDItem.h"
#include "kits/common/Numbers.h"
#include "playback/cPlayer.h"
#include "playback/cPlayers.h"
#include "services/Diagnostics.h"
#include "settings/cAudioSettings.h"

// What the function keys mean: four keys a player, their place within the four being the command.
namespace qm {
namespace {

constexpr std::int16_t kF1 = 112;
constexpr std::int16_t kLastKey = 127;
constexpr std::int16_t kKeysOfPlayer = 4;
constexpr std::int16_t kRecorderGroup = 3;
constexpr std::int16_t kPlayersWithoutRecorderKeys = 6;
constexpr float kSeekSeconds = 5;
constexpr std::int32_t kTraceLevel = 10;

enum enHeldKey : std::int16_t { ehkShift = 1, ehkControl = 2, ehkAlt = 4 };
enum enKeyPlace : std::int16_t { ekpPlay = 0, ekpPause = 1, ekpCue = 2, ekpClose = 3 };

constexpr std::array<enPlayerStatus, kKeysOfPlayer> kLeadsTo = {psPlaying, psPaused, psCued, psClosed};

void TraceKey(std::int16_t keyCode, std::int16_t held, const std::shared_ptr<cHDItem>& item) {
  if (!DebugWanted(kTraceLevel)) return;
  std::string line = "Key:";
  line += keyCode < kF1 && std::isprint(keyCode & 0xFF) ? static_cast<char>(keyCode) : '?';
  constexpr char kDigits[] = "0123456789ABCDEF";
  line += std::string(" &H") + kDigits[keyCode >> 4 & 0xF] + kDigits[keyCode & 0xF] + "+";
  if (held & ehkShift) line += "S";
  if (held & ehkControl) line += "C";
  if (held & ehkAlt) line += "A";
  WriteDebug(line + " HDItem:" + (item ? item->Reference() : std::string()), kTraceLevel);
}

bool WorkRecorder(cRecorder& recorder, enKeyPlace place, std::int16_t held) {
  switch (place) {
    case ekpPlay:
      recorder.ResumeItem();
      return true;
    case ekpPause:
      recorder.PauseItem();
      return true;
    case ekpCue:
      return false;
    case ekpClose:
      recorder.CloseItem(held & ehkControl ? rcpSave : held & ehkAlt ? rcpDiscard : rcpPrompt);
      return true;
  }
  return false;
}

bool SeekByKey(cPlayer& player, enKeyPlace place) {
  const auto item = player.HDItem();
  const float position = player.SecondsPlayed();
  if (place == ekpPlay) {
    player.SeekItem(Greater(position - kSeekSeconds, 0.0f));
    return true;
  }
  if (!item) return false;
  const float target = place == ekpCue ? item->AudioStart(1) : position + kSeekSeconds;
  player.SeekItem(place == ekpCue || target < item->AudioLength(1) ? target : item->AudioLength(1));
  return true;
}

bool WorkPlayer(cPlayer& player, enKeyPlace place, const std::shared_ptr<cHDItem>& item,
                std::int16_t volume) {
  switch (place) {
    case ekpPlay:
      player.PlayItem(item, volume);
      break;
    case ekpPause:
      player.PauseItem();
      break;
    case ekpCue:
      player.CueItem(item, volume);
      break;
    case ekpClose:
      player.CloseItem(0);
      break;
  }
  return true;
}

}  // namespace

bool cPlayers::CheckKeyPress(std::int16_t KeyCode, std::int16_t Shift,
                             const std::shared_ptr<cHDItem>& HDItem) {
  const auto keeper = weak_from_this().lock();
  TraceKey(KeyCode, Shift, HDItem);
  if (KeyCode < kF1 || KeyCode > kLastKey) return false;
  std::int16_t key = static_cast<std::int16_t>(KeyCode - kF1);
  if (m_f1toF4Reserved) key = static_cast<std::int16_t>(key - kKeysOfPlayer);
  if (key < 0) return false;
  const auto place = static_cast<enKeyPlace>(key % kKeysOfPlayer);
  std::int16_t number = static_cast<std::int16_t>(key / kKeysOfPlayer + 1);
  if (Shift & ehkShift) {
    if (number == kRecorderGroup && NumberPlayers() < kPlayersWithoutRecorderKeys) {
      const auto recorder = m_recorder;
      return recorder && WorkRecorder(*recorder, place, Shift);
    }
    number = static_cast<std::int16_t>(number + (m_f1toF4Reserved ? 2 : 3));
  }
  const auto player = Player(number);
  if (!player) return false;
  const bool alt = (Shift & ehkAlt) != 0;
  const enPlayerStatus status = player->Status();
  if (status == psLocked || (status == psClosed && !alt)) return false;
  if ((Shift & ehkControl) && place != ekpPause) return SeekByKey(*player, place);
  const bool given = HDItem && alt;
  const auto item = given ? HDItem : player->HDItem();
  const std::int16_t volume = given ? m_audioSettings->GeneralVolume() : player->InitialVolume();
  bool allow = true;
  events.CheckPlayerKeyCommand(number, kLeadsTo[place], allow);
  return allow && WorkPlayer(*player, place, item, volume);
}

}  // namespace qm
