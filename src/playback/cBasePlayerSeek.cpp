#include <cmath>

#include "item/cHDItem.h"
#include "kits/common/Clock.h"
#include "kits/common/Numbers.h"
#include "kits/sound/ctlVellanPlayer.h"
#include "playback/PlayerOperation.h"
#include "playback/TransportSteps.h"
#include "playback/cBasePlayer.h"

// Moving within an item, and to its hook.
namespace qm {
namespace {

class FlagHolder {
 public:
  explicit FlagHolder(bool& flag) : m_flag(flag) { m_flag = true; }
  ~FlagHolder() { m_flag = false; }
  FlagHolder(const FlagHolder&) = delete;
  FlagHolder& operator=(const FlagHolder&) = delete;

 private:
  bool& m_flag;
};

}  // namespace

bool cBasePlayer::SeekItem(float Position, std::shared_ptr<cHDItem> SeekHDItem, std::int16_t InitialVolume) {
  PlayerOperation operation(*this, "SeekItem");
  if (!Ready() || !ResolveItem(SeekHDItem)) return operation.Exit("No Item");
  const double length = SeekHDItem->TotalLength();
  if (!(length > 0)) return operation.Exit("No TotalLength");
  // In double, so that the seconds of a mark come back out of the percentage unchanged.
  return SeekItemPercent(Position / length * 100, SeekHDItem, InitialVolume);
}

bool cBasePlayer::SeekItemPercent(double Percent, std::shared_ptr<cHDItem> SeekHDItem,
                                  std::int16_t InitialVolume) {
  PlayerOperation operation(*this, "SeekItemPercent");
  if (!Ready() || !ResolveItem(SeekHDItem) || std::isnan(Percent)) return operation.Exit("No Item");
  if (m_seekInProgress) return operation.Exit("Already Seeking");
  const FlagHolder seeking(m_seekInProgress);
  const double percent = Limit(Percent, 0.0, 100.0);
  const std::int16_t volume = ResolveVolume(InitialVolume);
  const auto seconds = static_cast<float>(percent / 100 * SeekHDItem->TotalLength());
  if (!AskFor(peQuerySeek, *SeekHDItem, seconds)) return operation.Exit("Cancelled");
  if (!IsCurrent(*SeekHDItem)) {
    if (!OpenItem(SeekHDItem, volume)) return operation.Exit("Not Opened");
  } else if (m_control->PercentPlayed() == static_cast<float>(percent)) {
    return true;
  }
  return MoveToPercent(percent) || operation.Exit("Not Moved");
}

bool cBasePlayer::MoveToPercent(double percent) {
  const ItemVisit visit = m_visit;
  if (!m_control->Seek(percent) || !Stays(visit)) return false;
  m_secondsPlayed = m_control->SecondsPlayed();
  m_start = AddSeconds(DateTimeNow(*m_platform->clock), -m_secondsPlayed);
  if (m_status == psPlaying) return true;
  const bool toStart = percent == 0;
  if (!Move(toStart ? tsSeekToStart : tsSeek)) return false;
  Report(toStart ? peCued : pePaused);
  return Stays(visit);
}

bool cBasePlayer::CueItemHook(std::shared_ptr<cHDItem> CueHDItem, std::int16_t InitialVolume) {
  PlayerOperation operation(*this, "CueItemHook");
  if (!Ready() || !ResolveItem(CueHDItem)) return operation.Exit("No Item");
  if (IsCurrent(*CueHDItem) && m_status != psPlaying && m_secondsPlayed == m_item->HookStart(1)) return true;
  return GoToHook(CueHDItem, ResolveVolume(InitialVolume)) || operation.Exit("Not Cued");
}

bool cBasePlayer::PlayItemHook(std::shared_ptr<cHDItem> PlayHDItem, std::int16_t InitialVolume) {
  PlayerOperation operation(*this, "PlayItemHook");
  if (!Ready() || !ResolveItem(PlayHDItem)) return operation.Exit("No Item");
  if (!GoToHook(PlayHDItem, ResolveVolume(InitialVolume))) return operation.Exit("Not Cued");
  return PlayItem() || operation.Exit("Not Started");
}

// Opens the item if need be, strips its loop, and moves to the start of its hook if it has one.
bool cBasePlayer::GoToHook(const std::shared_ptr<cHDItem>& item, std::int16_t volume) {
  if (!IsCurrent(*item) && !OpenItem(item, volume)) return false;
  const ItemVisit visit = m_visit;
  if (m_status == psPlaying) PauseItem();
  if (!Stays(visit)) return false;
  ChangeHDItemParameter(hipLoopEnd, 0);
  m_closeAtHookEnd = true;
  SetPlayHookMode(true);
  if (!Stays(visit)) return false;
  if (!(m_item->HookEnd(1) > 0) || SeekItem(m_item->HookStart(1))) return Stays(visit);
  if (Stays(visit)) CloseItem();
  return false;
}

}  // namespace qm
