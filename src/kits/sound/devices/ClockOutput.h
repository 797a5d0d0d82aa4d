#pragma once
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "kits/sound/devices/Output.h"

namespace qm {

// A clock in the place of a sound device: pulls one period at a time, at the pace of the steady clock, and
// drops it.
class ClockOutput : public Output {
 public:
  explicit ClockOutput(std::string name = "null") : m_name(std::move(name)) {}
  ~ClockOutput() override { Close(eocDrop); }

  const std::string& Name() const override { return m_name; }
  bool Open(const OutputShape& wanted, enOutputMatch match, std::string& errorText) override;
  const OutputShape& Shape() const override { return m_shape; }
  bool Start(FrameSource& source, std::string& errorText) override;
  void Close(enOutputClose how) override;
  bool Alive() override { return m_thread.joinable(); }
  std::string FaultText() const override { return {}; }

 private:
  void Run(std::stop_token stop, FrameSource& source);

  const std::string m_name;
  OutputShape m_shape;
  std::vector<float> m_period;
  std::mutex m_mutex;
  std::condition_variable_any m_wake;
  std::jthread m_thread;
};

}  // namespace qm
