#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "contract/PlayerVocabulary.h"
#include "kits/common/Dates.h"
#include "kits/common/Event.h"
#include "kits/sound/Platform.h"

namespace qm {

class cAudioSettings;
class cHDItem;
class ctlVellanPlayer;
class frmPlayer;
class IPlayerCallback;
class PlayerKeeper;
enum TransportStep : std::int32_t;

// Plays one item at a time through one playback control: asks its owner before each transport step and
// reports each step to `events.PlayerEvent`, then to the owner's IPlayerCallback. Host thread only.
//
// A refused or failed operation returns false. No operation works without a control or while psLocked, unless
// said otherwise. Listeners may call any operation from any event, terminate the player or drop the last
// holder of it; an operation that finds its item gone when it returns from an event ends with false. Hold it
// by std::shared_ptr: links to other players do.
//
// Everywhere: times are seconds from the start of the file; an absent item means the current item; an
// InitialVolume of -1 means InitialVolume(); volumes are per cent, 0 to 100.
class cBasePlayer : public std::enable_shared_from_this<cBasePlayer> {
 public:
  explicit cBasePlayer(std::shared_ptr<const Platform> platform = DefaultPlatform());
  ~cBasePlayer();
  cBasePlayer(const cBasePlayer&) = delete;
  cBasePlayer& operator=(const cBasePlayer&) = delete;

  struct Events {
    Event<std::int32_t, const std::string&> Reserved;          // reservation reference, caption
    Event<std::int32_t> ReservationCleared;                    // the reference that was
    Event<std::shared_ptr<cBasePlayer>, bool> LinkedToPlayer;  // the other player; whether it plays first
    Event<> PlayerLinkCleared;
    Event<std::int16_t, std::int16_t> LevelChanged;  // left, right: signed 16-bit peaks
    // EventReference (enPlayerEvent), HDReference, sValue1, sValue2, strValue1, strValue2.
    Event<std::int32_t, std::string&, float&, float&, std::string&, std::string&> PlayerEvent;
  } events;

  std::int16_t Reference() const { return m_reference; }
  std::string EngineName() const;
  void SetReportErrors(bool Report);
  bool ReportErrors() const;
  // The other player of a link; absent without one.
  std::shared_ptr<cBasePlayer> LinkedToPlayer() const { return m_link.lock(); }

  // False without any event for the item that is already open, for one without a reference or without length.
  bool OpenItem(std::shared_ptr<cHDItem> OpenHDItem, std::int16_t InitialVolume = -1);
  bool CueItem(std::shared_ptr<cHDItem> CueHDItem = nullptr, std::int16_t InitialVolume = -1);
  // Opens and cues as needed. On a playing item it releases the loop instead. Where a link lets the other
  // player go first, starts only that one.
  bool PlayItem(std::shared_ptr<cHDItem> PlayHDItem = nullptr, std::int16_t InitialVolume = -1);
  bool PauseItem();
  bool SeekItem(float Position, std::shared_ptr<cHDItem> SeekHDItem = nullptr,
                std::int16_t InitialVolume = -1);
  // Percent of the item's TotalLength, limited to 0 to 100.
  bool SeekItemPercent(double Percent, std::shared_ptr<cHDItem> SeekHDItem = nullptr,
                       std::int16_t InitialVolume = -1);
  // Only the hook of an item: the loop is stripped from it, and it closes at the hook's end.
  bool CueItemHook(std::shared_ptr<cHDItem> CueHDItem = nullptr, std::int16_t InitialVolume = -1);
  bool PlayItemHook(std::shared_ptr<cHDItem> PlayHDItem = nullptr, std::int16_t InitialVolume = -1);
  // CloseReference is the caller's own number: a listener may change it in peQueryClose, and peClosing and
  // peClosed carry it. Closing a closed player is true without an event; closing from within peClosing is
  // refused.
  bool CloseItem(float& CloseReference);
  bool CloseItem(float&& CloseReference = 0) { return CloseItem(CloseReference); }
  // Schedules a fade from InitialVolume() to 0; peFadingOut comes at the settings' FadeFirePercent. Needs an
  // item and an owner's settings. Reference: enPlayerVolumeChange.
  bool Fade(float StartTime, float DurationSecs, std::int16_t Reference);
  bool LockPlayer();
  // psClosed, whatever it was.
  bool UnLockPlayer();

  std::int16_t InitialVolume() const { return m_initialVolume; }
  void SetInitialVolume(std::int16_t Volume);
  // A ramp of the volume, one for each reference. NotifyVolume of -1 asks for no notification.
  bool AddVolumeChangeEvent(std::int16_t Reference, float StartTime, float DurationSecs, float StartVolume,
                            float EndVolume, float NotifyVolume, bool RemoveWhenComplete,
                            bool SetVolumePermanently);
  bool RemoveVolumeChangeEvent(std::int16_t ReferenceNumber);
  // Undoes a link on both players; with ResetVolumes a psCued one gets its volume back.
  void RemoveSweeperPlayerLink(bool ResetVolumes);

