#include <utility>

#include "item/cHDItem.h"
#include "playback/cBasePlayer.h"
#include "playback/cListPlayer.h"
#include "playback/cPlayLog.h"
#include "playback/cPlayer.h"
#include "services/TracedOperation.h"

// What the player passes on: to the list in list mode, to the base player, or to both.
namespace qm {
namespace {

// The answer of a player that may not be there.
template <class Player, class Member, class... Arguments>
auto Ask(const std::shared_ptr<Player>& player, Member member, Arguments&&... arguments) {
  const auto kept = player;
  using Answer = std::decay_t<decltype(((*kept).*member)(std::forward<Arguments>(arguments)...))>;
  if constexpr (std::is_void_v<Answer>) {
    if (kept) ((*kept).*member)(std::forward<Arguments>(arguments)...);
  } else {
    return kept ? Answer(((*kept).*member)(std::forward<Arguments>(arguments)...)) : Answer{};
  }
}

// An operation with an item, and its line about that.
struct ItemOperation : TracedOperation {
  template <class... Parts>
  ItemOperation(const char* word, const std::shared_ptr<cHDItem>& item, const Parts&... name)
      : TracedOperation(name...) {
    if (item)
      Trace(5, ednPlain, word, ".Reference=", item->Reference());
    else
      Trace(5, ednPlain, word, " is [Nothing]");
  }
};

}  // namespace

std::string cPlayer::EngineName() const {
  return Ask(m_basePlayer, &cBasePlayer::EngineName);
}

bool cPlayer::OpenItem(std::shared_ptr<cHDItem> OpenHDItem, std::int16_t InitialVolume) {
  const ItemOperation operation("OpenHDItem", OpenHDItem, "cPlayer", m_reference, ".OpenItem,",
                                InitialVolume);
  return !m_listMode && Ask(m_basePlayer, &cBasePlayer::OpenItem, OpenHDItem, InitialVolume);
}

bool cPlayer::CueItem(std::shared_ptr<cHDItem> CueHDItem, std::int16_t InitialVolume) {
  const ItemOperation operation("CueHDItem", CueHDItem, "cPlayer", m_reference, ".CueHDItem,", InitialVolume);
  if (m_listMode) return Ask(m_listPlayer, &cListPlayer::CueItems, InitialVolume);
  return Ask(m_basePlayer, &cBasePlayer::CueItem, CueHDItem, InitialVolume);
}

bool cPlayer::CueItemHook(std::shared_ptr<cHDItem> CueHDItem, std::int16_t InitialVolume) {
  const ItemOperation operation("CueHDItem", CueHDItem, "cPlayer", m_reference, ".CueItemHook,",
                                InitialVolume);
  return Ask(m_basePlayer, &cBasePlayer::CueItemHook, CueHDItem, InitialVolume);
}

bool cPlayer::PlayItem(std::shared_ptr<cHDItem> PlayHDItem, std::int16_t InitialVolume) {
  const ItemOperation operation("PlayHDItem", PlayHDItem, "cPlayer", m_reference, ".PlayItem,",
                                InitialVolume);
  if (m_listMode) return Ask(m_listPlayer, &cListPlayer::PlayItems, InitialVolume);
  return Ask(m_basePlayer, &cBasePlayer::PlayItem, PlayHDItem, InitialVolume);
}

bool cPlayer::PlayItemHook(std::shared_ptr<cHDItem> PlayHDItem, std::int16_t InitialVolume) {
  const ItemOperation operation("PlayHDItem", PlayHDItem, "cPlayer", m_reference, ".PlayItemHook,",
                                InitialVolume);
  return Ask(m_basePlayer, &cBasePlayer::PlayItemHook, PlayHDItem, InitialVolume);
}

bool cPlayer::PauseItem() {
  const TracedOperation operation("cPlayer", m_reference, ".PauseItem");
  if (m_listMode) return Ask(m_listPlayer, &cListPlayer::PauseItems);
  return Ask(m_basePlayer, &cBasePlayer::PauseItem);
}

bool cPlayer::SeekItem(float Position, std::shared_ptr<cHDItem> SeekHDItem, std::int16_t InitialVolume) {
  const TracedOperation operation("cPlayer", m_reference, ".SeekItem,", double{Position}, ",", InitialVolume);
  return !m_listMode && Ask(m_basePlayer, &cBasePlayer::SeekItem, Position, SeekHDItem, InitialVolume);
}

bool cPlayer::SeekItemPercent(double Percent, std::shared_ptr<cHDItem> SeekHDItem,
                              std::int16_t InitialVolume) {
  const TracedOperation operation("cPlayer", m_reference, ".SeekItemPercent,", Percent, ",", InitialVolume);
  return !m_listMode && Ask(m_basePlayer, &cBasePlayer::SeekItemPercent, Percent, SeekHDItem, InitialVolume);
}

bool cPlayer::CloseItem(float CloseReference) {
  const TracedOperation operation("cPlayer", m_reference, ".CloseItem,", double{CloseReference});
  if (m_listMode) return Ask(m_listPlayer, &cListPlayer::CloseItems, CloseReference);
  const auto player = m_basePlayer;
  return player && player->CloseItem(CloseReference);
}

bool cPlayer::Fade(float FadeStart, float FadeDurationSecs, std::int16_t FadeReference) {
  const TracedOperation operation("cPlayer", m_reference, ".Fade,", double{FadeStart}, ",",
                                  double{FadeDurationSecs}, ",", FadeReference);
  if (m_listMode) return Ask(m_listPlayer, &cListPlayer::CloseItems, 0.0f);
  return Ask(m_basePlayer, &cBasePlayer::Fade, FadeStart, FadeDurationSecs, FadeReference);
}

bool cPlayer::LockPlayer() {
  const TracedOperation operation("cPlayer", m_reference, ".LockPlayer");
  return Ask(m_basePlayer, &cBasePlayer::LockPlayer);
}

bool cPlayer::UnLockPlayer() {
  const TracedOperation operation("cPlayer", m_reference, ".UnLockPlayer");
  return Ask(m_basePlayer, &cBasePlayer::UnLockPlayer);
}

bool cPlayer::AddVolumeChangeEvent(std::int16_t Reference, float StartTime, float DurationSecs,
                                   float StartVolume, float EndVolume, float NotifyVolume,
                                   bool RemoveWhenComplete, bool SetVolumePermanently) {
  const TracedOperation operation("cPlayer", m_reference, ".AddVolumeChangeEvent,", Reference, ",",
                                  double{StartTime}, ",", double{DurationSecs}, ",", double{StartVolume}, ",",
                                  double{EndVolume}, ",", double{NotifyVolume});
  return Ask(m_basePlayer, &cBasePlayer::AddVolumeChangeEvent, Reference, StartTime, DurationSecs,
             StartVolume, EndVolume, NotifyVolume, RemoveWhenComplete, SetVolumePermanently);
}

bool cPlayer::RemoveVolumeChangeEvent(std::int16_t ReferenceNumber) {
  const TracedOperation operation("cPlayer", m_reference, ".RemoveVolumeChangeEvent,", ReferenceNumber);
  return Ask(m_basePlayer, &cBasePlayer::RemoveVolumeChangeEvent, ReferenceNumber);
}

bool cPlayer::ChangeHDItemParameter(enChangeHDItemParam Param, float NewSetting) {
  const TracedOperation operation("cPlayer", m_reference, ".ChangeHDItemParameter,", std::int32_t{Param}, ",",
                                  double{NewSetting});
  return Ask(m_basePlayer, &cBasePlayer::ChangeHDItemParameter, Param, NewSetting);
}

void cPlayer::RemoveSweeperPlayerLink(bool ResetVolumes) {
  const TracedOperation operation("cPlayer", m_reference, ".RemoveSweeperPlayerLink");
  Ask(m_basePlayer, &cBasePlayer::RemoveSweeperPlayerLink, ResetVolumes);
}

void cPlayer::SetReservation(std::int32_t Reference, const std::string& Caption) {
  const TracedOperation operation("cPlayer", m_reference, ".SetReservation,", Reference, ",", Caption);
  Ask(m_basePlayer, &cBasePlayer::SetReservation, Reference, Caption);
}

void cPlayer::ClearReservation() {
  const TracedOperation operation("cPlayer", m_reference, ".ClearReservation");
  Ask(m_basePlayer, &cBasePlayer::ClearReservation);
}

// Plain properties of the base player: read, and set with a trace.
#define QM_BASE_READ(Type, Name)                  \
  Type cPlayer::Name() const {                    \
    return Ask(m_basePlayer, &cBasePlayer::Name); \
  }
#define QM_BASE_SET(Type, Name, Traced)                                                 \
  void cPlayer::Set##Name(Type Value) {                                                 \
    const TracedOperation operation("Set cPlayer", m_reference, "." #Name ",", Traced); \
    Ask(m_basePlayer, &cBasePlayer::Set##Name, Value);                                  \
  }
QM_BASE_READ(std::string, ReservationCaption)
QM_BASE_READ(std::int32_t, ReservationReference)
QM_BASE_READ(bool, FadeActive)
QM_BASE_READ(bool, FadeNotified)
QM_BASE_READ(bool, InLoop)
QM_BASE_READ(bool, UseLoop)
QM_BASE_SET(bool, UseLoop, Value)
QM_BASE_READ(bool, CloseAtHookEnd)
QM_BASE_SET(bool, CloseAtHookEnd, Value)
QM_BASE_READ(bool, PlayHookMode)
QM_BASE_SET(bool, PlayHookMode, Value)
QM_BASE_READ(bool, PreviewMode)
QM_BASE_SET(bool, PreviewMode, Value)
QM_BASE_READ(bool, Sweeper)
QM_BASE_SET(bool, Sweeper, Value)
QM_BASE_READ(float, SweeperStart)
QM_BASE_SET(float, SweeperStart, double{Value})
QM_BASE_READ(std::int16_t, InitialVolume)
QM_BASE_READ(bool, ReportErrors)
QM_BASE_READ(std::string, SchedulerReference)

// Of the list in list mode, else of the base player.
#define QM_ROUTED_READ(Type, Name, ListName)                            \
  Type cPlayer::Name() const {                                          \
    return m_listMode ? Type(Ask(m_listPlayer, &cListPlayer::ListName)) \
                      : Type(Ask(m_basePlayer, &cBasePlayer::Name));    \
  }
QM_ROUTED_READ(std::shared_ptr<cHDItem>, HDItem, HDItem)
QM_ROUTED_READ(std::string, HDReference, HDReference)
QM_ROUTED_READ(enPlayerStatus, Status, Status)
QM_ROUTED_READ(enPlayerSection, Section, Section)
QM_ROUTED_READ(tyLogDateTime, Start, Start)
QM_ROUTED_READ(double, LogReference, LogReference)
QM_ROUTED_READ(float, PercentagePlayed, PercentagePlayed)
QM_ROUTED_READ(float, TotalPercentagePlayed, TotalPercentagePlayed)
QM_ROUTED_READ(float, SecondsPlayed, SecondsPlayed)
QM_ROUTED_READ(float, SecondsRemaining, SecondsRemain)
QM_ROUTED_READ(float, SecondsRemainingExtro, SecondsRemainingExtro)
QM_ROUTED_READ(std::int16_t, PlayVolume, PlayVolume)

std::shared_ptr<cHDItem> cPlayer::PreviousHDItem() const {
  return m_previousListMode ? Ask(m_listPlayer, &cListPlayer::PreviousHDItem)
                            : Ask(m_basePlayer, &cBasePlayer::PreviousHDItem);
}

void cPlayer::SetLogReference(double Value) {
  const TracedOperation operation("Set cPlayer", m_reference, ".LogReference,", Value);
  if (m_listMode)
    Ask(m_listPlayer, &cListPlayer::SetLogReference, Value);
  else
    Ask(m_basePlayer, &cBasePlayer::SetLogReference, Value);
}

float cPlayer::PlaySpeed() const {
  return m_basePlayer ? m_basePlayer->PlaySpeed() : Ask(m_listPlayer, &cListPlayer::PlaySpeed);
}

float cPlayer::TimeStretchRatio() const {
  return m_basePlayer ? m_basePlayer->TimeStretchRatio() : Ask(m_listPlayer, &cListPlayer::TimeStretchRatio);
}

// To each player that is there, the base player first.
#define QM_SET_BOTH(Type, Name, Traced)                                                 \
  void cPlayer::Set##Name(Type Value) {                                                 \
    const TracedOperation operation("Set cPlayer", m_reference, "." #Name ",", Traced); \
    Ask(m_basePlayer, &cBasePlayer::Set##Name, Value);                                  \
    Ask(m_listPlayer, &cListPlayer::Set##Name, Value);                                  \
  }
QM_SET_BOTH(std::int16_t, InitialVolume, Value)
QM_SET_BOTH(std::int16_t, PlayVolume, Value)
QM_SET_BOTH(float, PlaySpeed, double{Value})
QM_SET_BOTH(float, TimeStretchRatio, double{Value})
QM_SET_BOTH(bool, ReportErrors, Value)
QM_SET_BOTH(const std::string&, SchedulerReference, Value)

}  // namespace qm
