#include "item/cHDItem.h"
#include "kits/common/Files.h"
#include "kits/common/Text.h"
#include "kits/sound/ctlVellanPlayer.h"
#include "playback/PlayerOperation.h"
#include "playback/TransportSteps.h"
#include "playback/cBasePlayer.h"
#include "settings/cAudioSettings.h"

// Bringing an item in and letting it go.
namespace qm {
namespace {

// A sweeper this close to its end has ended on its own: its partner's duck runs out by itself.
constexpr float kSweeperTail = 0.25f;  // seconds

struct ItemMark {
  enPlayerEvent event;
  float (cHDItem::*time)(std::int32_t) const;
  float (cHDItem::*onlyWith)(std::int32_t) const;  // the mark is set when this time is above 0
};

constexpr ItemMark kItemMarks[] = {
    {peExtroReached, &cHDItem::Extro, &cHDItem::Extro},
    {peIntroEndReached, &cHDItem::IntroEnd, &cHDItem::IntroEnd},
    {peIntroStartReached, &cHDItem::IntroStart, &cHDItem::IntroStart},
    {peHookEndReached, &cHDItem::HookEnd, &cHDItem::HookEnd},
    {peHookStartReached, &cHDItem::HookStart, &cHDItem::HookEnd},
};

}  // namespace

bool cBasePlayer::Move(TransportStep step) {
  if (!StepIsLegal(step, m_status)) return false;
  m_status = StepLeadsTo(step);
  return true;
}

void cBasePlayer::TakeBack(TransportStep step, enPlayerStatus before) {
  if (m_status == StepLeadsTo(step)) m_status = before;
}

bool cBasePlayer::IsCurrent(const cHDItem& item) const {
  const auto current = CurrentItem();
  return current && SameReference(current->Reference(), item.Reference());
}

bool cBasePlayer::ResolveItem(std::shared_ptr<cHDItem>& item) const {
  if (!item) item = CurrentItem();
  return item && !Trim(item->Reference()).empty();
}

// Permission for a step with an item. An item that was here before the question must still be here after it.
bool cBasePlayer::AskFor(std::int32_t query, const cHDItem& item, float sValue1) {
  const bool current = IsCurrent(item);
  const ItemVisit visit = m_visit;
  float forListeners = sValue1, forOwner = sValue1;
  if (Query(query, item.Reference(), forListeners, forOwner) == Answer::Refused) return false;
  return current ? Stays(visit) : Ready();
}

bool cBasePlayer::MayOpen(const std::shared_ptr<cHDItem>& item) const {
  return item && !Trim(item->Reference()).empty() && !IsCurrent(*item) && item->AudioLength(1) > 0;
}

bool cBasePlayer::OpenItem(std::shared_ptr<cHDItem> OpenHDItem, std::int16_t InitialVolume) {
  PlayerOperation operation(*this, "OpenItem");
  if (!Ready() || !MayOpen(OpenHDItem)) return operation.Exit("Nothing To Open");
  const std::int16_t volume = ResolveVolume(InitialVolume);
  if (!AskFor(peQueryOpen, *OpenHDItem)) return operation.Exit("Cancelled");
  if (!MayOpen(OpenHDItem) || !CloseForOpening()) return operation.Exit("Not Closed");
  if (!StartOpening(OpenHDItem)) return operation.Exit("No Audio File");
  const ItemVisit visit = m_visit;
  if (!OpenFile(*OpenHDItem)) return operation.Exit("Not Opened");
  SetInitialVolume(volume);
  if (Stays(visit)) Report(peOpened);
  return Stays(visit) || operation.Exit("Item Gone");
}

bool cBasePlayer::CloseForOpening() {
  if (m_status == psClosed) return true;
  if (!CloseItem()) return false;
  // The control may have refused an earlier close of this item: its next open lets go of the file anyway.
  if (m_itemLost) Move(tsClose);
  return m_status == psClosed;
}

bool cBasePlayer::StartOpening(const std::shared_ptr<cHDItem>& item) {
  SetItem(item);
  const ItemVisit visit = m_visit;
  Report(peOpening);
  if (m_visit != visit) return false;
  if (!Ready() || FileLength(item->AudioFileName()) <= 0) {
    SetItem(nullptr);
    return false;
  }
  m_secondsPlayed = 0;
  m_linked = m_linkPlayerFirst = m_itemClosed = m_sweeper = false;
  m_link.reset();
  return Move(tsOpen);
}

bool cBasePlayer::OpenFile(const cHDItem& item) {
  const ItemVisit visit = m_visit;
  const bool opened = m_control->Open(item.AudioFileName()) == 0;
  if (!Stays(visit)) return false;
  if (!opened) {
    Move(tsOpenFailed);
    SetItem(nullptr);
    Report(peClosed);
    return false;
  }
  m_control->SetAudioEnd(item.AudioEnd(1));
  m_control->SetAudioStart(item.AudioStart(1));
  for (const ItemMark& mark : kItemMarks)
    if ((item.*mark.onlyWith)(1) > 0) m_control->AddPositionEvent({(item.*mark.time)(1), mark.event, 0});
  return true;
}

bool cBasePlayer::CloseItem(float& CloseReference) {
  PlayerOperation operation(*this, "CloseItem");
  if (!Ready() || m_closing) return operation.Exit(m_closing ? "Already Closing" : "Not Ready");
  if (m_status == psClosed || m_itemClosed) return true;
  if (!m_item) return operation.Exit("No Item");
  const ItemVisit visit = m_visit;
  if (Query(peQueryClose, HDReference(), CloseReference, CloseReference) == Answer::Refused)
    return operation.Exit("Cancelled");
  if (!Ready()) return operation.Exit("Not Ready");
  if (m_status == psClosed || m_itemClosed) return true;  // closed by a listener meanwhile
  if (m_visit != visit || m_closing) return operation.Exit("Item Gone");
  m_closing = true;
  const bool released = ReleaseItem(CloseReference);
  m_closing = false;
  if (!released) return operation.Exit("Not Released");
  SetItem(nullptr);
  Move(tsClose);
  Report(peClosed, 0, CloseReference);
  return true;
}

bool cBasePlayer::ReleaseItem(float closeReference) {
  const ItemVisit visit = m_visit;
  const auto stays = [this, visit] { return m_control && m_visit == visit; };
  if (!(m_sweeper && m_secondsRemaining <= kSweeperTail)) ResetSweeperVolumes();
  if (!stays()) return false;
  m_previousItem = m_item;
  m_previousSecondsPlayed = m_secondsPlayed;
  Report(peClosing, 0, closeReference);
  if (!stays()) return false;
  RemoveSweeperPlayerLink(true);
  if (!stays()) return false;
  ClearForClose();
  if (!m_control->Close() || !stays()) return false;
  if (const auto settings = OwnerSettings()) SetInitialVolume(settings->GeneralVolume());
  return stays();
}

void cBasePlayer::ClearForClose() {
  m_sweeper = m_closeAtHookEnd = m_playHookMode = m_previewMode = false;
  m_secondsPlayed = m_secondsRemaining = m_secondsRemainingExtro = m_sweeperStart = 0;
  m_logReference = 0;
  m_schedulerReference.clear();
  m_playedTag = 0;
  m_itemClosed = m_itemLost = true;
}

bool cBasePlayer::LockPlayer() {
  PlayerOperation operation(*this, "LockPlayer");
  if (!m_control || !CloseItem()) return operation.Exit("Not Closed");
  if (!m_control || (m_status != psClosed && !m_itemLost)) return operation.Exit("Opened Again");
  if (!Move(tsLock)) return operation.Exit("Not Ready");
  if (m_itemLost) SetItem(nullptr);
  Report(peLocked);
  return true;
}

bool cBasePlayer::UnLockPlayer() {
  PlayerOperation operation(*this, "UnLockPlayer");
  if (!m_control) return operation.Exit("No Control");
  // The control goes on with an item that is unlocked away; the transport must not take it for its own.
  if (m_status != psClosed && m_status != psLocked) m_itemLost = true;
  Move(tsUnLock);
  Report(peUnLocked);
  return true;
}

}  // namespace qm
