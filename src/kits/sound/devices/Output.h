#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

#include "kits/sound/engine/Mixer.h"

namespace qm {

// What an output plays.
class FrameSource {
 public:
  // Fills `count` interleaved frames. Audio thread: it neither allocates, locks, waits nor calls the system.
  virtual void Pull(float* interleaved, std::size_t count) noexcept = 0;

 protected:
  ~FrameSource() = default;
};

// How an output asks for its sound: rate, channels, and the frames it usually pulls at once.
struct OutputShape {
  OutputFormat format;
  std::size_t periodFrames = 512;
};

enum enOutputMatch : std::int32_t {
  eomNearest,  // the wanted shape is a proposal: the device's own rate comes first
  eomExact,    // rate and channels must be the wanted ones
};

enum enOutputClose : std::int32_t {
  eocHearOut,  // what the device has taken is heard first
  eocDrop,     // at once: the device is lost
};

// One way out for sound: a device of a sound server, or a clock that takes its place. One control thread at a
// time.
//
// Open, then Start, then Close; all of it may be repeated.
class Output {
 public:
  virtual ~Output() = default;

  virtual const std::string& Name() const = 0;

  // Reserves the device. False with one line in errorText when it cannot be had so; it is closed then.
  virtual bool Open(const OutputShape& wanted, enOutputMatch match, std::string& errorText) = 0;

  // Between Open and Close: what the source will be asked for.
  virtual const OutputShape& Shape() const = 0;

  // Begins to pull from the source, on a thread of the output's own, until Close. False as for Open.
  virtual bool Start(FrameSource& source, std::string& errorText) = 0;

  // On return the source is not touched any more, whatever state the device is in.
  virtual void Close(enOutputClose how) = 0;

  // Started, and no failure has been noticed.
  virtual bool Alive() = 0;

  // The failure noticed, one line; empty while there is none.
  virtual std::string FaultText() const = 0;
};

}  // namespace qm
