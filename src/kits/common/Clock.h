#pragma once
#include <chrono>
#include <memory>

namespace qm {

// Where the library reads the time of day. Replaceable, so that tests decide what "now" is.
class Clock {
 public:
  virtual ~Clock() = default;
  // Wall-clock time; the library shows it in the local time zone.
  virtual std::chrono::system_clock::time_point Now() const = 0;
};

// The system's clock.
std::shared_ptr<Clock> SystemClock();

// A clock that stands where it is put. For tests and for reproducible runs.
class ManualClock : public Clock {
 public:
  explicit ManualClock(std::chrono::system_clock::time_point now = {}) : m_now(now) {}
  std::chrono::system_clock::time_point Now() const override { return m_now; }
  void Set(std::chrono::system_clock::time_point now) { m_now = now; }
  void Advance(std::chrono::system_clock::duration by) { m_now += by; }

 private:
  std::chrono::system_clock::time_point m_now;
};

}  // namespace qm
