#pragma once
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "contract/IPlayerCallback.h"
#include "contract/PlayerVocabulary.h"
#include "item/tyHDListItem.h"
#include "kits/common/Dates.h"
#include "kits/common/Event.h"
#include "kits/sound/Platform.h"

namespace qm {

class cAudioSettings;
class cBasePlayer;
class cHDItems;
class cPlayLog;

// Plays a list of items as one run: over three base players it has the next entry cued while one plays, and
// starts it on the frame at which that one reaches its extro, its hook's end or its fade point. To the
// outside it shows one status, one position and one length, as if the list were a single item.
//
// Host thread only. A refused or failed operation returns false. Listeners may call any operation from any
// event, and let go of the list. The notifications of the player on the air are its only clock. Hold it by
// std::shared_ptr.
class cListPlayer : public IPlayerCallback, public std::enable_shared_from_this<cListPlayer> {
 public:
  explicit cListPlayer(std::shared_ptr<const Platform> platform = DefaultPlatform());
  ~cListPlayer() override;
  cListPlayer(const cListPlayer&) = delete;
  cListPlayer& operator=(const cListPlayer&) = delete;

  struct Events {
    Event<std::int16_t, std::int16_t> LevelChanged;  // left, right: signed 16-bit peaks
    // EventReference (enPlayerEvent), HDReference, sValue1, sValue2, strValue1, strValue2.
    Event<std::int32_t, std::string&, float&, float&, std::string&, std::string&> PlayerEvent;
  } events;

  std::string EngineName() const;
  bool ReportErrors() const;
  void SetReportErrors(bool Report);

  // An InitialVolume of -1 means InitialVolume(), or the run's own volume when it is under way.
  bool PlayItems(std::int16_t InitialVolume = -1);
  bool CueItems(std::int16_t InitialVolume = -1);
  bool PauseItems();
  // Ends the run and clears the list. CloseReference is the caller's own number, for peQueryClose.
  bool CloseItems(float CloseReference = 0);

  std::int16_t Reference() const { return m_reference; }
  enPlayerStatus Status() const { return m_status; }
  enPlayerSection Section() const { return m_section; }

  // Closes what runs. False when that is refused; the list then stays.
  bool ClearItems();
  // Adds each entry of the list without a report of each. True when any was added.
  bool AddList(const std::shared_ptr<cHDItems>& cHDList);
  bool AddItem(std::shared_ptr<cHDItem> HDItem, enListItemType ItemType,
               const std::string& SchedulerReference = {}, double LogReference = 0);
  // Refused for what plays or has played. Taking out the first entry of a cued list cues the next.
  bool RemoveItem(std::int32_t index);

  std::int16_t NumberItems() const { return static_cast<std::int16_t>(m_items.size()); }
  std::int16_t NumberSeparatorItems() const { return m_numberSeparatorItems; }
  std::int16_t NumberHookItems() const { return m_numberHookItems; }
  tyHDListItem HDListItem(std::int32_t index) const;  // without an item for a bad index
  float TotalLength() const { return m_totalLength; }
  float SecondsPlayed() const { return m_secondsPlayed; }
  float SecondsRemain() const { return m_secondsRemain; }
  float SecondsRemainingExtro() const { return m_secondsRemainingExtro; }
  std::int16_t CurrentItem() const { return m_currentItem; }  // from 1; 0 for none
  std::string CurrentItemHDRef() const;
  // Of the time until something may follow the list, and of the whole.
  float PercentagePlayed() const;
  float TotalPercentagePlayed() const;
  tyLogDateTime Start() const { return m_start; }
  // The item that stands for the whole list; absent when closed.
  std::shared_ptr<cHDItem> HDItem() const;
  std::string HDReference() const;
  // The record of the entry that finished last, and of the one on the air.
  std::shared_ptr<cPlayLog> PreviousListItemPlayLog() const { return m_previousListItemPlayLog; }
  std::shared_ptr<cPlayLog> CurrentItemPlayLog() const;
  double LogReference() const { return m_logReference; }
  void SetLogReference(double Value) { m_logReference = Value; }
  const std::string& SchedulerReference() const { return m_schedulerReference; }
  void SetSchedulerReference(const std::string& Value) { m_schedulerReference = Value; }
  float PlaySpeed() const;
  void SetPlaySpeed(float Speed);
  float TimeStretchRatio() const;
  void SetTimeStretchRatio(float Ratio);
  std::int16_t PlayVolume() const;
  void SetPlayVolume(std::int16_t Volume);
  std::shared_ptr<cHDItem> PreviousHDItem() const { return m_previousHDItem; }
  float PreviousSecondsPlayed() const { return m_previousSecondsPlayed; }
  // While false, what the entries' players say is not passed on, and finished entries leave no record.
  bool RaiseEvents() const { return m_raiseEvents; }
  void SetRaiseEvents(bool Value) { m_raiseEvents = Value; }
  std::int16_t InitialVolume() const { return m_initialVolume; }
  void SetInitialVolume(std::int16_t Volume);

