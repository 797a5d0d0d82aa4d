#pragma once
#include <cstdint>

#include "cli/LongWork.h"

namespace qm {
class cCopyAudioFileNCT;
}

namespace qm::cli {

// Watches a copier: its progress is shown, and a signal that stops the program cancels the copy.
class CopyProgress {
 public:
  CopyProgress(cCopyAudioFileNCT& copier, const StopSignals& signals, std::size_t sources);

  // Source number `number`, from 1, comes next.
  void Next(std::size_t number);
  void Clear() { m_work.Clear(); }
  int EndedBy() const { return m_work.EndedBy(); }  // the signal, 0 for none

 private:
  void Show(std::int16_t percent);

  const cCopyAudioFileNCT& m_copier;
  LongWork m_work;
  std::size_t m_source = 1;
  int m_pass = 0;
};

}  // namespace qm::cli
