#include "kits/sound/engine/AudioEngine.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>

#include "kits/sound/devices/Input.h"
#include "kits/sound/engine/Device.h"
#include "kits/sound/engine/EnginePlayer.h"
#include "kits/sound/engine/Mixer.h"
#include "kits/sound/engine/SourceReader.h"
#include "kits/sound/record/EngineRecorder.h"
#include "kits/sound/record/RecordingFeed.h"

namespace qm {

namespace {
constexpr std::int32_t kAddedType = 2;       // device type of outputs that the host added
constexpr std::int32_t kAddedNumbers = 100;  // what settings add to their numbers
}  // namespace

std::shared_ptr<AudioEngine> AudioEngine::Create(SoundHardware hardware, double advanceSeconds) {
  return std::shared_ptr<AudioEngine>(new AudioEngine(std::move(hardware), advanceSeconds));
}

AudioEngine::AudioEngine(SoundHardware hardware, double advanceSeconds)
    : m_hardware(std::move(hardware)),
      m_advanceSeconds(advanceSeconds),
      m_readers(std::make_unique<ReaderPool>()),
      m_wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

AudioEngine::~AudioEngine() {
  // Devices first: their threads render voices and write to the descriptor.
  m_pumped.clear();
  m_hardwareOutputs.clear();
  m_addedOutputs.clear();
  if (m_wake >= 0) close(m_wake);
}

std::vector<SoundDevice> AudioEngine::Outputs() const {
  return m_hardware.list ? m_hardware.list->Outputs() : std::vector<SoundDevice>{};
}

std::vector<SoundDevice> AudioEngine::Inputs() const {
  return m_hardware.list ? m_hardware.list->Inputs() : std::vector<SoundDevice>{};
}

std::unique_ptr<ctlVellanPlayer> AudioEngine::CreatePlayer() {
  return std::make_unique<EnginePlayer>(shared_from_this());
}

ReaderPool& AudioEngine::Readers() {
  return *m_readers;
}

std::int32_t AudioEngine::AddOutput(std::unique_ptr<Device> device) {
  Take(*device);
  m_addedOutputs.push_back(std::move(device));
  return kAddedNumbers + static_cast<std::int32_t>(m_addedOutputs.size());
}

void AudioEngine::Take(Device& device) {
  device.onPending = PendingHook();
  m_pumped.push_back(&device);
}

std::function<void()> AudioEngine::PendingHook() const {
  return [wake = m_wake] {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(wake, &one, sizeof one);
  };
}

std::shared_ptr<RecordingControl> AudioEngine::CreateRecorder() {
  auto recorder = std::make_shared<EngineRecorder>(shared_from_this());
  std::erase_if(m_recorders, [](const auto& held) { return held.expired(); });
  m_recorders.push_back(recorder);
  return recorder;
}

std::int32_t AudioEngine::AddInput(FeedMaker maker) {
  m_addedInputs.push_back(std::move(maker));
  return kAddedNumbers + static_cast<std::int32_t>(m_addedInputs.size());
}

std::int32_t AudioEngine::AddInputFile(const std::string& path) {
  return AddInput([path] { return MakeFileFeed(path); });
}

std::unique_ptr<RecordingFeed> AudioEngine::MakeFeed(std::int32_t number, std::string& errorText) const {
  if (number > kAddedNumbers) {
    const auto index = static_cast<std::size_t>(number - kAddedNumbers - 1);
    if (index < m_addedInputs.size()) return m_addedInputs[index]();
    errorText = "there is no input number " + std::to_string(number);
    return nullptr;
  }
  std::unique_ptr<Input> input;
  if (m_hardware.makeInput) input = m_hardware.makeInput(std::max(0, number), errorText);
  if (input) return MakeLiveFeed(std::move(input));
  if (errorText.empty()) errorText = "there is no sound device";
  return nullptr;
}

void AudioEngine::Initialise() {
  if (!m_hardware.list || !m_addedOutputs.empty()) return;
  m_hardware.list->Outputs();
}

Device* AudioEngine::FindDevice(std::int32_t type, std::int32_t number, std::string& errorText) {
  if (type != kAddedType) return FindHardware(std::max(0, number), errorText);
  if (number >= 1 && number <= static_cast<std::int32_t>(m_addedOutputs.size()))
    return m_addedOutputs[static_cast<std::size_t>(number - 1)].get();
  errorText = "there is no output number " + std::to_string(kAddedNumbers + number);
  return nullptr;
}

Device* AudioEngine::FindHardware(std::int32_t number, std::string& errorText) {
  const auto open = std::find_if(m_hardwareOutputs.begin(), m_hardwareOutputs.end(),
                                 [&](const Output& output) { return output.number == number; });
  if (open != m_hardwareOutputs.end()) return open->device.get();
  std::unique_ptr<Device> device;
  if (m_hardware.makeOutput) device = m_hardware.makeOutput(number, m_advanceSeconds, errorText);
  if (!device) {
    if (errorText.empty()) errorText = "there is no sound device";
    return nullptr;
  }
  Take(*device);
  m_hardwareOutputs.push_back({number, std::move(device)});
  return m_hardwareOutputs.back().device.get();
}

int AudioEngine::WaitDescriptor() const {
  return m_wake;
}

bool AudioEngine::Pump() {
  if (m_pumping) return false;
  m_pumping = true;
  std::uint64_t told = 0;
  while (read(m_wake, &told, sizeof told) > 0) {
  }
  bool any = false;
  // A listener may add a device: indices stay good where iterators do not.
  for (std::size_t i = 0; i < m_pumped.size(); ++i) any = PumpDevice(*m_pumped[i]) || any;
  any = PumpRecorders() || any;
  TraceMisses();
  m_pumping = false;
  return any;
}

// A listener may make a recorder, or let one go.
bool AudioEngine::PumpRecorders() {
  bool any = false;
  for (std::size_t i = 0; i < m_recorders.size(); ++i)
    if (const auto recorder = m_recorders[i].lock()) any = recorder->Pump() || any;
  return any;
}

void AudioEngine::TraceMisses() {
  const Misses now = CountMisses();
  if (now == m_traced) return;
  m_traced = now;
  if (onTrace)
    onTrace("Audio Engine missed deadlines so far: late answers=" + std::to_string(now.lateAnswers) +
            ", voices not ready=" + std::to_string(now.voicesNotReady) +
            ", dry callbacks=" + std::to_string(now.dryCallbacks));
}

bool AudioEngine::PumpDevice(Device& device) {
  if (!device.GetMixer()) return false;
  m_current = &device;
  return device.Pump();
}

Mixer* AudioEngine::CurrentMixer() const {
  if (m_current && m_current->GetMixer()) return m_current->GetMixer();
  for (Device* device : m_pumped)
    if (device->GetMixer()) return device->GetMixer();
  return nullptr;
}

std::int64_t AudioEngine::Frame() const {
  const Mixer* mixer = CurrentMixer();
  return mixer ? mixer->Frame() : 0;
}

std::int32_t AudioEngine::FrameRate() const {
  const Mixer* mixer = CurrentMixer();
  return mixer ? mixer->Format().sampleRate : 0;
}

AudioEngine::Misses AudioEngine::CountMisses() const {
  Misses sum;
  for (Device* device : m_pumped) {
    if (!device->GetMixer()) continue;
    EngineCounters& counters = device->GetMixer()->Counters();
    sum.lateAnswers += counters.lateAnswers.load(std::memory_order_relaxed);
    sum.voicesNotReady += counters.voicesNotReady.load(std::memory_order_relaxed);
    sum.dryCallbacks += counters.dryCallbacks.load(std::memory_order_relaxed);
  }
  return sum;
}

}  // namespace qm
