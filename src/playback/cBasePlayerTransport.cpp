#include "item/cHDItem.h"
#include "kits/common/Clock.h"
#include "kits/common/Numbers.h"
#include "kits/sound/ctlVellanPlayer.h"
#include "playback/LoopLimits.h"
#include "playback/PlayerOperation.h"
#include "playback/TransportSteps.h"
#include "playback/cBasePlayer.h"

// Moving an open item: cue, play, pause.
namespace qm {
bool cBasePlayer::CueItem(std::shared_ptr<cHDItem> CueHDItem, std::int16_t InitialVolume) {
  PlayerOperation operation(*this, "CueItem");
  if (!Ready() || !ResolveItem(CueHDItem)) return operation.Exit("No Item");
  const std::int16_t volume = ResolveVolume(InitialVolume);
  if (!AskFor(peQueryCue, *CueHDItem)) return operation.Exit("Cancelled");
  if (!IsCurrent(*CueHDItem)) {
    if (!OpenItem(CueHDItem, volume)) return operation.Exit("Not Opened");
  } else if (m_status == psCued) {
    return true;
  }
  const ItemVisit visit = m_visit;
  if (!(m_playHookMode ? CueAtHook() : CueAtStart())) return operation.Exit("Not Cued");
  UseItemLoop();
  SetInitialVolume(volume);
  if (!Stays(visit)) return operation.Exit("Item Gone");
  if (m_fadeActive) m_control->RemoveVolumeChange(pvcFadeOut);
  Report(peCued);
  return Stays(visit) || operation.Exit("Item Gone");
}

bool cBasePlayer::CueAtStart() {
  const ItemVisit visit = m_visit;
  if (!Move(tsCue)) return false;
  const bool cued = m_control->Cue();
  if (!Stays(visit)) return false;
  if (!cued) TakeBack(tsCue, psOpen);
  if (m_status != psCued) return false;
  m_secondsPlayed = 0;
  return true;
}

bool cBasePlayer::CueAtHook() {
  const ItemVisit visit = m_visit;
  if (m_status == psPlaying) m_control->Pause();
  if (!Stays(visit) || !Move(tsCueHook)) return false;
  const float hookStart = m_item->HookStart(1);
  if (!SeekItem(hookStart) || !Stays(visit)) return false;
  m_secondsPlayed = hookStart;
  return true;
}

void cBasePlayer::UseItemLoop() {
  const float start = m_item->LoopStart(), end = m_item->LoopEnd(), audioEnd = m_item->AudioEnd(1);
  if (!(start >= 0 && end > 0)) return;
  m_control->SetLoopStart(Limit(start, kEarliestLoopStart, audioEnd));
  m_control->SetLoopEnd(Limit(end, kEarliestLoopStart, audioEnd));
  m_control->SetUseLoop(true);
  m_control->SetLoopCount(m_item->LoopNumberLoops() < 1 ? kEndlessLoops : m_item->LoopNumberLoops());
}

bool cBasePlayer::PlayItem(std::shared_ptr<cHDItem> PlayHDItem, std::int16_t InitialVolume) {
  PlayerOperation operation(*this, "PlayItem");
  if (!Ready() || !ResolveItem(PlayHDItem)) return operation.Exit("No Item");
  const std::int16_t volume = ResolveVolume(InitialVolume);
  if (!AskFor(peQueryPlay, *PlayHDItem)) return operation.Exit("Cancelled");
  if (!IsCurrent(*PlayHDItem)) {
    if (!OpenItem(PlayHDItem, volume)) return operation.Exit("Not Opened");
  } else if (m_status == psPlaying) {
    ReleaseLoop();
    return true;
  }
  if (m_status == psOpen && !CueItem(nullptr, volume)) return operation.Exit("Not Cued");
  if (const auto other = m_linkPlayerFirst ? LinkedToPlayer() : nullptr)
    return PlayFirst(*other) || operation.Exit("Linked Player Not Started");
  return StartControl() || operation.Exit("Not Started");
}

// Two players may each be told that the other goes first; the second time round is refused.
bool cBasePlayer::PlayFirst(cBasePlayer& other) {
  if (m_playingFirst) return false;
  m_playingFirst = true;
  const bool played = other.PlayItem();
  m_playingFirst = false;
  return played;
}

void cBasePlayer::ReleaseLoop() {
  if (!m_control->UseLoop()) return;
  if (m_control->InLoop() && !m_item->LoopPlayToEnd())
    m_control->ExitLoop();
  else
    m_control->SetUseLoop(false);
  Report(pePlaying, m_control->SecondsPlayed());
}

bool cBasePlayer::StartControl() {
  const ItemVisit visit = m_visit;
  const enPlayerStatus before = m_status;
  if (!Move(tsPlay)) return before == psPlaying;  // a listener may have started it
  const float position = m_control->SecondsPlayed();
  const bool started = m_control->Play();
  if (!Stays(visit)) return false;
  if (!started) TakeBack(tsPlay, before);
  if (m_status != psPlaying) return false;
  if (before == psCued) m_start = DateTimeNow(*m_platform->clock);
  Report(pePlaying, position, position == 0 ? -1 : 0);
  return Stays(visit);
}

bool cBasePlayer::PauseItem() {
  PlayerOperation operation(*this, "PauseItem");
  const auto item = CurrentItem();
  if (!Ready() || !item) return operation.Exit("No Item");
  const ItemVisit visit = m_visit;
  if (!AskFor(peQueryPause, *item)) return operation.Exit("Cancelled");
  if (Move(tsPause)) {
    const bool paused = m_control->Pause();
    if (!Stays(visit)) return operation.Exit("Item Gone");
    if (!paused) TakeBack(tsPause, psPlaying);
  }
  if (m_status != psPaused) return operation.Exit("Not Playing");
  Report(pePaused);
  return true;
}

}  // namespace qm
