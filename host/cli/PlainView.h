#pragma once
#include "cli/PlayObserver.h"

namespace qm::cli {

class PlayRun;

// A line on standard output for each main event of the transport: time of the run, what happened, where in
// the item.
class PlainView : public PlayObserver {
 public:
  explicit PlainView(const PlayRun& run) : m_run(run) {}
  void Hear(const HeardEvent& heard) override;

 private:
  const PlayRun& m_run;
  bool m_open = false;
};

// What people call an event; "" for one that is not among the main ones. Volume changes other than fades are
// not.
const char* EventWords(const HeardEvent& heard);

}  // namespace qm::cli
