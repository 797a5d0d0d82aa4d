#pragma once
#include <chrono>
#include <string>
#include <vector>

#include "cli/DeskPicture.h"
#include "cli/LiveScreen.h"

namespace qm::cli {

class Desk;
class Terminal;

// The desk on a whole screen. Only what has changed is written.
class DeskView : public LiveScreen {
 public:
  DeskView(Desk& desk, const Terminal& terminal);

  void Hear(const HeardEvent&) override {}
  void Refresh() override;
  void Tell(const std::string& text) override;
  void Press(const Key& key) override;
  void Erase() override {}  // the terminal brings back what was there before
  void Leave() override { m_lines.clear(); }

 private:
  using Clock = std::chrono::steady_clock;

  void Draw();

  Desk& m_desk;
  const Terminal& m_terminal;
  const bool m_unicode;
  Clock::time_point m_next{};
  std::size_t m_width = 0, m_height = 0;  // that the lines were drawn for
  std::vector<DeskLine> m_lines;          // as they stand
};

// Does what the key stands for.
void PressKey(const Key& key, Desk& desk);

}  // namespace qm::cli
