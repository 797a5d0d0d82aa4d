#include "item/cHDItem.h"
#include "kits/common/Clock.h"
#include "kits/common/Numbers.h"
#include "playback/cBasePlayer.h"
#include "playback/cListPlayer.h"
#include "services/TracedOperation.h"

// Its transport: cue, play, pause and close, and what a run begins and ends with.
namespace qm {

std::int16_t cListPlayer::CueListItem(std::int16_t itemIndex, const tyHDListItem& entry) {
  TracedOperation operation("ListPlayer.CueListItem");
  const std::int32_t type = entry.ItemType;
  if (!entry.HDItem || type == 0)
    return operation.Exit("No HDItem or ItemType=0 (ItemType=" + NumberText(type) + ")");
  if (!(entry.HDItem->TotalLength() > 0)) return operation.Exit("HDItem.TotalLength<=0");
  std::int16_t number = 1;
  while (PlayerAt(number) && PlayerAt(number)->Status() != psClosed) ++number;
  cBasePlayer* const player = PlayerAt(number);
  if (!player || !(entry.IsFull() || entry.IsHook())) return 0;
  operation.Line("Player " + NumberText(std::int32_t{number}) + " Available");
  // A ratio that an earlier entry has left must not stretch this one.
  const float ratio =
      entry.HDItem->TimeStretchRatio() > 0 ? entry.HDItem->TimeStretchRatio() : m_timeStretchRatio;
  if (player->TimeStretchRatio() != ratio) player->SetTimeStretchRatio(ratio);
  const std::string call = entry.IsFull() ? "Calling Player.CueItem" : "Calling Player.CueItemHook";
  operation.Line(call);
  if (!(entry.IsFull() ? player->CueItem(entry.HDItem, m_runVolume)
                       : player->CueItemHook(entry.HDItem, m_runVolume))) {
    operation.Line(call + " : FAILED");
    return 0;
  }
  if (entry.IsHook()) player->SetCloseAtHookEnd(true);
  player->SetSchedulerReference(entry.SchedulerReference);
  player->SetLogReference(entry.LogReference);
  player->SetPlayedTag(itemIndex);
  return number;
}

bool cListPlayer::StartRunning() {
  TracedOperation operation("ListPlayer.StartRunning");
  if (m_running) return operation.Exit("Already Running");
  if (m_items.empty()) return operation.Exit("No Items");
  m_next = {};
  m_currentPlayer = m_currentItem = 0;
  const std::int16_t player = CueListItem(1, m_items.front());
  if (player == 0) return false;
  m_currentPlayer = player;
  m_currentItem = 1;
  m_running = true;
  m_extroTold = false;
  ++m_run;
  return true;
}

bool cListPlayer::StopRunning(Afterwards afterwards, Telling telling) {
  TracedOperation operation("ListPlayer.StopRunning");
  if (m_stopping) return operation.Exit("Already Stopping");
  m_stopping = true;
  m_previousHDItem = m_totalItem;
  m_previousSecondsPlayed = m_secondsPlayed;
  if (telling == Telling::Events) Report(peClosing);
  m_running = false;
  ++m_run;
  for (std::int16_t n = 1; n <= NumberPlayers(); ++n) {
    operation.Line("Calling BasePlayer(" + NumberText(std::int32_t{n}) + ").ClosePlayer");
    PlayerAt(n)->CloseItem();
  }
  m_currentPlayer = m_currentItem = 0;
  m_next = {};
  m_section = epsEmpty;
  m_status = psClosed;
  m_stopping = false;
  if (afterwards == Afterwards::ClearList) {
    operation.Line("Calling ClearList");
    m_logReference = 0;
    m_schedulerReference.clear();
    m_playedBase = m_secondsPlayed = m_secondsRemain = m_secondsRemainingExtro = 0;
    ClearItems();
  }
  if (telling == Telling::Events) {
    Report(pePositionChanged);
    ReportLevels();
    Report(peClosed);
  }
  return true;
}

bool cListPlayer::CueItems(std::int16_t InitialVolume) {
  const auto keeper = weak_from_this().lock();
  TracedOperation operation("ListPlayer.CueItems");
  if (m_items.empty() || m_stopping) return operation.Exit("No Items");
  if (!Query(peQueryCue)) return operation.Exit("Cancelled by Callback");
  m_runVolume = InitialVolume == -1 ? m_initialVolume : Limit<std::int16_t>(InitialVolume, 0, 100);
  if (m_status == psCued) {
    operation.Line("Exit : Already Cued");
    return true;
  }
  if (m_status != psClosed && m_status != psOpen) StopRunning(Afterwards::KeepList, Telling::Silent);
  if (!StartRunning()) return operation.Exit("Failed To StartRunning");
  const std::uint32_t run = m_run;
  NameCurrentEntry();
  m_section = epsMain;
  m_playedBase = m_secondsPlayed = 0;
  m_secondsRemainingExtro = m_mainLength;
  m_secondsRemain = m_totalLength;
  if (m_status == psClosed) {
    Report(peOpening);
    if (m_run != run) return false;
    m_status = psOpen;
    Report(peOpened);
  } else {
    Report(pePlayerListCurrentItemChanged, 1);
  }
  if (m_run != run) return false;
  m_status = psCued;
  Report(peCued);
  if (m_run == run) Report(pePositionChanged, m_secondsPlayed, m_secondsRemain);
  if (m_run == run) ReportLevels();
  return m_run == run;
}

bool cListPlayer::PlayItems(std::int16_t InitialVolume) {
  const auto keeper = weak_from_this().lock();
  const TracedOperation operation("ListPlayer.PlayItems");
  if (m_items.empty() || m_stopping) return false;
  const std::int16_t usual = m_status == psClosed ? m_initialVolume : m_runVolume;
  m_runVolume = InitialVolume == -1 ? usual : Limit<std::int16_t>(InitialVolume, 0, 100);
  if (!Query(peQueryPlay)) return false;
  if (m_status == psPlaying) return true;
  const bool resumes = m_status == psPaused;
  if (!resumes && m_status != psCued && !CueItems(m_runVolume)) return false;
  cBasePlayer* const player = PlayerAt(m_currentPlayer);
  const std::uint32_t run = m_run;
  if (!player || !player->PlayItem(nullptr, m_runVolume) || m_run != run) return false;
  if (!resumes) m_start = DateTimeNow(*m_platform->clock);
  m_status = psPlaying;
  ReportWith(pePlaying, HDReference(), 0, -1);
  return true;
}

bool cListPlayer::PauseItems() {
  const auto keeper = weak_from_this().lock();
  const TracedOperation operation("ListPlayer.PauseItems");
  if (m_status == psClosed || !Query(peQueryPause)) return false;
  if (m_status == psCued || m_status == psPaused) return true;
  cBasePlayer* const player = PlayerAt(m_currentPlayer);
  if (!player || !player->PauseItem()) return false;
  m_status = psPaused;
  Report(pePaused);
  return true;
}

bool cListPlayer::CloseItems(float CloseReference) {
  const auto keeper = weak_from_this().lock();
  TracedOperation operation("ListPlayer.CloseItems ", double{CloseReference});
  if (!Query(peQueryClose, CloseReference)) return operation.Exit("Cancelled by Callback");
  if (m_status == psClosed) {
    operation.Line("Exit : Already Closed");
    return true;
  }
  return StopRunning(Afterwards::ClearList, Telling::Events);
}

}  // namespace qm
