#pragma once
#include <cstdint>

// The words in which players speak to their owners.
namespace qm {

enum enPlayerStatus : std::int32_t {
  psLocked = 1,
  psPlaying = 5,
  psPaused = 9,
  psCued = 11,
  psOpen = 14,
  psClosed = 18,
};

enum enPlayerSection : std::int32_t {
  epsEmpty = 0,
  epsPreIntro = 5,
  epsDuringIntro = 10,
  epsMain = 15,
  epsExtro = 20,
};

enum enPlayerVolumeChange : std::int16_t {
  pvcSweepStart = 1,
  pvcSweepEnd = 2,
  pvcFadeOut = 3,
  pvcEarlyFade = 4,
  pvcLogDuckStart = 10,
  pvcLogDuckEnd = 11,
  pvcLogEndDuckStart = 12,
  pvcLogEndDuckEnd = 13,
};

enum enChangeHDItemParam : std::int32_t {
  hipAudioStart = 1,
  hipIntroStart = 2,
  hipIntroEnd = 3,
  hipHookStart = 4,
  hipHookEnd = 5,
  hipExtro = 6,
  hipAudioEnd = 7,
  hipLoopStart = 8,
  hipLoopEnd = 9,
  hipLoopNumberLoops = 10,
  hipLoopPlayToEnd = 11,
};

// sValue1 and sValue2 of an event are single-precision; what they hold is said behind each where it is not 0.
// In a query a listener refuses the step by writing a non-zero Cancel.
enum enPlayerEvent : std::int32_t {
  peError = 255,  // error number; strValue1: error text
  peLocked = 1,
  peUnLocked = 2,
  peQueryPlay = 4,   // 0, Cancel
  pePlaying = 5,     // position before starting, -1 if that was exactly 0
  peQuerySeek = 6,   // target seconds, Cancel
  peQueryPause = 8,  // 0, Cancel
  pePaused = 9,
  peQueryCue = 10,  // 0, Cancel
  peCued = 11,
  peQueryOpen = 13,  // 0, Cancel
  peOpened = 14,
  peOpening = 15,
  peQueryClose = 17,           // CloseReference by reference, Cancel
  peClosed = 18,               // 0, CloseReference
  peClosing = 19,              // 0, CloseReference
  peSweeperStartReached = 21,  // mark tag; so with the other marks
  peIntroStartReached = 31,
  peIntroEndReached = 32,
  peHookStartReached = 41,
  peHookEndReached = 42,
  peLoopRestart = 51,
  peLoopCompleted = 52,
  peExtroReached = 61,
  peAudioEndReached = 91,
  peAudioLevelChanged = 101,        // left level, right level
  peVolumeChanged = 102,            // volume
  peVolumeChangeStartNotify = 106,  // reference
  peVolumeChangeNotify = 107,       // reference
  peVolumeChangeEndNotify = 108,    // reference
  peFadingOut = 109,
  pePositionChanged = 111,           // seconds played, seconds remaining
  pePlaySpeedChanged = 116,          // new speed
  peTimeStretchRationChanged = 117,  // new ratio
  peLinked = 121,                    // 1 if the linked player plays first, else 2
  peLinkCleared = 122,
  peLinkQueryPlay = 123,       // linked player's reference, Cancel
  peLinkPlayed = 124,          // linked player's reference
  peReserved = 131,            // reservation reference
  peReservationCleared = 132,  // previous reference
  peSetPlayHookMode = 141,
  peClearPlayHookMode = 142,
  peSetPreviewMode = 151,
  peClearPreviewMode = 152,
  pePlayerListCleared = 221,
  pePlayerListItemAdded = 222,
  pePlayerListItemRemoved = 223,
  pePlayerListCurrentItemChanged = 224,
  pePlayerListItemFinished = 225,
  pePlayerListCurrentItemChanging = 226,
};

// "peCued" and so on; "" for a number that is no player event.
const char* PlayerEventName(std::int32_t event);

}  // namespace qm
