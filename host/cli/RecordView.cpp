#include "cli/RecordView.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "audio/cRecorder.h"
#include "cli/Terminal.h"
#include "cli/TerminalText.h"
#include "kits/common/Dates.h"

namespace qm::cli {

namespace {

constexpr auto kInterval = std::chrono::milliseconds(50);
constexpr double kQuietest = -60;  // dB at the meter's end
constexpr std::size_t kMeterCells = 16;
constexpr double kLongestShown = 100 * 3600;  // of what is left

struct StatusWord {
  enRecorderStatus status;
  const char* words;
};

constexpr StatusWord kStatus[] = {
    {rsRecording, "recording"}, {rsPaused, "paused"}, {rsWaitingLevel, "waiting"}};

const char* WordsOf(enRecorderStatus status) {
  for (const StatusWord& row : kStatus)
    if (row.status == status) return row.words;
  return "closed";
}

std::string TimeText(float seconds) {
  return SecondsToText(static_cast<double>(seconds), ettDuration, true);
}

std::string Meter(char side, std::int32_t peak) {
  const double decibels = peak > 0 ? 20 * std::log10(peak / 32767.0) : kQuietest;
  const double part = std::clamp(1 - decibels / kQuietest, 0.0, 1.0);
  const auto lit = static_cast<std::size_t>(std::lround(part * kMeterCells));
  return fmt::format("{} {}{}{:6.1f}", side, std::string(lit, '#'), std::string(kMeterCells - lit, '.'),
                     std::max(decibels, kQuietest));
}

}  // namespace

std::string DrawRecording(const RecordState& state, std::size_t width) {
  if (state.asking) return CutText("discard this recording? y discards, any other key goes on", width);
  std::string line = fmt::format("{:<9} {}  {}  {}", WordsOf(state.status), TimeText(state.seconds),
                                 Meter('L', state.left), Meter('R', state.right));
  if (state.remaining > 0 && static_cast<double>(state.remaining) < kLongestShown)
    line += fmt::format("  {} left", TimeText(state.remaining));
  return CutText(line, width);
}

void RecordView::Refresh(bool asking) {
  if (Clock::now() < m_next) return;
  m_next = Clock::now() + kInterval;
  const RecordState state{m_recorder.Status(),    m_recorder.SecondsRecorded(), m_recorder.SecondsRemaining(),
                          m_recorder.LeftLevel(), m_recorder.RightLevel(),      asking};
  m_terminal.Write("\r" + DrawRecording(state, std::max<std::size_t>(m_terminal.Width(), 2) - 1) + "\x1b[K");
}

void RecordView::Erase() {
  m_terminal.Write("\r\x1b[K");
}

}  // namespace qm::cli
