#include "cli/ProgressBar.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>

#include "cli/PlainView.h"
#include "cli/PlayRun.h"
#include "cli/TerminalText.h"
#include "contract/PlayerVocabulary.h"
#include "item/cHDItem.h"
#include "playback/cPlayer.h"

namespace qm::cli {

namespace {
constexpr std::size_t kCells = 40;
constexpr std::size_t kTitleWidth = 24;
constexpr auto kInterval = std::chrono::milliseconds(100);
}  // namespace

std::string ProgressText(double percent, std::size_t item, std::size_t items, const std::string& title) {
  const double part = std::clamp(percent / 100, 0.0, 1.0);
  const auto done = static_cast<std::size_t>(part * kCells);
  return fmt::format("[{}{}] {:3.0f}% of {}/{} {}", std::string(done, '#'), std::string(kCells - done, '-'),
                     part * 100, item, items, FitText(title, kTitleWidth));
}

void ProgressBar::Hear(const HeardEvent& heard) {
  if (*EventWords(heard)) return Clear();
  const cPlayer& player = m_run.Player();
  if (heard.event != pePositionChanged || Clock::now() < m_next) return;
  const auto item = m_run.Item();
  if (!item) return;
  m_next = Clock::now() + kInterval;
  m_shown = true;
  const std::string text = ProgressText(static_cast<double>(player.TotalPercentagePlayed()),
                                        m_run.ItemNumber(), m_run.ItemCount(), item->ItemTitle());
  std::fprintf(stderr, "\r%s\x1b[K", text.c_str());
  std::fflush(stderr);
}

void ProgressBar::Clear() {
  if (!m_shown) return;
  m_shown = false;
  std::fputs("\r\x1b[K", stderr);
  std::fflush(stderr);
}

}  // namespace qm::cli
