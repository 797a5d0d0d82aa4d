#include "cli/LongWork.h"

#include <signal.h>
#include <unistd.h>

#include <cstdio>

#include "cli/ProgressBar.h"
#include "cli/StopSignals.h"

namespace qm::cli {

namespace {
constexpr auto kInterval = std::chrono::milliseconds(100);
}

LongWork::LongWork(const StopSignals& signals, std::size_t files)
    : m_signals(signals), m_files(files), m_visible(isatty(STDERR_FILENO) == 1) {}

void LongWork::Next(std::size_t number, std::string title) {
  m_number = number;
  m_title = std::move(title);
}

bool LongWork::GoesOn() {
  const int number = m_signals.Take();
  if (number == SIGTSTP) {
    Clear();
    raise(SIGSTOP);
  } else if (number != 0) {
    m_endedBy = number;
  }
  return m_endedBy == 0;
}

void LongWork::Show(double percent) {
  if (!m_visible || Clock::now() < m_next) return;
  m_next = Clock::now() + kInterval;
  m_shown = true;
  std::fprintf(stderr, "\r%s\x1b[K", ProgressText(percent, m_number, m_files, m_title).c_str());
  std::fflush(stderr);
}

void LongWork::Clear() {
  if (!m_shown) return;
  m_shown = false;
  std::fputs("\r\x1b[K", stderr);
  std::fflush(stderr);
}

}  // namespace qm::cli
