#pragma once
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "kits/sound/devices/Output.h"
#include "kits/sound/engine/Device.h"

namespace qm {

class OutputKeeper;
class RingFeeder;

// A device whose time is the real one: an output pulls sound from a ring, a render thread keeps the ring
// filled, and a keeper thread sees to it that something pulls. Host thread only.
class LiveDevice : public Device {
 public:
  // `advanceSeconds`: how far rendering is ahead of what the output takes, which is the time that a host has
  // for its answers. `standIn` takes the output's place while that is lost; null means a clock.
  LiveDevice(std::string name, std::unique_ptr<Output> output, double advanceSeconds = 0.05,
             std::unique_ptr<Output> standIn = nullptr);
  // What was rendered is heard out.
  ~LiveDevice() override;

  const std::string& Name() const override { return m_name; }
  // An output that is not there is no failure: time runs on a clock, and the first player to play hears of
  // it.
  bool Start(std::int32_t sampleRate, std::string& errorText) override;
  Mixer* GetMixer() override;
  bool Pump() override;
  bool Offline() const override { return false; }

  // The device is lost or back, one line for people. Host thread, within Pump.
  std::function<void(const std::string& line)> onStateChange;

 private:
  void Render(std::stop_token stop);
  void Keep(std::stop_token stop);
  void ChangeState(const std::string& line, std::int32_t fault);
  void TellFault();
  void TellState();
  void HearOut();

  const std::string m_name;
  const double m_advanceSeconds;
  const std::unique_ptr<OutputKeeper> m_keeper;
  std::unique_ptr<RingFeeder> m_feeder;
  std::mutex m_stateMutex;               // for the next three
  std::deque<std::string> m_stateLines;  // not yet told to the host
  std::int32_t m_untoldFault = 0;        // waits for a player to be told
  std::string m_untoldText;
  std::mutex m_sleepMutex;
  std::condition_variable_any m_wake;
  std::jthread m_renderThread;
  std::jthread m_keeperThread;
};

// A device that plays through `output`.
std::unique_ptr<Device> MakeLiveDevice(std::string name, std::unique_ptr<Output> output,
                                       double advanceSeconds = 0.05);

}  // namespace qm
