#include "contract/RecorderVocabulary.h"

namespace qm {

#define QM_NAME(event) \
  case event:          \
    return #event;

const char* RecorderEventName(std::int32_t event) {
  switch (event) {
    QM_NAME(reError)
    QM_NAME(reClosed)
    QM_NAME(reOpened)
    QM_NAME(rePaused)
    QM_NAME(reRecording)
    QM_NAME(reEndReached)
    QM_NAME(reAudioLevelChanged)
    QM_NAME(rePositionChanged)
    default:
      return "";
  }
}

#undef QM_NAME

}  // namespace qm