  std::shared_ptr<cHDItem> HDItem() const { return m_item; }
  std::shared_ptr<cHDItem> PreviousHDItem() const { return m_previousItem; }
  float PreviousSecondsPlayed() const { return m_previousSecondsPlayed; }
  std::string HDReference() const;  // "" without an item
  double LogReference() const { return m_logReference; }
  void SetLogReference(double Value) { m_logReference = Value; }
  const std::string& SchedulerReference() const { return m_schedulerReference; }
  void SetSchedulerReference(const std::string& Value) { m_schedulerReference = Value; }
  float SecondsPlayed() const { return m_secondsPlayed; }
  float SecondsRemaining() const { return m_secondsRemaining; }
  float SecondsRemainingExtro() const { return m_itemClosed ? 0 : m_secondsRemainingExtro; }
  // From AudioStart to Extro, 100 from there on.
  float PercentagePlayed() const;
  // From AudioStart to AudioEnd.
  float TotalPercentagePlayed() const;
  tyLogDateTime Start() const { return m_start; }
  std::int16_t PlayVolume() const;
  void SetPlayVolume(std::int16_t Volume);
  enPlayerStatus Status() const { return m_status; }
  enPlayerSection Section() const { return m_itemClosed ? epsEmpty : m_section; }
  bool InLoop() const;
  bool UseLoop() const;
  void SetUseLoop(bool Use);
  bool FadeActive() const { return m_fadeActive; }
  bool FadeNotified() const { return m_fadeNotified; }
  bool Sweeper() const { return m_sweeper; }
  void SetSweeper(bool Value) { m_sweeper = Value; }
  float SweeperStart() const { return m_sweeperStart; }
  // Position that triggers the link; 0 or less for none.
  void SetSweeperStart(float Seconds);
  bool CloseAtHookEnd() const { return m_closeAtHookEnd; }
  void SetCloseAtHookEnd(bool Value) { m_closeAtHookEnd = Value; }
  bool PlayHookMode() const { return m_playHookMode; }
  void SetPlayHookMode(bool Value);
  bool PreviewMode() const { return m_previewMode; }
  void SetPreviewMode(bool Value);
  float PlaySpeed() const;
  void SetPlaySpeed(float Speed);
  float TimeStretchRatio() const;
  void SetTimeStretchRatio(float Ratio);
  const std::string& ReservationCaption() const { return m_reservationCaption; }
  std::int32_t ReservationReference() const { return m_reservationReference; }
  void SetReservation(std::int32_t Reference, const std::string& Caption);
  void ClearReservation();
  // Edits the open item and the control with it, moving neighbouring marks out of the way. Loop parameters
  // return false whatever they do.
  bool ChangeHDItemParameter(enChangeHDItemParam Param, float NewSetting);

  // For the owners of players.

  // PlayerNumber of 1 or more chooses the settings' device of that number, below 1 the device of its absolute
  // value. ListIndex of 1 or more tells the players of one list apart. Settings may be absent.
  bool InitPlayer(std::int16_t PlayerNumber, const std::shared_ptr<cAudioSettings>& AudioSettings,
                  std::int16_t ListIndex = 0);
  // Closes without asking or telling, lets go of the control, the link and the owner. Idempotent; the
  // destructor does it as well. Afterwards every operation is refused.
  void TerminatePlayer();
  void SetReference(std::int16_t Value) { m_reference = Value; }
  std::shared_ptr<IPlayerCallback> PlayerCallback() const { return m_callback; }
  // Held until TerminatePlayer: an owner that is itself held by its players must terminate them.
  void SetPlayerCallback(std::shared_ptr<IPlayerCallback> Callback) { m_callback = std::move(Callback); }
  std::int32_t PlayedTag() const { return m_playedTag; }
  void SetPlayedTag(std::int32_t Value) { m_playedTag = Value; }
  // Null after TerminatePlayer. Lives no longer than this player.
  ctlVellanPlayer* Control() const { return m_control; }

  // On the main player, with the cued sweeper that goes over its intro.
  bool AddSweeperPlayerLink(const std::shared_ptr<cBasePlayer>& SweeperPlayer);
  // This player's side of a link only.
  bool SetPlayerLink(const std::shared_ptr<cBasePlayer>& LinkPlayer, bool LinkPlayerFirst);
  void ClearPlayerLink();

 private:
  friend class PlayerKeeper;

  // Counts the items that came and went, so that an operation can tell whether its own is still there.
  using ItemVisit = std::uint32_t;
  enum class Answer { Go, Refused };

