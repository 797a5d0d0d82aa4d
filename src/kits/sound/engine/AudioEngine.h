#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "kits/sound/SoundSystem.h"

namespace qm {

class Device;
class EngineRecorder;
class Input;
class Mixer;
class ReaderPool;
class RecordingFeed;

// How the engine gets at the machine's own sound devices.
struct SoundHardware {
  std::shared_ptr<SoundDeviceList> list;
  // The number-th output of the list (from 1), or the default one for 0; null, with a line in errorText, when
  // there is no such output.
  std::function<std::unique_ptr<Device>(std::int32_t number, double advanceSeconds, std::string& errorText)>
      makeOutput;
  // The same for the inputs.
  std::function<std::unique_ptr<Input>(std::int32_t number, std::string& errorText)> makeInput;
};

// The sound devices of this machine through the sound server.
SoundHardware MachineSound();

// The mixing engine: devices with their mixers, the threads that read ahead, and the controls made over them.
class AudioEngine : public SoundSystem, public std::enable_shared_from_this<AudioEngine> {
 public:
  // `advanceSeconds`: how far sound is rendered ahead of being heard. Always made into a shared pointer.
  static std::shared_ptr<AudioEngine> Create(SoundHardware hardware = MachineSound(),
                                             double advanceSeconds = 0.05);
  ~AudioEngine() override;

  std::vector<SoundDevice> Outputs() const override;
  std::vector<SoundDevice> Inputs() const override;
  std::unique_ptr<ctlVellanPlayer> CreatePlayer() override;
  std::shared_ptr<RecordingControl> CreateRecorder() override;
  bool Pump() override;
  int WaitDescriptor() const override;
  StreamingSettings Streaming() const override { return m_streaming; }
  void SetStreaming(const StreamingSettings& streaming) { m_streaming = streaming; }

  // Adds an output of the host's own (a clock without sound, a file). Returns the device number that settings
  // use for it, from 101 on. The engine owns it.
  std::int32_t AddOutput(std::unique_ptr<Device> device);

  // Adds an input of the host's own, made anew for each recording: an audio file that is read as fast as Pump
  // is called, or anything that gives sound. Returns the device number of recorders for it, from 101 on.
  using FeedMaker = std::function<std::unique_ptr<RecordingFeed>()>;
  std::int32_t AddInput(FeedMaker maker);
  std::int32_t AddInputFile(const std::string& path);

  // Starts what is slow to start. Idempotent.
  void Initialise();

  // The frame of the notification being delivered, else where rendering stands on the device that was
  // delivered last (or started first); and that device's frames a second. 0 before any device has started.
  std::int64_t Frame() const;
  std::int32_t FrameRate() const;

  // Missed deadlines of all devices: late answers, voices not ready, dry callbacks.
  struct Misses {
    std::uint64_t lateAnswers = 0;
    std::uint64_t voicesNotReady = 0;
    std::uint64_t dryCallbacks = 0;
    friend bool operator==(const Misses&, const Misses&) = default;
  };
  Misses CountMisses() const;

  static const char* Name() { return "qmSoundCore mixing engine"; }

  // For the controls.
  Device* FindDevice(std::int32_t type, std::int32_t number, std::string& errorText);
  ReaderPool& Readers();
  std::unique_ptr<RecordingFeed> MakeFeed(std::int32_t number, std::string& errorText) const;
  // Makes WaitDescriptor readable; any thread, for as long as the engine lives.
  std::function<void()> PendingHook() const;
  std::uint64_t NextSerial() { return ++m_serial; }

 private:
  AudioEngine(SoundHardware hardware, double advanceSeconds);
  void Take(Device& device);
  Device* FindHardware(std::int32_t number, std::string& errorText);
  bool PumpDevice(Device& device);
  bool PumpRecorders();
  Mixer* CurrentMixer() const;
  void TraceMisses();

  struct Output {
    std::int32_t number = 0;
    std::unique_ptr<Device> device;
  };

  const SoundHardware m_hardware;
  const double m_advanceSeconds;
  StreamingSettings m_streaming;
  std::unique_ptr<ReaderPool> m_readers;
  std::vector<Output> m_hardwareOutputs;                // opened so far
  std::vector<std::unique_ptr<Device>> m_addedOutputs;  // in the order of their numbers
  std::vector<Device*> m_pumped;                        // all of both
  std::vector<FeedMaker> m_addedInputs;                 // in the order of their numbers
  std::vector<std::weak_ptr<EngineRecorder>> m_recorders;
  Device* m_current = nullptr;  // delivered last
  bool m_pumping = false;
  Misses m_traced;
  std::uint64_t m_serial = 0;
  int m_wake = -1;  // event descriptor
};

}  // namespace qm
