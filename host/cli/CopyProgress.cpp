#include "cli/CopyProgress.h"

#include <signal.h>
#include <unistd.h>

#include <cstdio>

#include "audio/cCopyAudioFileNCT.h"
#include "cli/ProgressBar.h"
#include "cli/StopSignals.h"
#include "kits/common/Files.h"

namespace qm::cli {

namespace {
constexpr auto kInterval = std::chrono::milliseconds(100);
}

CopyProgress::CopyProgress(cCopyAudioFileNCT& copier, const StopSignals& signals, std::size_t sources)
    : m_copier(copier), m_signals(signals), m_sources(sources), m_visible(isatty(STDERR_FILENO) == 1) {
  copier.events.CopyStarted.connect([this](bool& cancel) { TakeSignal(cancel); });
  copier.events.CopyProgress.connect([this](std::int16_t percent, bool& cancel) {
    TakeSignal(cancel);
    if (m_visible) Show(percent);
  });
  copier.events.CopyFinished.connect([this] { ++m_pass; });
}

void CopyProgress::Next(std::size_t number) {
  m_source = number;
  m_pass = 0;
}

void CopyProgress::TakeSignal(bool& cancel) {
  const int number = m_signals.Take();
  if (number == SIGTSTP) {
    Clear();
    raise(SIGSTOP);
  } else if (number != 0) {
    m_endedBy = number;
  }
  if (m_endedBy != 0) cancel = true;
}

void CopyProgress::Show(std::int16_t percent) {
  if (Clock::now() < m_next) return;
  m_next = Clock::now() + kInterval;
  m_shown = true;
  const int passes = m_copier.Normalise() ? 2 : 1;
  const std::string text = ProgressText((100.0 * m_pass + percent) / passes, m_source, m_sources,
                                        FileNameOf(m_copier.SourceFilename()));
  std::fprintf(stderr, "\r%s\x1b[K", text.c_str());
  std::fflush(stderr);
}

void CopyProgress::Clear() {
  if (!m_shown) return;
  m_shown = false;
  std::fputs("\r\x1b[K", stderr);
  std::fflush(stderr);
}

}  // namespace qm::cli
