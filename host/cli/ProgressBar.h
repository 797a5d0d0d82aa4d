#pragma once
#include <chrono>
#include <string>

#include "cli/PlayObserver.h"

namespace qm::cli {

class PlayRun;

// A bar on standard error while the work takes long, taken away before anything else is written.
class ProgressBar : public PlayObserver {
 public:
  explicit ProgressBar(const PlayRun& run) : m_run(run) {}
  ~ProgressBar() override { Clear(); }

  void Hear(const HeardEvent& heard) override;
  void Clear();

 private:
  using Clock = std::chrono::steady_clock;

  const PlayRun& m_run;
  Clock::time_point m_next = Clock::now() + std::chrono::seconds(1);  // short work needs no bar
  bool m_shown = false;
};

// "[#####-----]  50% of 2/3 TITLE"
std::string ProgressText(double percent, std::size_t item, std::size_t items, const std::string& title);

}  // namespace qm::cli
