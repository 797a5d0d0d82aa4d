#pragma once
#include <cstdint>

// The words in which the recorder speaks to its owner.
namespace qm {

enum enRecorderStatus : std::int32_t {
  rsRecording = 5,
  rsPaused = 9,
  rsWaitingLevel = 11,
  rsClosed = 18,
};

// sValue1 and sValue2 of an event are single-precision; what they hold is said behind each where it is not 0.
enum enRecorderEvent : std::int32_t {
  reError = 255,  // error number; strValue1: error text
  reClosed = 18,  // seconds recorded, 0 when the recording was not kept
  reOpened = 11,  // recording waits for the trigger level
  rePaused = 9,
  reRecording = 5,
  reEndReached = 91,          // the input has ended: seconds recorded
  reAudioLevelChanged = 101,  // left level, right level
  rePositionChanged = 111,    // seconds recorded, seconds remaining
};

enum enRecorderClosePrompt : std::int32_t {
  rcpDiscard = 0,
  rcpSave = 1,
  rcpPrompt = 2,
};

// "rePaused" and so on; "" for a number that is no recorder event.
const char* RecorderEventName(std::int32_t event);

}  // namespace qm
