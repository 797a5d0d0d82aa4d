#pragma once
#include <chrono>
#include <string>
#include <vector>

#include "cli/PlainView.h"

namespace qm {
class AudioEngine;
}

namespace qm::cli {

class Terminal;

// One block of a terminal, redrawn in place, that shows the run as it is; above it, what has happened.
class LiveView : public PlayObserver {
 public:
  LiveView(const PlayRun& run, const AudioEngine& engine, const Terminal& terminal);

  void Hear(const HeardEvent& heard) override;
  // Draws unless it has only just done so.
  void Refresh();
  // A failure, above the block.
  void Tell(const std::string& text);
  // Takes the block away.
  void Erase();
  // Forgets where the block stands: the next one begins on a fresh line.
  void Leave() { m_widths.clear(); }

 private:
  using Clock = std::chrono::steady_clock;

  void Draw();
  std::string ToBlockStart(std::size_t width) const;

  PlayTeller m_teller;
  const PlayRun& m_run;
  const AudioEngine& m_engine;
  const Terminal& m_terminal;
  const bool m_unicode;
  std::int16_t m_left = 0, m_right = 0;
  bool m_fading = false;
  Clock::time_point m_next{};
  std::vector<std::size_t> m_widths;  // of the block's lines as they stand, in cells
};

}  // namespace qm::cli
