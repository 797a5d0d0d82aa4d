#pragma once
#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "kits/sound/devices/Output.h"

namespace qm {

// Numbers of the errors that a device reports.
enum enDeviceFault : std::int32_t {
  edfAbsent = 2001,  // not there at the start
  edfLost = 2002,    // gone while in use
};

// Has a source pulled without end: by an output for as long as that is there, by a stand-in while it is not.
//
// One control thread at a time. It has no thread and no clock of its own: somebody calls Check every
// kCheckInterval or so and says what time it is.
class OutputKeeper {
 public:
  using Time = std::chrono::steady_clock::time_point;
  using Duration = std::chrono::steady_clock::duration;
  static constexpr Duration kCheckInterval = std::chrono::milliseconds(100);
  static constexpr Duration kSilenceLimit = std::chrono::seconds(1);
  // A server's idle device may first play out what it had prepared, seconds of silence.
  static constexpr Duration kFirstSilenceLimit = std::chrono::seconds(4);
  static constexpr Duration kRetryInterval = std::chrono::seconds(1);

  // Called on the thread that calls Start or Check.
  struct Hooks {
    std::function<void(std::int32_t fault, const std::string& text)> lost;  // enDeviceFault
    std::function<void(const std::string& text)> returned;
  };

  OutputKeeper(std::unique_ptr<Output> output, std::unique_ptr<Output> standIn, Hooks hooks);
  ~OutputKeeper();

  const std::string& Name() const { return m_output->Name(); }

  // Settles the shape: the output's, or what it will probably have when it is not there. False when not even
  // the stand-in can be had.
  bool Open(const OutputShape& wanted, std::string& errorText);
  const OutputShape& Shape() const { return m_shape; }
  // The source outlives the keeper, or Close. False when neither output nor stand-in starts.
  bool Start(FrameSource& source, Time now, std::string& errorText);
  void Check(Time now);
  void Close();

  // The stand-in is at work.
  bool Lost() const { return m_lost; }

 private:
  // Counts what is pulled, which is how a device that has fallen asleep is noticed.
  struct Tap final : FrameSource {
    void Pull(float* interleaved, std::size_t count) noexcept override {
      source->Pull(interleaved, count);
      pulled.fetch_add(count, std::memory_order_relaxed);
    }
    FrameSource* source = nullptr;
    std::atomic<std::uint64_t> pulled{0};
  };

  bool StartStandIn(std::string& errorText);
  void Watch(Time now);
  void Lose(std::int32_t fault, const std::string& text, Time now);
  void TryAgain(Time now);
  void BeginWatch(Time now);

  const std::unique_ptr<Output> m_output;
  const std::unique_ptr<Output> m_standIn;
  const Hooks m_hooks;
  OutputShape m_shape;
  Tap m_tap;
  bool m_opened = false;
  bool m_lost = false;
  std::string m_absentText;
  Time m_lastCheck{};
  Time m_nextTry{};
  Duration m_silence{};
  std::uint64_t m_pulledAtStart = 0;
  std::uint64_t m_pulledBefore = 0;
};

}  // namespace qm
