#pragma once
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/ItemArgument.h"
#include "cli/ItemFile.h"
#include "cli/PlayObserver.h"
#include "contract/IPlayerCallback.h"

namespace qm {
class AudioEngine;
class cBasePlayer;
struct Platform;
}  // namespace qm

namespace qm::cli {

// How items are to be played. 0, or nothing, leaves it to the item and the settings.
struct PlayWishes {
  std::optional<std::int16_t> volume;  // per cent
  float speed = 0;
  float stretch = 0;
  float fadeSeconds = 0;  // of a fade that ends with the audio
  bool hook = false;      // only the hooks
};

// Plays items one after another through one player, each from the very frame at which the one before it
// ended.
//
// Owner of its player: hold it by std::shared_ptr and call Terminate at the end. Items that cannot be played
// are told of and passed over; a device that cannot be had ends the run.
class PlayRun : public IPlayerCallback, public std::enable_shared_from_this<PlayRun> {
 public:
  struct Parts {
    std::shared_ptr<const Platform> platform;
    std::shared_ptr<AudioEngine> engine;  // the platform's sound
    std::shared_ptr<cAudioSettings> settings;
    std::vector<ItemArgument> items;
    PlayWishes wishes;
  };

  explicit PlayRun(Parts parts);

  // Heard in this order, until StopObserving.
  void Observe(PlayObserver& observer) { m_observers.push_back(&observer); }
  void StopObserving(const PlayObserver& observer) { std::erase(m_observers, &observer); }
  // Where failures are told; standard error at first.
  std::function<void(const std::string& text)> tell;

  void Start();
  // Gets the next item ready. To be called while there is time: one that is ready goes on the air without a
  // pause.
  void LoadAhead();
  // Closes what plays; nothing comes after it.
  void Stop();
  // Closes what plays and goes on with the next item.
  void GoOn();
  // The same at the end of a fade that begins now.
  void FadeAndGoOn(float seconds);
  void Terminate();

  bool Finished() const { return m_finished; }
  bool Failed() const { return m_failed; }
  cBasePlayer& Player() const { return *m_player; }
  std::size_t ItemNumber() const { return m_number; }  // of the present item, from 1
  std::size_t ItemCount() const { return m_count; }

  // IPlayerCallback.
  void PlayerEvent(std::int16_t PlayerReference, std::int32_t EventReference, std::string& HDReference,
                   float& sValue1, float& sValue2, std::string& strValue1, std::string& strValue2) override;
  void RecorderEvent(std::int32_t, std::string&, float&, float&, std::string&, std::string&) override {}
  std::shared_ptr<cAudioSettings> AudioSettings() const override { return m_settings; }
  std::int16_t NumberPlayers() const override { return 1; }
  std::shared_ptr<cPlayer> Player(std::int16_t) const override { return nullptr; }

 private:
  struct Ready {
    ItemFile file;
    std::size_t number = 0;
  };

  void PlayNext();
  bool PlayOne(const std::shared_ptr<cHDItem>& item);
  std::int16_t VolumeOf(const cHDItem& item) const;
  void ScheduleFade(const cHDItem& item);
  void TellOf(const std::string& text);
  void Act(std::int32_t event, float sValue1, const std::string& strValue1);

  const std::shared_ptr<AudioEngine> m_engine;
  const std::shared_ptr<cAudioSettings> m_settings;
  const std::shared_ptr<cBasePlayer> m_player;
  const PlayWishes m_wishes;
  const std::size_t m_count;
  std::deque<ItemArgument> m_waiting;
  std::optional<Ready> m_ready;
  std::vector<PlayObserver*> m_observers;
  std::size_t m_number = 0;
  bool m_goOnAfterFade = false;
  bool m_told = false;  // of a failure, since the present item was begun
  bool m_failed = false;
  bool m_finished = false;
};

}  // namespace qm::cli