  // Reporting. Each hearer gets texts of its own; a query's Cancel is shared.
  void TellListeners(std::int32_t event, std::string hdReference, float& sValue1, float& sValue2,
                     std::string strValue1 = {});
  void TellOwner(std::int32_t event, std::string hdReference, float& sValue1, float& sValue2,
                 std::string strValue1 = {});
  void Report(std::int32_t event, float sValue1 = 0, float sValue2 = 0, const std::string& strValue1 = {});
  void ReportWith(std::int32_t event, const std::string& hdReference, float sValue1, float sValue2,
                  const std::string& strValue1 = {});
  Answer Query(std::int32_t event, const std::string& hdReference, float& listenersValue, float& ownersValue);

  // What the control says.
  void HandlePlayerEvent(std::int32_t event, float sValue1, float sValue2, const std::string& strValue1);
  void HandleFadeNotify(float reference);
  void HandlePosition(float position);
  void RecomputeSection(float position);

  // The only ways to change the status.
  bool Move(TransportStep step);
  void TakeBack(TransportStep step, enPlayerStatus before);

  bool Ready() const { return m_control && m_status != psLocked; }
  void SetItem(std::shared_ptr<cHDItem> item);
  std::shared_ptr<cHDItem> CurrentItem() const { return m_itemLost ? nullptr : m_item; }
  bool IsCurrent(const cHDItem& item) const;
  bool Stays(ItemVisit visit) const { return Ready() && m_visit == visit && !m_itemLost; }
  bool ResolveItem(std::shared_ptr<cHDItem>& item) const;
  std::int16_t ResolveVolume(std::int16_t volume) const { return volume == -1 ? m_initialVolume : volume; }
  bool AskFor(std::int32_t query, const cHDItem& item, float sValue1 = 0);

  bool MayOpen(const std::shared_ptr<cHDItem>& item) const;
  bool CloseForOpening();
  bool StartOpening(const std::shared_ptr<cHDItem>& item);
  bool OpenFile(const cHDItem& item);
  bool ReleaseItem(float closeReference);
  void ClearForClose();
  bool CueAtStart();
  bool CueAtHook();
  void UseItemLoop();
  void ReleaseLoop();
  bool StartControl();
  bool PlayFirst(cBasePlayer& other);
  bool MoveToPercent(double percent);
  bool GoToHook(const std::shared_ptr<cHDItem>& item, std::int16_t volume);

  std::shared_ptr<cAudioSettings> OwnerSettings() const;
  void ResetSweeperVolumes();
  void PlayLinkedPlayer();
  bool LinksElsewhere(const cBasePlayer& other) const;
  void AddDuck(const cAudioSettings& settings, bool mainFirst, float introEnd);

  bool ChangeParameter(std::int32_t param, float setting, std::uint32_t underway);
  bool ChangeMark(std::int32_t param, float setting, std::uint32_t underway);
  void ChangeLoopStart(float setting, std::uint32_t underway);
  void ChangeLoopEnd(float setting, std::uint32_t underway);
  void ChangeNumberLoops(float setting);
  void ClearLoop();

  std::shared_ptr<const Platform> m_platform;
  std::int16_t m_reference = 0;
  std::shared_ptr<frmPlayer> m_form;
  ctlVellanPlayer* m_control = nullptr;  // the form's
  std::shared_ptr<IPlayerCallback> m_callback;
  std::shared_ptr<cHDItem> m_item;
  ItemVisit m_visit = 0;
  bool m_itemLost = false;  // m_item no longer stands behind the transport
  std::string m_schedulerReference;
  double m_logReference = 0;
  float m_secondsPlayed = 0;
  float m_secondsRemaining = 0;
  float m_secondsRemainingExtro = 0;
  enPlayerSection m_section = epsEmpty;
  float m_sweeperStart = 0;
  std::int32_t m_playedTag = 0;
  std::shared_ptr<cHDItem> m_previousItem;
  float m_previousSecondsPlayed = 0;
  enPlayerStatus m_status = psClosed;
  std::string m_reservationCaption;
  std::int32_t m_reservationReference = 0;
  bool m_eventsInhibited = false;
  bool m_fadeActive = false;
  bool m_fadeNotified = false;
  bool m_itemClosed = false;
  bool m_closing = false;
  bool m_playHookMode = false;
  bool m_closeAtHookEnd = false;
  bool m_previewMode = false;
  bool m_seekInProgress = false;
  bool m_linked = false;
  bool m_linkPlayerFirst = false;
  bool m_playingFirst = false;
  std::weak_ptr<cBasePlayer> m_link;  // players linked to each other must not keep each other alive
  bool m_sweeper = false;
  std::int16_t m_initialVolume = 100;
  tyLogDateTime m_start;
};

}  // namespace qm
