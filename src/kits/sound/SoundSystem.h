#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace qm {

class ctlVellanPlayer;
class RecordingControl;

// A wave device by the name that settings use, with the formats it takes as bits of the platform's capability
// mask (SuitableFormatBit).
struct SoundDevice {
  std::string name;
  std::uint32_t formats = 0;
};

// Capability bit of a 16-bit format: 11025, 22050 or 44100 Hz, 1 or 2 channels; 0 for any other.
std::uint32_t SuitableFormatBit(std::int32_t sampleRate, std::int32_t channels);

// The lists of sound devices, in the order in which device numbers count them from 1.
class SoundDeviceList {
 public:
  virtual ~SoundDeviceList() = default;
  virtual std::vector<SoundDevice> Outputs() const = 0;
  virtual std::vector<SoundDevice> Inputs() const = 0;
};

// A list with fixed contents.
class FixedSoundDeviceList : public SoundDeviceList {
 public:
  FixedSoundDeviceList(std::vector<SoundDevice> outputs, std::vector<SoundDevice> inputs)
      : m_outputs(std::move(outputs)), m_inputs(std::move(inputs)) {}
  std::vector<SoundDevice> Outputs() const override { return m_outputs; }
  std::vector<SoundDevice> Inputs() const override { return m_inputs; }

 private:
  std::vector<SoundDevice> m_outputs, m_inputs;
};

// Default buffering of a player's file reader, in milliseconds; 0 leaves the choice to the player.
struct StreamingSettings {
  std::int32_t bufferTotal = 0;
  std::int32_t bufferLength = 0;
};

// Makes playback and recording controls and delivers what they have to say. Host thread only.
class SoundSystem : public SoundDeviceList {
 public:
  virtual std::unique_ptr<ctlVellanPlayer> CreatePlayer() = 0;
  // Null where nothing can be recorded.
  virtual std::shared_ptr<RecordingControl> CreateRecorder() { return nullptr; }

  // Delivers every notification that is due and lets sound go on behind each. True when any was delivered or,
  // on an offline device, when time has moved. Called from within a notification it does nothing and returns
  // false.
  virtual bool Pump() = 0;

  // Becomes readable when Pump has something to deliver; -1 when it never does (offline devices alone).
  virtual int WaitDescriptor() const = 0;

  virtual StreamingSettings Streaming() const { return {}; }

  // Where a missed deadline is told, one line, on the host thread from within Pump. The first player sets it
  // to the library's diagnostics unless the host has set its own.
  std::function<void(const std::string& line)> onTrace;

  // Above 0, each file that a player opens is told there as well.
  void SetStreamDebugMode(std::int32_t mode) { m_streamDebugMode = mode; }
  std::int32_t StreamDebugMode() const { return m_streamDebugMode; }

 private:
  std::int32_t m_streamDebugMode = 0;
};

}  // namespace qm
