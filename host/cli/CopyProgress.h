#pragma once
#include <chrono>
#include <cstdint>
#include <string>

namespace qm {
class cCopyAudioFileNCT;
}

namespace qm::cli {

class StopSignals;

// Watches a copier: a bar on standard error while the work takes long and somebody is there to see it, and
// the signals that stop the program, which cancel the copy.
class CopyProgress {
 public:
  CopyProgress(cCopyAudioFileNCT& copier, const StopSignals& signals, std::size_t sources);
  ~CopyProgress() { Clear(); }
  CopyProgress(const CopyProgress&) = delete;
  CopyProgress& operator=(const CopyProgress&) = delete;

  // Source number `number`, from 1, comes next.
  void Next(std::size_t number);
  void Clear();
  int EndedBy() const { return m_endedBy; }  // the signal, 0 for none

 private:
  using Clock = std::chrono::steady_clock;

  void Show(std::int16_t percent);
  void TakeSignal(bool& cancel);

  const cCopyAudioFileNCT& m_copier;
  const StopSignals& m_signals;
  const std::size_t m_sources;
  const bool m_visible;
  std::size_t m_source = 1;
  int m_pass = 0, m_endedBy = 0;
  Clock::time_point m_next = Clock::now() + std::chrono::seconds(1);  // short work needs no bar
  bool m_shown = false;
};

}  // namespace qm::cli
