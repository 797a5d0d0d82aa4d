#include "contract/PlayerVocabulary.h"

namespace qm {

#define QM_NAME(event) \
  case event:          \
    return #event;

const char* PlayerEventName(std::int32_t event) {
  switch (static_cast<enPlayerEvent>(event)) {
    QM_NAME(peError)
    QM_NAME(peLocked)
    QM_NAME(peUnLocked)
    QM_NAME(peQueryPlay)
    QM_NAME(pePlaying)
    QM_NAME(peQuerySeek)
    QM_NAME(peQueryPause)
    QM_NAME(pePaused)
    QM_NAME(peQueryCue)
    QM_NAME(peCued)
    QM_NAME(peQueryOpen)
    QM_NAME(peOpened)
    QM_NAME(peOpening)
    QM_NAME(peQueryClose)
    QM_NAME(peClosed)
    QM_NAME(peClosing)
    QM_NAME(peSweeperStartReached)
    QM_NAME(peIntroStartReached)
    QM_NAME(peIntroEndReached)
    QM_NAME(peHookStartReached)
    QM_NAME(peHookEndReached)
    QM_NAME(peLoopRestart)
    QM_NAME(peLoopCompleted)
    QM_NAME(peExtroReached)
    QM_NAME(peAudioEndReached)
    QM_NAME(peAudioLevelChanged)
    QM_NAME(peVolumeChanged)
    QM_NAME(peVolumeChangeStartNotify)
    QM_NAME(peVolumeChangeNotify)
    QM_NAME(peVolumeChangeEndNotify)
    QM_NAME(peFadingOut)
    QM_NAME(pePositionChanged)
    QM_NAME(pePlaySpeedChanged)
    QM_NAME(peTimeStretchRationChanged)
    QM_NAME(peLinked)
    QM_NAME(peLinkCleared)
    QM_NAME(peLinkQueryPlay)
    QM_NAME(peLinkPlayed)
    QM_NAME(peReserved)
    QM_NAME(peReservationCleared)
    QM_NAME(peSetPlayHookMode)
    QM_NAME(peClearPlayHookMode)
    QM_NAME(peSetPreviewMode)
    QM_NAME(peClearPreviewMode)
    QM_NAME(pePlayerListCleared)
    QM_NAME(pePlayerListItemAdded)
    QM_NAME(pePlayerListItemRemoved)
    QM_NAME(pePlayerListCurrentItemChanged)
    QM_NAME(pePlayerListItemFinished)
    QM_NAME(pePlayerListCurrentItemChanging)
  }
  return "";
}

#undef QM_NAME

}  // namespace qm
