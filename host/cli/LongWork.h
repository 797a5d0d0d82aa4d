#pragma once
#include <chrono>
#include <cstddef>
#include <string>

namespace qm::cli {

class StopSignals;

// Work on files one after another: a bar on standard error while it takes long and somebody is there to see
// it, and the signals that stop the program, which end the work.
class LongWork {
 public:
  LongWork(const StopSignals& signals, std::size_t files);
  ~LongWork() { Clear(); }
  LongWork(const LongWork&) = delete;
  LongWork& operator=(const LongWork&) = delete;

  // File number `number`, from 1, comes next.
  void Next(std::size_t number, std::string title);
  void Show(double percent);
  void Clear();

  // Takes the signals that came in. False once one of them ended the work.
  bool GoesOn();
  int EndedBy() const { return m_endedBy; }  // the signal, 0 for none

 private:
  using Clock = std::chrono::steady_clock;

  const StopSignals& m_signals;
  const std::size_t m_files;
  const bool m_visible;
  std::size_t m_number = 1;
  std::string m_title;
  int m_endedBy = 0;
  Clock::time_point m_next = Clock::now() + std::chrono::seconds(1);  // short work needs no bar
  bool m_shown = false;
};

}  // namespace qm::cli
