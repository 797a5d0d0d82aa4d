#include <utility>

#include "item/cHDItem.h"
#include "kits/common/Files.h"
#include "kits/common/Numbers.h"
#include "playback/cBasePlayer.h"
#include "playback/cListPlayer.h"
#include "playback/cPlayLog.h"
#include "services/Diagnostics.h"

// What the list hears from its players, the handover from entry to entry, and what it tells.
namespace qm {
namespace {

constexpr float kCueAhead = 10;  // seconds before the handover
constexpr float kFreshlyStarted = 0.1f;
constexpr float kStartAhead = 0.1f;  // of what follows a hook or a separator
constexpr std::int32_t kTraceLevel = 5;
constexpr std::int32_t kErrorLevel = 2;

float HandoverPoint(const tyHDListItem& entry) {
  return entry.IsHook() ? entry.HDItem->HookEnd(1) : entry.HDItem->Extro(1);
}

}  // namespace

void cListPlayer::ReportWith(std::int32_t event, const std::string& hdReference, float sValue1,
                             float sValue2) {
  if (m_eventsInhibited) return;
  const auto tell = [&](auto&& hearer) {
    std::string reference = hdReference, strValue1, strValue2;
    float first = sValue1, second = sValue2;
    hearer(reference, first, second, strValue1, strValue2);
  };
  tell([&](auto&... values) { events.PlayerEvent(event, values...); });
  if (const auto owner = m_callback)
    tell([&](auto&... values) { owner->PlayerEvent(m_reference, event, values...); });
}

void cListPlayer::Report(std::int32_t event, float sValue1, float sValue2) {
  if (m_raiseEvents) ReportWith(event, HDReference(), sValue1, sValue2);
}

// A non-zero Cancel of either hearer refuses the step.
bool cListPlayer::Query(std::int32_t event, float sValue1) {
  if (m_eventsInhibited) return true;
  float cancel = 0;
  const auto ask = [&](auto&& hearer) {
    std::string reference = HDReference(), strValue1, strValue2;
    float first = sValue1;
    hearer(reference, first, cancel, strValue1, strValue2);
  };
  ask([&](auto&... values) { events.PlayerEvent(event, values...); });
  if (const auto owner = m_callback)
    ask([&](auto&... values) { owner->PlayerEvent(m_reference, event, values...); });
  return cancel == 0;
}

void cListPlayer::ReportLevels() {
  Report(peAudioLevelChanged);
  if (!m_eventsInhibited) events.LevelChanged(0, 0);
}

void cListPlayer::PlayerEvent(std::int16_t PlayerReference, std::int32_t EventReference, std::string&,
                              float& sValue1, float& sValue2, std::string& strValue1, std::string&) {
  const auto keeper = weak_from_this().lock();
  cBasePlayer* const player = PlayerAt(PlayerReference);
  if (!player) return;
  // The run goes on whatever a player meets with: only the trace tells.
  if (EventReference == peError)
    Trace(kErrorLevel, ednPlain, "ListPlayer : Player ", PlayerReference, " error ", sValue1, " ", strValue1);
  if (EventReference == peQueryClose && player->Status() == psPlaying && m_raiseEvents &&
      Entry(player->PlayedTag()))
    HearFinished(*player);
  else if (PlayerReference == m_currentPlayer && m_running && !m_stopping && m_currentItem >= 1)
    HearCurrent(EventReference, sValue1, sValue2);
  if (EventReference == peAudioEndReached) player->CloseItem();
}

void cListPlayer::HearFinished(cBasePlayer& player) {
  m_previousListItemPlayLog = EntryPlayLog(player);
  ReportWith(pePlayerListItemFinished, player.HDReference(), 0, 0);
}

void cListPlayer::HearCurrent(std::int32_t event, float sValue1, float sValue2) {
  switch (event) {
    case peVolumeChanged:
      return Report(peVolumeChanged, sValue1);
    case peAudioLevelChanged:
      if (m_raiseEvents)
        events.LevelChanged(static_cast<std::int16_t>(sValue1), static_cast<std::int16_t>(sValue2));
      return;
    case peHookEndReached:
      if (const tyHDListItem* const entry = Entry(m_currentItem); entry && entry->ItemType == hlitHook)
        Update();
      return;
    case peExtroReached:
      TellExtro(sValue1);
      return Update();
    case pePositionChanged:
    case peClosed:
    case peAudioEndReached:
    case peVolumeChangeStartNotify:
    case peVolumeChangeNotify:
      return Update();
  }
}

// Once for each entry, by its position or by its mark: the position is heard first, and starts the next
// entry, behind which the mark is not the run's any more.
void cListPlayer::TellExtro(float markTag) {
  if (std::exchange(m_extroTold, true)) return;
  SetClock();
  m_section = epsExtro;
  Report(peExtroReached, markTag);
}

// The run's clock and the handover. Whatever a listener does meanwhile, a run that has ended is left alone.
void cListPlayer::Update() {
  if (!m_running || m_stopping || m_cueing) return;
  const std::uint32_t run = m_run;
  Handover handover = Handover::Wait;
  if (!m_next[0].cued && m_currentPlayer >= 1) LookAhead(handover);
  if (m_run == run && IsInExtro()) TellExtro(0);
  if (m_run == run && m_next[0].cued && (handover == Handover::Start || IsTimeToStart())) StartNext();
  if (m_run == run) RunClock();
}

// Has the next entry cued once it is time. With nothing on the air any more and nothing left to play, the run
// is over.
void cListPlayer::LookAhead(Handover& handover) {
  const cBasePlayer& player = *PlayerAt(m_currentPlayer);
  const bool silent = player.Status() == psClosed;
  if (IndexAfter(m_currentItem) == 0) {
    if (silent) EndRun();
    return;
  }
  const bool startsNow = silent || player.FadeNotified();
  if (!startsNow && !IsTimeToCue(player)) return;
  // While something is on the air, an entry that fails is tried again; in silence the next one has its turn.
  if (CueNext(silent ? PassingOver::MissingAndFailing : PassingOver::Missing)) {
    if (startsNow) handover = Handover::Start;
  } else if (silent) {
    EndRun();
  }
}

void cListPlayer::EndRun() {
  m_running = false;
  m_currentPlayer = m_currentItem = 0;
  CloseItems(0);
}

bool cListPlayer::IsTimeToCue(const cBasePlayer& player) const {
  const tyHDListItem* const entry = Entry(m_currentItem);
  if (!entry || !(player.SecondsPlayed() > kFreshlyStarted)) return false;
  return player.FadeActive() || HandoverPoint(*entry) - player.SecondsPlayed() <= kCueAhead;
}

std::int16_t cListPlayer::IndexAfter(std::int16_t index) const {
  if (!IsLast(index)) return static_cast<std::int16_t>(index + 1);
  return m_repeatList && !m_items.empty() ? 1 : 0;
}

bool cListPlayer::CueNext(PassingOver passingOver) {
  m_skipStart = false;
  std::int16_t index = m_currentItem;
  for (std::int32_t tries = NumberItems(); tries > 0; --tries) {
    index = IndexAfter(index);
    const tyHDListItem* const entry = Entry(index);
    if (!entry) return false;
    if (!FileExists(entry->HDItem->AudioFileName())) {
      Trace(kTraceLevel, ednPlain, "ListPlayer : No file for item ", index);
      continue;
    }
    // The player that was on the air may be the one that is free: what it says now is of the next entry.
    m_cueing = true;
    const std::int16_t player = CueListItem(index, *entry);
    m_cueing = false;
    if (player != 0) {
      m_next[0] = {player, index, true};
      return true;
    }
    if (passingOver == PassingOver::Missing) return false;
    Trace(kTraceLevel, ednPlain, "ListPlayer : Passing over item ", index);
  }
  return false;
}

bool cListPlayer::IsInExtro() const {
  const cBasePlayer* const player = PlayerAt(m_currentPlayer);
  const tyHDListItem* const entry = Entry(m_currentItem);
  return player && entry && entry->IsFull() && player->Status() == psPlaying && entry->HDItem->Extro(1) > 0 &&
         player->SecondsPlayed() >= entry->HDItem->Extro(1);
}

bool cListPlayer::IsTimeToStart() const {
  const cBasePlayer* const player = PlayerAt(m_currentPlayer);
  const tyHDListItem* const entry = Entry(m_currentItem);
  if (!player || !entry) return false;
  if (player->Status() == psClosed || player->FadeNotified()) return true;
  const bool early = entry->IsHook() || (entry->ItemType & hlitSeparator) != 0;
  return player->SecondsPlayed() + (early ? kStartAhead : 0) >= HandoverPoint(*entry);
}

void cListPlayer::StartNext() {
  const auto reportChange = [this](std::int32_t event) {
    Report(event, m_currentItem, m_currentItem == 0 ? -1 : 0);
  };
  if (!Entry(m_next[0].item)) {
    m_next[0].cued = false;
    return;
  }
  const std::uint32_t run = m_run;
  reportChange(pePlayerListCurrentItemChanging);
  if (m_run != run || !m_next[0].cued) return;
  if (const tyHDListItem* const entry = Entry(m_currentItem)) m_playedBase += entry->ImpactLength;
  const CuedEntry next = m_next[0];
  cBasePlayer& player = *PlayerAt(next.player);
  bool started = true;
  if (!m_skipStart) started = Entry(next.item)->IsHook() ? player.PlayItemHook() : player.PlayItem();
  m_skipStart = false;
  m_currentItem = next.item;
  m_currentPlayer = next.player;
  m_extroTold = false;
  m_next = {m_next[1], CuedEntry{}};
  NameCurrentEntry();
  reportChange(pePlayerListCurrentItemChanged);
  if (started || m_run != run) return;
  // It would never end: closed, it hands over to the one behind it.
  Trace(kTraceLevel, ednPlain, "ListPlayer : Item ", m_currentItem, " does not start");
  player.CloseItem();
}

void cListPlayer::NameCurrentEntry() {
  const tyHDListItem* const entry = Entry(m_currentItem);
  if (!entry) return;
  m_totalItem->SetItemTitle(entry->HDItem->ItemTitle());
  m_totalItem->SetArtistName(1, entry->HDItem->ArtistName(1));
  m_totalItem->SetItemDescription(1, entry->HDItem->ItemDescription(1));
}

// False with nothing on the air.
bool cListPlayer::SetClock() {
  const cBasePlayer* const player = PlayerAt(m_currentPlayer);
  const tyHDListItem* const entry = Entry(m_currentItem);
  if (!player || !entry) return false;
  float offset = 0;
  if (entry->IsFull()) offset = player->SecondsPlayed();
  if (entry->IsHook()) offset = player->SecondsPlayed() - entry->HDItem->HookStart(1);
  m_secondsPlayed = offset + m_playedBase;
  m_secondsRemainingExtro = Greater(m_mainLength - m_secondsPlayed, 0.0f);
  m_secondsRemain = m_totalLength - m_secondsPlayed;
  return true;
}

void cListPlayer::RunClock() {
  if (SetClock()) Report(pePositionChanged, m_secondsPlayed, m_secondsRemain);
}

}  // namespace qm
