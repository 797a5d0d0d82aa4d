#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/PlayObserver.h"

namespace qm {
class AudioEngine;
class cAudioSettings;
class cPlayer;
class cPlayers;
struct Platform;
}  // namespace qm

namespace qm::cli {

class PlaySound;

// The pool of players as the program plays through it: who hears its events, and where failures are told.
class PlayPool {
 public:
  struct Wishes {
    std::string profile;                      // of the audio settings; "" for the default one
    std::int32_t deviceNumber = -1;           // for all players; below 0 the settings decide
    std::int16_t players = 0;                 // 0: the settings' number, or a few where no profile is stored
    std::optional<std::int16_t> volume = {};  // instead of the settings' general volume; per cent
  };

  PlayPool(std::shared_ptr<AudioEngine> engine, const Wishes& wishes);
  ~PlayPool();

  // Heard in this order, until StopObserving.
  void Observe(PlayObserver& observer) { m_observers.push_back(&observer); }
  void StopObserving(const PlayObserver& observer) { std::erase(m_observers, &observer); }
  // After all observers: what is done about an event. Within the event, so that what follows begins on its
  // frame.
  std::function<void(const HeardEvent& heard)> act;
  // An error of a player that belongs to a list; number and text.
  std::function<void(std::int32_t number, const std::string& text)> onListError;
  // Where failures are told; standard error at first.
  std::function<void(const std::string& text)> tell;

  AudioEngine& Engine() const { return *m_engine; }
  const cAudioSettings& Settings() const { return *m_settings; }
  cPlayers& Players() const { return *m_players; }
  cPlayer& Player(std::int16_t number) const;  // 1 and up, there must be one

  // Ends all players without a word of it.
  void Terminate();

 private:
  void HearError(std::int32_t number, const std::string& text);

  const std::shared_ptr<AudioEngine> m_engine;
  const std::shared_ptr<PlaySound> m_sound;
  const std::shared_ptr<const Platform> m_platform;
  std::shared_ptr<cAudioSettings> m_settings;
  std::shared_ptr<cPlayers> m_players;
  std::vector<PlayObserver*> m_observers;
};

}  // namespace qm::cli
