#include "item/cHDItem.h"
#include "kits/sound/ctlVellanPlayer.h"
#include "playback/PlayerOperation.h"
#include "playback/cBasePlayer.h"
#include "settings/cAudioSettings.h"

// A sweeper over the intro of another player's item: whichever starts first triggers the other.
namespace qm {
namespace {
constexpr float kDuckSeconds = 0.5f;
}

bool cBasePlayer::AddSweeperPlayerLink(const std::shared_ptr<cBasePlayer>& SweeperPlayer) {
  PlayerOperation operation(*this, "AddSweeperPlayerLink");
  const auto sweeper = SweeperPlayer;
  const auto settings = OwnerSettings();
  if (!sweeper || sweeper.get() == this || !settings) return operation.Exit("No Sweeper Or Settings");
  if (!Ready() || !CurrentItem() || !sweeper->CurrentItem() || sweeper->m_status != psCued)
    return operation.Exit("No Item");
  const ItemVisit visit = m_visit, sweeperVisit = sweeper->m_visit;
  ClearPlayerLink();
  sweeper->ClearPlayerLink();
  sweeper->SetSweeper(true);
  SetSweeper(false);
  if (!settings->UsePlayerDucking()) {
    sweeper->SetPlayVolume(settings->SweptAudioVolume());
    SetPlayVolume(settings->GeneralVolume());
  }
  if (!Stays(visit) || !sweeper->Stays(sweeperVisit)) return operation.Exit("Item Gone");
  const float sweeperExtro = sweeper->m_item->Extro(1), introEnd = m_item->IntroEnd(1);
  const bool mainFirst = introEnd > sweeperExtro;
  if (!sweeper->SetPlayerLink(weak_from_this().lock(), mainFirst) || !SetPlayerLink(sweeper, !mainFirst))
    return operation.Exit("Not Linked");
  if (!Stays(visit) || !sweeper->Stays(sweeperVisit)) return operation.Exit("Item Gone");
  cBasePlayer& first = mainFirst ? *this : *sweeper;
  first.SetSweeperStart(mainFirst ? introEnd - sweeperExtro : sweeperExtro - introEnd);
  if (settings->UsePlayerDucking()) AddDuck(*settings, mainFirst, introEnd);
  return LinkedToPlayer() == sweeper || operation.Exit("Link Gone");
}

// The item that is swept over goes down as the sweeper starts, at once when that is before its first moment,
// and is back up when the intro ends.
void cBasePlayer::AddDuck(const cAudioSettings& settings, bool mainFirst, float introEnd) {
  const float general = settings.GeneralVolume(), duck = settings.DuckAudioVolume();
  const float seconds = mainFirst ? kDuckSeconds : 0;
  const float start = mainFirst ? m_sweeperStart - seconds : 0;
  AddVolumeChangeEvent(pvcSweepStart, start, seconds, general, duck, -1, true, true);
  AddVolumeChangeEvent(pvcSweepEnd, introEnd - kDuckSeconds, kDuckSeconds, duck, general, -1, true, true);
}

bool cBasePlayer::SetPlayerLink(const std::shared_ptr<cBasePlayer>& LinkPlayer, bool LinkPlayerFirst) {
  PlayerOperation operation(*this, "SetPlayerLink");
  const auto other = LinkPlayer;
  if (!Ready() || !other || other.get() == this) return operation.Exit("No Player");
  m_link = other;
  m_linked = true;
  m_linkPlayerFirst = LinkPlayerFirst;
  if (!m_eventsInhibited) events.LinkedToPlayer(other, LinkPlayerFirst);
  ReportWith(peLinked, {}, LinkPlayerFirst ? 1 : 2, 0);
  return true;
}

void cBasePlayer::ClearPlayerLink() {
  if (!m_linked) return;
  const PlayerOperation operation(*this, "ClearPlayerLink");
  m_link.reset();
  m_linked = m_linkPlayerFirst = false;
  if (!m_eventsInhibited) events.PlayerLinkCleared();
  ReportWith(peLinkCleared, {}, 0, 0);
}

void cBasePlayer::SetSweeperStart(float Seconds) {
  const PlayerKeeper keeper(*this);
  m_sweeperStart = Seconds;
  if (!m_control) return;
  if (Seconds > 0)
    m_control->AddPositionEvent({Seconds, peSweeperStartReached, 0});
  else
    m_control->RemovePositionEvent(peSweeperStartReached, 0);
}

void cBasePlayer::PlayLinkedPlayer() {
  const auto other = LinkedToPlayer();
  if (!m_control || !other) return;
  PlayerOperation operation(*this, "PlayLinkedPlayer");
  other->ClearPlayerLink();
  float forListeners = other->Reference(), forOwner = forListeners;
  if (Query(peLinkQueryPlay, other->HDReference(), forListeners, forOwner) == Answer::Refused) {
    operation.Exit("Cancelled");
    return;
  }
  if (LinkedToPlayer() != other) {
    operation.Exit("Link Gone");
    return;
  }
  other->PlayItem();
  if (m_control) ReportWith(peLinkPlayed, other->HDReference(), other->Reference(), 0);
  RemoveSweeperPlayerLink(false);
}

// The other player may have gone into another link without ours being told.
bool cBasePlayer::LinksElsewhere(const cBasePlayer& other) const {
  const auto theirs = other.LinkedToPlayer();
  return theirs && theirs.get() != this;
}

void cBasePlayer::RemoveSweeperPlayerLink(bool ResetVolumes) {
  if (!m_linked) return;
  const PlayerOperation operation(*this, "RemoveSweeperPlayerLink");
  const auto other = LinkedToPlayer();
  if (other && !LinksElsewhere(*other)) {
    if (ResetVolumes && other->Status() == psCued) other->ResetSweeperVolumes();
    other->ClearPlayerLink();
  }
  if (ResetVolumes && m_status == psCued) ResetSweeperVolumes();
  ClearPlayerLink();
}

void cBasePlayer::ResetSweeperVolumes() {
  const PlayerKeeper keeper(*this);
  if (!m_control) return;
  m_control->RemoveVolumeChange(pvcSweepStart);
  m_control->RemoveVolumeChange(pvcSweepEnd);
  SetPlayVolume(m_initialVolume);
}

}  // namespace qm
