#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "contract/IPlayerCallback.h"
#include "contract/PlayerVocabulary.h"
#include "kits/common/Event.h"
#include "kits/sound/Platform.h"

namespace qm {

class cAudioSettings;
class cHDItem;
class cPlayer;
class cRecorder;

// What a host makes first: owns the numbered players and one recorder, holds the audio settings, hears what
// all of them say, and answers what goes over players: which is free, where an item is, what a function key
// means.
//
// Host thread only. It has no players until AudioSettings are set; setting them again builds the players
// anew. Player numbers count from 1; 0 is the answer for none. Listeners may call anything from any event.
class cPlayers : public IPlayerCallback, public std::enable_shared_from_this<cPlayers> {
 public:
  explicit cPlayers(std::shared_ptr<const Platform> platform = DefaultPlatform());
  ~cPlayers() override;
  cPlayers(const cPlayers&) = delete;
  cPlayers& operator=(const cPlayers&) = delete;

  struct Events {
    // Player's number, EventReference (enPlayerEvent), HDReference, sValue1, sValue2, strValue1, strValue2.
    Event<std::int16_t, std::int32_t, std::string&, float&, float&, std::string&, std::string&> PlayerEvent;
    // EventReference (enRecorderEvent), HDReference, sValue1, sValue2, strValue1, strValue2.
    Event<std::int32_t, std::string&, float&, float&, std::string&, std::string&> RecorderEvent;
    // Before a function key acts: player, the status it leads to, and whether it may.
    Event<std::int16_t, enPlayerStatus, bool&> CheckPlayerKeyCommand;
  } events;

  std::shared_ptr<cPlayer> Player(std::int16_t index) const override;
  // Ends all players and the recorder. Idempotent; the destructor does it as well.
  void Terminate();
  std::shared_ptr<cRecorder> Recorder() const { return m_recorder; }
  std::shared_ptr<cAudioSettings> AudioSettings() const override { return m_audioSettings; }
  void SetAudioSettings(std::shared_ptr<cAudioSettings> Settings);
  // Whether players are made with their list players at once, rather than when a list needs one.
  bool AutoInitListPlayers() const { return m_autoInitListPlayers; }
  void SetAutoInitListPlayers(bool Value) { m_autoInitListPlayers = Value; }
  std::int16_t MaxNumberPlayers() const { return m_maxNumberPlayers; }  // 0: no limit
  void SetMaxNumberPlayers(std::int16_t Value);
  std::int16_t NumberPlayers() const override { return static_cast<std::int16_t>(m_players.size()); }
  // A number below 1 is ignored.
  void SetNumberPlayers(std::int16_t Value);
  // F1 to F4 belong to the host; F5 begins the players' keys.
  bool F1toF4Reserved() const { return m_f1toF4Reserved; }
  void SetF1toF4Reserved(bool Value) { m_f1toF4Reserved = Value; }
  bool ReportErrors() const;
  void SetReportErrors(bool Report);

  // The first of the range whose status is TestStatus or any that is freer, and whose reservation is the one
  // given. -1 takes an end of the range from the settings; a range given backwards is searched backwards.
  std::int16_t GetFirstAvailablePlayer(enPlayerStatus TestStatus, std::int16_t FirstPlayer = -1,
                                       std::int16_t LastPlayer = -1,
                                       std::int32_t ReservationReference = 0) const;
  std::int16_t GetNumberAvailablePlayers(enPlayerStatus TestStatus) const;
  std::int16_t GetNumberPlayersInUse() const;
  std::int16_t GetNumberReservedPlayers(std::int32_t ReservationReference) const;
  // The player that holds the item. An empty reference stands for any item with that log reference.
  std::int16_t IsHDReferenceLoaded(const std::string& HDReference, double TestLogReference = 0) const;
  std::int16_t IsHDReferenceRunning(const std::string& HDReference, double TestLogReference = 0) const;
  std::int16_t GetPlayerIndexByHDReference(const std::string& HDReference, double TestLogReference = 0) const;
  std::shared_ptr<cPlayer> GetPlayerByHDReference(const std::string& HDReference,
                                                  double TestLogReference = 0) const;
  std::int16_t GetFirstUsedListPlayer() const;

  // How many players were reserved or freed. What they are doing goes on.
  std::int16_t ReservePlayers(std::int16_t NumberPlayers, std::int16_t FirstPlayer, std::int16_t LastPlayer,
                              std::int32_t ReservationReference, const std::string& ReservationCaption);
  std::int16_t ClearPlayerReservations(std::int32_t ReservationReference);

  // Cues or plays the item on the player given, on the one that has it loaded, or on a free one. The player's
  // number, 0 on failure. A Volume of 0 means the settings' general volume.
  std::int16_t QuickCueHDItem(const std::shared_ptr<cHDItem>& HDItem, std::int16_t PlayerReference = 0,
                              std::int16_t Volume = 0);
  std::int16_t QuickPlayHDItem(const std::shared_ptr<cHDItem>& HDItem, std::int16_t PlayerReference = 0,
                               std::int16_t Volume = 0);
  // Plays all that is cued; how many were started.
  std::int16_t PlayAll();

  // A function key: KeyCode 112 to 127 are F1 to F16; Shift holds 1 for shift, 2 for control, 4 for alt. True
  // when a command ran.
  bool CheckKeyPress(std::int16_t KeyCode, std::int16_t Shift, const std::shared_ptr<cHDItem>& HDItem);

  // Of its players and the recorder.
  void PlayerEvent(std::int16_t PlayerReference, std::int32_t EventReference, std::string& HDReference,
                   float& sValue1, float& sValue2, std::string& strValue1, std::string& strValue2) override;
  void RecorderEvent(std::int32_t EventReference, std::string& HDReference, float& sValue1, float& sValue2,
                     std::string& strValue1, std::string& strValue2) override;

 private:
  using QuickOperation = bool (cPlayer::*)(std::shared_ptr<cHDItem>, std::int16_t);

  void InitPlayer(std::int16_t number);
  void InitRecorder();
  void RemoveLastPlayer();
  template <class Test>
  std::int16_t FindPlayer(Test test) const;
  template <class Test>
  std::int16_t CountPlayers(Test test) const;
  std::int16_t ChoosePlayer(const cHDItem& item, std::int16_t PlayerReference) const;
  std::int16_t Quick(const char* name, QuickOperation operation, const std::shared_ptr<cHDItem>& item,
                     std::int16_t PlayerReference, std::int16_t Volume);

  std::shared_ptr<const Platform> m_platform;
  std::vector<std::shared_ptr<cPlayer>> m_players;  // number 1 first
  std::shared_ptr<cRecorder> m_recorder;
  std::int16_t m_maxNumberPlayers = 0;
  bool m_autoInitListPlayers = false;
  bool m_initialisingPlayers = false;
  bool m_f1toF4Reserved = false;
  std::shared_ptr<cAudioSettings> m_audioSettings;
};

}  // namespace qm
