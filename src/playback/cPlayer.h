#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "contract/PlayerVocabulary.h"
#include "item/tyHDListItem.h"
#include "kits/common/Dates.h"
#include "kits/common/Event.h"
#include "kits/sound/Platform.h"

namespace qm {

class cAudioSettings;
class cBasePlayer;
class cHDItems;
class cListPlayer;
class cPlayLog;
class IPlayerCallback;

// What hosts and controls hold: one numbered player that runs single items through a base player, or a whole
// list through a list player (ListMode), and makes the play log record of each as it closes.
//
// Host thread only. A member that goes to a player which is not there reads as 0, "" or absent, and operates
// as false. In ListMode the transport goes to the list and items given with it are ignored; what a list
// cannot do is refused. Hold it by std::shared_ptr.
class cPlayer : public std::enable_shared_from_this<cPlayer> {
 public:
  explicit cPlayer(std::shared_ptr<const Platform> platform = DefaultPlatform());
  ~cPlayer();
  cPlayer(const cPlayer&) = delete;
  cPlayer& operator=(const cPlayer&) = delete;

  struct Events {
    Event<std::int32_t, const std::string&> Reserved;          // reservation reference, caption
    Event<std::int32_t> ReservationCleared;                    // the reference that was
    Event<std::shared_ptr<cBasePlayer>, bool> LinkedToPlayer;  // the other player; whether it plays first
    Event<> PlayerLinkCleared;
    Event<std::int16_t, std::int16_t> LevelChanged;  // left, right: signed 16-bit peaks
    // EventReference (enPlayerEvent), HDReference, sValue1, sValue2, strValue1, strValue2.
    Event<std::int32_t, std::string&, float&, float&, std::string&, std::string&> PlayerEvent;
  } events;

  std::shared_ptr<cBasePlayer> BasePlayer() const { return m_basePlayer; }
  // Made at the first call, where there is a base player.
  std::shared_ptr<cListPlayer> BaseListPlayer();
  std::string EngineName() const;
  std::int16_t Reference() const { return m_reference; }

  // The list. Adding to it begins the list mode, which ends when the list closes.
  bool ListMode() const { return m_listMode; }
  bool ListClearItems();
  bool ListAddItem(std::shared_ptr<cHDItem> HDItem, enListItemType ItemType,
                   const std::string& SchedulerReference = {}, double LogReference = 0);
  bool ListAddList(const std::shared_ptr<cHDItems>& HDItemsList);
  bool ListRemoveItem(std::int32_t index);

  // The transport.
  bool OpenItem(std::shared_ptr<cHDItem> OpenHDItem, std::int16_t InitialVolume = -1);
  bool CueItem(std::shared_ptr<cHDItem> CueHDItem = nullptr, std::int16_t InitialVolume = -1);
  bool CueItemHook(std::shared_ptr<cHDItem> CueHDItem = nullptr, std::int16_t InitialVolume = -1);
  bool PlayItem(std::shared_ptr<cHDItem> PlayHDItem = nullptr, std::int16_t InitialVolume = -1);
  bool PlayItemHook(std::shared_ptr<cHDItem> PlayHDItem = nullptr, std::int16_t InitialVolume = -1);
  bool PauseItem();
  bool SeekItem(float Position, std::shared_ptr<cHDItem> SeekHDItem = nullptr,
                std::int16_t InitialVolume = -1);
  bool SeekItemPercent(double Percent, std::shared_ptr<cHDItem> SeekHDItem = nullptr,
                       std::int16_t InitialVolume = -1);
  bool CloseItem(float CloseReference = 0);
  // A list has no fade of its own: it closes at once.
  bool Fade(float FadeStart, float FadeDurationSecs, std::int16_t FadeReference);

