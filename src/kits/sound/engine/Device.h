#pragma once
#include <cstdint>
#include <functional>
#include <string>

namespace qm {

class Mixer;

// One output: a mixer and what drives it. Host thread, except where a derived class says otherwise.
class Device {
 public:
  virtual ~Device() = default;

  // Called on a thread of the device's when Pump has something to deliver. Set before Start, which hands it
  // to the mixer before rendering begins.
  std::function<void()> onPending;

  virtual const std::string& Name() const = 0;

  // The mixer, made when the device starts; null before. `sampleRate` is the rate of the first file to be
  // played, taken by devices that have none of their own. Idempotent. False, with one line in errorText, when
  // the device cannot be had and can do nothing at all.
  virtual bool Start(std::int32_t sampleRate, std::string& errorText) = 0;
  virtual Mixer* GetMixer() = 0;

  // Delivers what is due and renders on. True when anything was delivered or time has moved by this call.
  virtual bool Pump() = 0;

  // Time moves only when pumped, and audio is read within Pump.
  virtual bool Offline() const = 0;
};

}  // namespace qm
