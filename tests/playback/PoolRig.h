#pragma once
#include "audio/FakeRecording.h"
#include "playback/PlayerRig.h"
#include "playback/cListPlayer.h"
#include "playback/cPlayLog.h"
#include "playback/cPlayer.h"
#include "playback/cPlayers.h"

// A pool over fake controls, each with a script of its own.
namespace qm::test {

class PoolSound : public FakeSound {
 public:
  std::unique_ptr<ctlVellanPlayer> CreatePlayer() override {
    script = std::make_shared<ControlScript>();
    scripts.push_back(script);
    return FakeSound::CreatePlayer();
  }
  std::shared_ptr<RecordingControl> CreateRecorder() override { return recording; }
  std::shared_ptr<FakeRecording> recording = std::make_shared<FakeRecording>();
  std::vector<std::shared_ptr<ControlScript>> scripts;  // in the order in which they were made
};

struct PoolRig : FakePlatform<PoolSound> {
  std::shared_ptr<cPlayers> pool = std::make_shared<cPlayers>(platform);

  // Hears "player:Event" of all but positions and volumes.
  explicit PoolRig(std::int16_t players) {
    auto settings = std::make_shared<cAudioSettings>(platform, sound);
    settings->SetMaxPlayers(16);
    settings->SetNumberPlayers(players);
    settings->SetGeneralVolume(90);
    pool->SetAudioSettings(settings);
    pool->events.PlayerEvent.connect([this](std::int16_t player, std::int32_t event, std::string& hdReference,
                                            float& sValue1, float& sValue2, auto&&...) {
      if (event != pePositionChanged && event != peVolumeChanged)
        AddWord(heard, std::to_string(player) + ":" + EventWord(event, hdReference, sValue1, sValue2));
    });
  }
  ~PoolRig() { pool->Terminate(); }

  cPlayer& Player(std::int16_t number) { return *pool->Player(number); }
  // Brings a player to a position.
  void PlayTo(std::int16_t number, float seconds) {
    auto& script = *sound->scripts[static_cast<std::size_t>(number) - 1];
    script.position = seconds;
    script.control->events.Position();
  }
};

}  // namespace qm::test