  // The base player's, whatever the mode.
  bool LockPlayer();
  bool UnLockPlayer();
  bool AddVolumeChangeEvent(std::int16_t Reference, float StartTime, float DurationSecs, float StartVolume,
                            float EndVolume, float NotifyVolume, bool RemoveWhenComplete,
                            bool SetVolumePermanently);
  bool RemoveVolumeChangeEvent(std::int16_t ReferenceNumber);
  bool ChangeHDItemParameter(enChangeHDItemParam Param, float NewSetting);
  void RemoveSweeperPlayerLink(bool ResetVolumes);
  void SetReservation(std::int32_t Reference, const std::string& Caption);
  void ClearReservation();
  std::string ReservationCaption() const;
  std::int32_t ReservationReference() const;
  bool CloseAtHookEnd() const;
  void SetCloseAtHookEnd(bool Value);
  bool FadeActive() const;
  bool FadeNotified() const;
  bool InLoop() const;
  bool UseLoop() const;
  void SetUseLoop(bool Use);
  bool PlayHookMode() const;
  void SetPlayHookMode(bool Value);
  bool PreviewMode() const;
  void SetPreviewMode(bool Value);
  bool Sweeper() const;
  void SetSweeper(bool Value);
  float SweeperStart() const;
  void SetSweeperStart(float Seconds);

  // Of what runs: the item or the list.
  std::shared_ptr<cHDItem> HDItem() const;
  std::string HDReference() const;
  std::shared_ptr<cHDItem> PreviousHDItem() const;
  enPlayerStatus Status() const;
  enPlayerSection Section() const;
  tyLogDateTime Start() const;
  float PercentagePlayed() const;
  float TotalPercentagePlayed() const;
  float SecondsPlayed() const;
  float SecondsRemaining() const;
  float SecondsRemainingExtro() const;
  double LogReference() const;
  void SetLogReference(double Value);
  std::int16_t PlayVolume() const;
  // The item or list is open and has that reference; an empty one matches any. A TestLogReference other than
  // 0 and -1 has to match as well; with neither the answer is false.
  bool IsSameHDReference(const std::string& HDReference, double TestLogReference = -1) const;

  // Written to both players, read from the base player (speed and stretch from the list's without one).
  void SetPlayVolume(std::int16_t Volume);
  std::int16_t InitialVolume() const;
  void SetInitialVolume(std::int16_t Volume);
  float PlaySpeed() const;
  void SetPlaySpeed(float Speed);
  float TimeStretchRatio() const;
  void SetTimeStretchRatio(float Ratio);
  bool ReportErrors() const;
  void SetReportErrors(bool Report);
  std::string SchedulerReference() const;
  void SetSchedulerReference(const std::string& Value);

  // The record of what runs, made anew; and that of the last close, which is there from peClosing on.
  std::shared_ptr<cPlayLog> CurrentItemPlayLog() const;
  std::shared_ptr<cPlayLog> PreviousItemPlayLog() const { return m_previousItemPlayLog; }

  // For the pool.

  void InitBasePlayer(std::int16_t PlayerNumber, const std::shared_ptr<cAudioSettings>& AudioSettings);
  void ClearBasePlayer();
  void InitListPlayer(std::int16_t PlayerNumber, const std::shared_ptr<cAudioSettings>& AudioSettings);
  void ClearListPlayer();
  // Hears the inner players directly. Not held alive by them beyond their end.
  void SetParentPlayers(std::shared_ptr<IPlayerCallback> Parent);
  void SetReference(std::int16_t Value) { m_reference = Value; }

 private:
  using Wires = std::vector<Event<>::Connection>;

  bool NeedListPlayer();
  void WireBasePlayer();
  void WireListPlayer();
  void HearBasePlayer(std::int32_t event);
  void HearListPlayer(std::int32_t event);
  template <class Source>
  std::shared_ptr<cPlayLog> MakePlayLog(const Source& source) const;
  template <class Source>
  bool IsSame(const Source& source, const std::string& reference, double logReference) const;

  std::shared_ptr<const Platform> m_platform;
  std::shared_ptr<IPlayerCallback> m_parentPlayers;
  bool m_listMode = false;
  bool m_previousListMode = false;
  std::shared_ptr<cPlayLog> m_previousItemPlayLog;
  std::int16_t m_reference = 0;
  std::shared_ptr<cBasePlayer> m_basePlayer;
  std::shared_ptr<cListPlayer> m_listPlayer;
  Wires m_baseWires, m_listWires;
};

}  // namespace qm
