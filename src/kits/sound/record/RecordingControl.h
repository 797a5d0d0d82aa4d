#pragma once
#include <cstdint>
#include <string>

#include "kits/common/Event.h"
#include "kits/sound/cAudioFormat.h"

namespace qm {

enum enRecordingState : std::int32_t {
  ersWaiting,  // for the trigger level
  ersRecording,
};

enum enRecordingKeep : std::int32_t { erkDiscard, erkKeep };

// Numbers of errors, beside those of enAudioFileError and enDeviceFault.
enum enRecordingError : std::int32_t {
  ereOpen = 2101,      // a recording is open already
  ereOverrun = 2102,   // the disk was too slow: frames are missing
  ereBadInput = 2103,  // the input file cannot be read, or no further
};

// What is to be recorded, and when it begins.
struct RecordingRequest {
  std::string path;
  cAudioFormat format;            // of the file: type, rate, 1 or 2 channels, and what the type needs besides
  std::int16_t triggerLevel = 0;  // 16-bit peak; 0 or less: at once
  float triggerSeconds = 0;       // how long the level must hold; 0: one frame is enough
  float startSeconds = -1;        // sound left out before anything is looked at
};

// The recording control: one file at a time from one input device. Host thread only.
//
// A trigger waits for the first frame that reaches the level. With a time, the sound must reach it again and
// again for so long, with no gap of more than half that time or 100 ms; the recording then begins with the
// first frame of that run, so that nothing of it is cut off.
//
// While recording the file is readable up to the last second at its own path, whatever becomes of the
// program. Closed is raised within Close, an Error of an operation within it; all else from the sound
// system's Pump(), or from Stop for what was still to be told.
class RecordingControl {
 public:
  virtual ~RecordingControl() = default;

  struct Events {
    Event<> Position;                               // 25 times a second of recorded sound
    Event<std::int16_t, std::int16_t> Level;        // left, right: signed 16-bit peaks since the last
    Event<std::int32_t, const std::string&> Error;  // number, text; the recording goes on as far as it can
    Event<std::int32_t> State;  // enRecordingState, at the start and when the trigger opens
    Event<> EndReached;         // the input has no more to give, or the limit is reached
    Event<> Closed;
  } events;

  // Replaces the file and begins. 0, or an error number with an Error event; the old file is left in place
  // where the input cannot be had or the format not be written.
  virtual std::int32_t Open(const RecordingRequest& request) = 0;
  // Ends taking sound; what was taken is in the file.
  virtual bool Stop() = 0;
  // Stops and completes the file, or deletes it. 0, or the error number of a file that could not be written
  // to its end: what could be stays. 0 when nothing is open.
  virtual std::int32_t Close(enRecordingKeep keep) = 0;
  // Exact to the frame that was last taken. False when nothing is open.
  virtual bool Pause() = 0;
  virtual bool Resume() = 0;

  // While waiting for it.
  virtual void SetTriggerLevel(std::int16_t level) = 0;

  virtual float Position() const = 0;  // seconds recorded
  virtual float Length() const = 0;    // seconds that can be in all: of the input file, or of the disk's room
  virtual std::uint64_t FramesLost() const = 0;  // input frames, by overruns

  // The longest that a recording becomes, exact to the frame; EndReached tells when it has. 0 or less: no
  // limit. Taken at Open.
  virtual void SetLimit(double seconds) = 0;

  // Counts the inputs from 1, 0 is the default one, those that the host added count from 101. Taken at Open.
  virtual std::int32_t DeviceNumber() const = 0;
  virtual void SetDeviceNumber(std::int32_t number) = 0;
};

}  // namespace qm
