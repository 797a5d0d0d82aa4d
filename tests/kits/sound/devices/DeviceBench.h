#pragma once
#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

#include "kits/sound/devices/Output.h"
#include "kits/sound/devices/PullGate.h"
#include "kits/sound/devices/RingFeeder.h"
#include "kits/sound/engine/Device.h"
#include "kits/sound/engine/EngineBench.h"

namespace qm::test {

// Tries again and again until it is so; false when it never came true, however slow the machine.
inline bool WaitFor(const std::function<bool()>& condition,
                    std::chrono::seconds limit = std::chrono::seconds(60)) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

// What a test decides about an output, and what it sees of it. Outlives the output.
struct OutputScript {
  std::atomic<bool> opens{true}, starts{true}, alive{true}, running{false};
  OutputShape shape{.format = {.sampleRate = 48000, .channels = 2}, .periodFrames = 512};
  std::vector<std::string> log;  // open, start, hear out, drop
  PullGate gate;

  void Pull(std::size_t frames) {
    std::vector<float> buffer(frames * 2);
    gate.Pull(buffer.data(), frames, 2);
  }
};

// An output that does as its script says and pulls when the test says so.
class ScriptedOutput : public Output {
 public:
  ScriptedOutput(OutputScript& script, std::string name) : m_script(script), m_name(std::move(name)) {}

  const std::string& Name() const override { return m_name; }
  bool Open(const OutputShape& wanted, enOutputMatch match, std::string& errorText) override {
    m_script.log.push_back("open");
    const bool fits = match == eomNearest || wanted.format.sampleRate == m_script.shape.format.sampleRate;
    if (!m_script.opens || !fits) errorText = m_name + ": not there";
    return m_script.opens && fits;
  }
  const OutputShape& Shape() const override { return m_script.shape; }
  bool Start(FrameSource& source, std::string& errorText) override {
    m_script.log.push_back("start");
    if (!m_script.starts) errorText = m_name + ": does not start";
    if (m_script.starts) m_script.gate.Open(source);
    m_script.running = m_script.starts.load();
    return m_script.running;
  }
  void Close(enOutputClose how) override {
    m_script.log.push_back(how == eocDrop ? "drop" : "hear out");
    m_script.gate.Shut();
    m_script.running = false;
  }
  bool Alive() override { return m_script.alive; }
  std::string FaultText() const override { return m_script.alive ? "" : m_name + ": unplugged"; }

 private:
  OutputScript& m_script;
  const std::string m_name;
};

// A live device without threads: the test renders, pumps and pulls, in whatever order it likes.
class HandDevice : public Device {
 public:
  HandDevice() { feeder.RenderAhead(); }
  const std::string& Name() const override { return m_name; }
  bool Start(std::int32_t, std::string&) override { return true; }
  Mixer* GetMixer() override { return &feeder.GetMixer(); }
  bool Pump() override { return feeder.Pump(); }
  bool Offline() const override { return false; }

  void Pull(std::size_t frames) {
    const std::size_t at = heard.size();
    heard.resize(at + frames * 2);
    feeder.Pull(heard.data() + at, frames);
  }

  RingFeeder feeder{{.format = {.sampleRate = 48000, .channels = 2}, .periodFrames = 512}, 0.05};
  std::vector<float> heard;

 private:
  const std::string m_name = "by hand";
};

// An engine with one added device, and files for it at 48000 Hz.
struct DeviceBench : EngineBench {
  using EngineBench::EngineBench;
  std::string Wav(const std::string& name, const std::vector<std::int16_t>& samples) {
    return EngineBench::Wav(name, samples, 48000);
  }
};

// Noise without a zero in it, so that a hole in what is heard cannot hide. Interleaved stereo.
inline std::vector<std::int16_t> Unbroken(std::size_t frames, double amplitude = 0.9,
                                          std::uint32_t seed = 1) {
  std::vector<std::int16_t> samples = Noise16(frames * 2, amplitude, seed);
  for (auto& value : samples)
    if (value == 0) value = 1;
  return samples;
}

inline std::vector<float> AsFloat(const std::vector<std::int16_t>& samples) {
  std::vector<float> result(samples.size());
  for (std::size_t i = 0; i < samples.size(); ++i) result[i] = static_cast<float>(samples[i]) / 32768;
  return result;
}

// The frame of `heard` (interleaved stereo) at which the whole of `part` stands; -1 when nowhere.
inline std::int64_t Find(const std::vector<float>& heard, const std::vector<float>& part) {
  auto at = heard.begin();
  while ((at = std::search(at, heard.end(), part.begin(), part.end())) != heard.end()) {
    if ((at - heard.begin()) % 2 == 0) return (at - heard.begin()) / 2;
    ++at;
  }
  return -1;
}

}  // namespace qm::test
