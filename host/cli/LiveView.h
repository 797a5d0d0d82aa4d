#pragma once
#include <chrono>
#include <string>
#include <vector>

#include "cli/LiveScreen.h"
#include "cli/PlainView.h"
#include "kits/common/Event.h"

namespace qm::cli {

class Terminal;

// One block of a terminal, redrawn in place, that shows the run as it is; above it, what has happened.
class LiveView : public LiveScreen {
 public:
  LiveView(PlayRun& run, const Terminal& terminal);
  ~LiveView() override;

  void Hear(const HeardEvent& heard) override;
  void Refresh() override;
  void Tell(const std::string& text) override;  // above the block
  void Press(const Key& key) override;
  void Erase() override;
  // The next block begins on a fresh line.
  void Leave() override { m_widths.clear(); }

 private:
  using Clock = std::chrono::steady_clock;

  void Draw();
  std::string ToBlockStart(std::size_t width) const;

  PlayTeller m_teller;
  PlayRun& m_run;
  const Terminal& m_terminal;
  const bool m_unicode;
  Event<>::Connection m_levels;
  std::int16_t m_left = 0, m_right = 0;
  bool m_fading = false;
  Clock::time_point m_next{};
  std::vector<std::size_t> m_widths;  // of the block's lines as they stand, in cells
};

}  // namespace qm::cli
