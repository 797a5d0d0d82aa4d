#pragma once
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "contract/IPlayerCallback.h"
#include "item/cHDItem.h"
#include "kits/common/Clock.h"
#include "kits/common/Files.h"
#include "kits/common/Registry.h"
#include "kits/common/Text.h"
#include "playback/FakeControl.h"
#include "playback/cBasePlayer.h"
#include "settings/cAudioSettings.h"
#include "support/SoundFixtures.h"

// A base player over a fake control, with everything it says written down.
namespace qm::test {

inline bool IsQuery(std::int32_t event) {
  return std::string(PlayerEventName(event)).find("Query") != std::string::npos;
}

// "QueryOpen(a)", "Opened", "Playing=0/-1": queries with the item's reference, values where they are not 0.
inline std::string EventWord(std::int32_t event, const std::string& hdReference, float sValue1,
                             float sValue2) {
  std::string word = std::string(PlayerEventName(event)).substr(2);
  if (IsQuery(event)) word += "(" + hdReference + ")";
  if (sValue2 != 0) return word + "=" + NumberText(sValue1) + "/" + NumberText(sValue2);
  return sValue1 != 0 ? word + "=" + NumberText(sValue1) : word;
}

inline void AddWord(std::string& line, const std::string& word) {
  line += (line.empty() ? "" : " ") + word;
}

// 100 seconds: intro 1 to 10, hook 20 to 30, extro at 90.
inline std::shared_ptr<cHDItem> MakeItem(const std::string& reference) {
  static const TempFolder folder;
  const std::string file = folder.File(reference + ".wav");
  if (!FileExists(file)) WriteBytes(file, "audio");
  auto item = std::make_shared<cHDItem>();
  item->SetReference(reference);
  item->SetAudioFileName(file);
  item->SetTotalLength(100);
  item->SetIntroStart(1, 1);
  item->SetIntroEnd(1, 10);
  item->SetHookStart(1, 20);
  item->SetHookEnd(1, 30);
  item->SetExtro(1, 90);
  return item;
}

class TestOwner : public IPlayerCallback {
 public:
  std::string heard;
  std::int32_t veto = 0;
  std::string lastReference;  // HDReference of the last event
  std::function<void(std::string&, float&, float&)> onEvent;
  std::shared_ptr<cAudioSettings> settings;

  void PlayerEvent(std::int16_t PlayerReference, std::int32_t EventReference, std::string& HDReference,
                   float& sValue1, float& sValue2, std::string&, std::string&) override {
    AddWord(heard,
            std::to_string(PlayerReference) + ":" + EventWord(EventReference, HDReference, sValue1, sValue2));
    lastReference = HDReference;
    if (EventReference == veto) sValue2 = 1;
    if (onEvent) onEvent(HDReference, sValue1, sValue2);
  }
  void RecorderEvent(std::int32_t, std::string&, float&, float&, std::string&, std::string&) override {}
  std::shared_ptr<cAudioSettings> AudioSettings() const override { return settings; }
  std::int16_t NumberPlayers() const override { return 1; }
  std::shared_ptr<cPlayer> Player(std::int16_t) const override { return nullptr; }
};

// A platform over fake controls, and what was heard since the last TakeHeard.
template <class Sound>
struct FakePlatform {
  std::shared_ptr<ManualClock> clock =
      std::make_shared<ManualClock>(std::chrono::system_clock::from_time_t(1700000000));
  std::shared_ptr<Sound> sound = std::make_shared<Sound>();
  std::shared_ptr<const Platform> platform =
      std::make_shared<const Platform>(Platform{clock, MemoryRegistry(), nullptr, sound});
  std::string heard;

