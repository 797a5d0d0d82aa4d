#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "kits/sound/engine/Mixer.h"

namespace qm {

class Input;
class RecordingChain;
class RecordingNotes;

// Where the sound of one recording comes from. Host thread. Open, then Start, then Stop.
class RecordingFeed {
 public:
  virtual ~RecordingFeed() = default;

  // What it will give; the wanted rate is a proposal. False with one line in errorText.
  virtual bool Open(std::int32_t sampleRate, std::string& errorText) = 0;
  virtual OutputFormat Format() const = 0;
  // From now on sound goes into the chain. Both outlive Stop. False as for Open.
  virtual bool Start(RecordingChain& chain, RecordingNotes& notes, std::string& errorText) = 0;
  // Everything taken until now has gone through the chain. Idempotent.
  virtual void Stop() = 0;
  // True when time has moved by this call.
  virtual bool Pump() = 0;
  virtual std::uint64_t Captured() const = 0;  // frames
  virtual std::uint64_t Lost() const = 0;      // frames
  // How long the input itself lasts, below 0 when nobody knows.
  virtual double Seconds() const = 0;
};

// An audio file in the place of a device: read as fast as it is pumped, without threads.
std::unique_ptr<RecordingFeed> MakeFileFeed(std::string path);

// An input as it comes: from its own thread into a ring, from there to the chain on a thread that may wait
// for the disk. A device that is lost is told and tried again until it is back.
std::unique_ptr<RecordingFeed> MakeLiveFeed(std::unique_ptr<Input> input);

}  // namespace qm
