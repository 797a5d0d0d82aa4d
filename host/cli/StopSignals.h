#pragma once
#include <signal.h>

namespace qm::cli {

// The signals that end or stop the program, taken as they are asked for instead of at any moment. Made before
// any thread is, so that none of them is hit. A signal that the program was started to ignore stays ignored.
class StopSignals {
 public:
  StopSignals();
  ~StopSignals();
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

  int Descriptor() const { return m_descriptor; }  // readable when Take has something
  // The next signal, 0 when none is waiting.
  int Take() const;

 private:
  sigset_t m_former;
  int m_descriptor = -1;
};

}  // namespace qm::cli
