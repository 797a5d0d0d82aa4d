#pragma once
#include <cstddef>
#include <string>

#include "kits/sound/devices/Output.h"

namespace qm {

enum enInputGap : std::int32_t {
  eigNone,
  eigOverflow,  // the device has lost frames before these
};

// What takes an input's sound.
class FrameTaker {
 public:
  // Interleaved frames. Audio thread: it neither allocates, locks, waits nor calls the system.
  virtual void Push(const float* interleaved, std::size_t count, enInputGap gap) noexcept = 0;

 protected:
  ~FrameTaker() = default;
};

// One way in for sound: a device of a sound server. One control thread at a time. Open, then Start, then
// Close; all of it may be repeated.
class Input {
 public:
  virtual ~Input() = default;

  virtual const std::string& Name() const = 0;

  // Reserves the device. False with one line in errorText when it cannot be had so; it is closed then.
  virtual bool Open(const OutputShape& wanted, enOutputMatch match, std::string& errorText) = 0;

  // Between Open and Close: what the taker will be given.
  virtual const OutputShape& Shape() const = 0;

  // Begins to push into the taker, on a thread of the input's own, until Close. False as for Open.
  virtual bool Start(FrameTaker& taker, std::string& errorText) = 0;

  // On return the taker is not touched any more, whatever state the device is in.
  virtual void Close() = 0;

  // Started, and no failure has been noticed.
  virtual bool Alive() = 0;

  // The failure noticed, one line; empty while there is none.
  virtual std::string FaultText() const = 0;
};

}  // namespace qm
