#pragma once
#include <atomic>
#include <memory>

#include "kits/sound/devices/Input.h"

namespace qm::test {

// What a test and its input share: the test is the device.
struct PushedDevice {
  std::atomic<bool> alive{true}, present{true};
  std::atomic<int> starts{0};
  std::atomic<FrameTaker*> taker{nullptr};
};

// An input whose sound the test pushes.
class PushedInput : public Input {
 public:
  PushedInput(std::shared_ptr<PushedDevice> device, const OutputFormat& format)
      : m_device(std::move(device)), m_shape{.format = format} {}
  const std::string& Name() const override { return m_name; }
  bool Open(const OutputShape&, enOutputMatch, std::string& errorText) override {
    if (!m_device->present) errorText = "pushed: no such sound device";
    return m_device->present;
  }
  const OutputShape& Shape() const override { return m_shape; }
  bool Start(FrameTaker& taker, std::string&) override {
    m_device->alive = true;
    m_device->taker = &taker;
    ++m_device->starts;
    return true;
  }
  void Close() override { m_device->taker = nullptr; }
  bool Alive() override { return m_device->alive; }
  std::string FaultText() const override { return "pushed: gone"; }

 private:
  const std::shared_ptr<PushedDevice> m_device;
  const OutputShape m_shape;
  const std::string m_name = "pushed";
};

}  // namespace qm::test