  std::string TakeHeard() { return std::exchange(heard, {}); }
};

struct PlayerRig : FakePlatform<FakeSound> {
  std::shared_ptr<ControlScript> script = sound->script;
  std::shared_ptr<TestOwner> owner = std::make_shared<TestOwner>();
  std::shared_ptr<cBasePlayer> player = std::make_shared<cBasePlayer>(platform);
  std::shared_ptr<cHDItem> a = MakeItem("a"), b = MakeItem("b");
  std::int32_t veto = 0;  // the query that the listener refuses
  std::function<void(std::int32_t)> onEvent;

  PlayerRig() {
    owner->settings = std::make_shared<cAudioSettings>(platform, sound);
    player->SetPlayerCallback(owner);
    player->events.PlayerEvent.connect(
        [this](std::int32_t event, std::string& hdReference, float& sValue1, float& sValue2, auto&&...) {
          AddWord(heard, EventWord(event, hdReference, sValue1, sValue2));
          if (event == veto) sValue2 = 1;
          if (onEvent) onEvent(event);
        });
  }

  FakeControl::Events& Control() { return script->control->events; }
  void PlayTo(float seconds) {
    script->position = seconds;
    Control().Position();
  }

  // Brings the player to a status in the usual way and forgets how.
  void GoTo(enPlayerStatus status) {
    if (status != psClosed && status != psLocked) player->OpenItem(a);
    if (status == psCued || status == psPlaying || status == psPaused) player->CueItem();
    if (status == psPlaying || status == psPaused) player->PlayItem();
    if (status == psPaused) player->PauseItem();
    if (status == psLocked) player->LockPlayer();
    if (status == psPlaying || status == psPaused) script->position = 5;
    heard.clear();
    script->calls.clear();
  }
};

inline std::string StatusName(enPlayerStatus status) {
  return status == psOpen ? "open" : LowerCase(PlayerEventName(status)).substr(2);
}

using OperationTable = std::map<std::string, std::function<bool(PlayerRig&)>>;

// Every operation of the transport, with the current item, the first one and another.
inline const OperationTable& Operations() {
  static const OperationTable operations = {
      {"Open(a)", [](PlayerRig& rig) { return rig.player->OpenItem(rig.a); }},
      {"Open(b)", [](PlayerRig& rig) { return rig.player->OpenItem(rig.b); }},
      {"Cue()", [](PlayerRig& rig) { return rig.player->CueItem(); }},
      {"Cue(b)", [](PlayerRig& rig) { return rig.player->CueItem(rig.b); }},
      {"Play()", [](PlayerRig& rig) { return rig.player->PlayItem(); }},
      {"Play(b)", [](PlayerRig& rig) { return rig.player->PlayItem(rig.b); }},
      {"Pause()", [](PlayerRig& rig) { return rig.player->PauseItem(); }},
      {"Seek(50)", [](PlayerRig& rig) { return rig.player->SeekItem(50); }},
      {"Seek(0)", [](PlayerRig& rig) { return rig.player->SeekItem(0); }},
      {"Seek(50,b)", [](PlayerRig& rig) { return rig.player->SeekItem(50, rig.b); }},
      {"CueHook()", [](PlayerRig& rig) { return rig.player->CueItemHook(); }},
      {"PlayHook(a)", [](PlayerRig& rig) { return rig.player->PlayItemHook(rig.a); }},
      {"Close()", [](PlayerRig& rig) { return rig.player->CloseItem(); }},
      {"Lock()", [](PlayerRig& rig) { return rig.player->LockPlayer(); }},
      {"UnLock()", [](PlayerRig& rig) { return rig.player->UnLockPlayer(); }},
  };
  return operations;
}

inline bool RunNamed(PlayerRig& rig, const std::string& name) {
  return Operations().at(name)(rig);
}

// Result, new status and what was said: "true open: QueryOpen(a) Opening Opened".
inline std::string Outcome(PlayerRig& rig, const std::string& operation) {
  const std::string result = RunNamed(rig, operation) ? "true " : "false ";
  return std::string(Trim(result + StatusName(rig.player->Status()) + ": " + rig.TakeHeard()));
}

}  // namespace qm::test