  // For the owner.

  void InitListPlayer(std::int16_t PlayerNumber, const std::shared_ptr<cAudioSettings>& AudioSettings);
  // Clears the list and lets go of the players and the owner. Idempotent; the destructor does it in silence.
  void TerminateListPlayer();
  std::shared_ptr<IPlayerCallback> PlayerCallback() const { return m_callback; }
  void SetPlayerCallback(std::shared_ptr<IPlayerCallback> Callback) { m_callback = std::move(Callback); }

  // Of its own three players.
  void PlayerEvent(std::int16_t PlayerReference, std::int32_t EventReference, std::string& HDReference,
                   float& sValue1, float& sValue2, std::string& strValue1, std::string& strValue2) override;
  void RecorderEvent(std::int32_t, std::string&, float&, float&, std::string&, std::string&) override {}
  std::shared_ptr<cAudioSettings> AudioSettings() const override;
  std::int16_t NumberPlayers() const override { return static_cast<std::int16_t>(m_players.size()); }
  std::shared_ptr<cPlayer> Player(std::int16_t) const override { return nullptr; }

 private:
  // An entry on a player, waiting for its start.
  struct CuedEntry {
    std::int16_t player = 0;  // 1 to 3; 0 for none
    std::int16_t item = 0;
    bool cued = false;
  };
  enum class Afterwards { KeepList, ClearList };
  enum class Telling { Silent, Events };
  enum class Handover { Wait, Start };

  void Report(std::int32_t event, float sValue1 = 0, float sValue2 = 0);
  void ReportWith(std::int32_t event, const std::string& hdReference, float sValue1, float sValue2);
  bool Query(std::int32_t event, float sValue1 = 0);
  void ReportLevels();

  cBasePlayer* PlayerAt(std::int16_t number) const;  // null for a number outside 1 to 3
  const tyHDListItem* Entry(std::int32_t index) const;
  bool IsLast(std::int32_t index) const { return index >= NumberItems(); }
  void UpdateOverallLength();
  void NameCurrentEntry();
  std::shared_ptr<cPlayLog> EntryPlayLog(const cBasePlayer& player) const;

  std::int16_t CueListItem(std::int16_t itemIndex, const tyHDListItem& entry);
  bool StartRunning();
  bool StopRunning(Afterwards afterwards, Telling telling);
  bool MayRemove(std::int32_t index) const;
  void ForgetRemoved(std::int32_t index);

  void HearFinished(cBasePlayer& player);
  void HearCurrent(std::int32_t event, float sValue1, float sValue2);
  void TellExtro(float markTag);
  void Update();
  enum class PassingOver { Missing, MissingAndFailing };

  void LookAhead(Handover& handover);
  bool IsTimeToCue(const cBasePlayer& player) const;
  bool CueNext(PassingOver passingOver);
  std::int16_t IndexAfter(std::int16_t index) const;
  bool IsInExtro() const;
  bool IsTimeToStart() const;
  void StartNext();
  bool SetClock();
  void RunClock();
  void EndRun();

  std::array<std::shared_ptr<cBasePlayer>, 3> m_players;
  std::shared_ptr<IPlayerCallback> m_callback;
  std::shared_ptr<const Platform> m_platform;
  std::shared_ptr<cPlayLog> m_previousListItemPlayLog;
  std::int16_t m_reference = 0;
  enPlayerStatus m_status = psClosed;
  std::int16_t m_runVolume = 100;
  std::int16_t m_initialVolume = 100;
  float m_mainLength = 0;
  float m_totalLength = 0;
  std::vector<tyHDListItem> m_items;
  tyLogDateTime m_start;
  std::string m_schedulerReference;
  double m_logReference = 0;
  float m_timeStretchRatio = 1;  // of entries that have none of their own
  float m_playedBase = 0;        // seconds of finished entries
  float m_secondsPlayed = 0;
  float m_secondsRemain = 0;
  float m_secondsRemainingExtro = 0;
  enPlayerSection m_section = epsEmpty;
  std::shared_ptr<cHDItem> m_totalItem;
  std::shared_ptr<cHDItem> m_previousHDItem;
  float m_previousSecondsPlayed = 0;
  std::int16_t m_currentPlayer = 0;
  std::int16_t m_currentItem = 0;
  std::array<CuedEntry, 2> m_next;  // the next entry, and the one after it
  std::uint32_t m_run = 0;          // counts the runs, so that an update can tell whether its own goes on
  bool m_repeatList = false;
  bool m_running = false;
  bool m_stopping = false;   // what the players say is not the run's any more
  bool m_cueing = false;     // the next entry
  bool m_extroTold = false;  // of the current entry
  bool m_skipStart = false;
  bool m_raiseEvents = true;
  bool m_eventsInhibited = false;
  std::int16_t m_numberSeparatorItems = 0;
  std::int16_t m_numberHookItems = 0;
};

}  // namespace qm
