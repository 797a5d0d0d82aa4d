#pragma once
#include <string>

#include "cli/PlayObserver.h"

namespace qm::cli {

class PlayRun;

// Tells a run line by line: time of the run, what happened, where in the item.
class PlayTeller {
 public:
  explicit PlayTeller(const PlayRun& run) : m_run(run) {}
  // Without the line's end; "" for an event that is not among the main ones of the transport.
  std::string Line(const HeardEvent& heard);

 private:
  const PlayRun& m_run;
  bool m_open = false;
};

// The lines on standard output.
class PlainView : public PlayObserver {
 public:
  explicit PlainView(const PlayRun& run) : m_teller(run) {}
  void Hear(const HeardEvent& heard) override;

 private:
  PlayTeller m_teller;
};

// What people call an event; "" for one that is not among the main ones. Volume changes other than fades are
// not.
const char* EventWords(const HeardEvent& heard);

}  // namespace qm::cli
