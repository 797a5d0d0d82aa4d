#include "cli/LivePicture.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "cli/TerminalText.h"
#include "kits/common/Dates.h"

namespace qm::cli {

namespace {

constexpr double kQuietest = -60;  // dB at the meters' left end
constexpr std::size_t kMeterCells = 50;
constexpr std::size_t kWidest = 100;
constexpr char kKeys[] = "space play/pause  c cue  \u2190 \u2192 5 s  [ ] volume";
constexpr char kPlainKeys[] = "space play/pause  c cue  <- -> 5 s  [ ] volume";
constexpr char kMoreKeys[] = "f fade  l leave loop  n next  q quit";
constexpr char kListKeys[] = "space play/pause  c cue from the top  [ ] volume  q quit";

struct Glyphs {
  const char *done, *head, *left, *meter, *noMeter;
};

constexpr Glyphs kUnicode = {"\u2501", "\u25cf", "\u2500", "\u25ae", "\u00b7"};
constexpr Glyphs kAscii = {"=", "O", "-", "#", "."};

struct StatusName {
  enPlayerStatus status;
  const char* words;
};

constexpr StatusName kStatus[] = {{psLocked, "locked"}, {psPlaying, "playing"}, {psPaused, "paused"},
                                  {psCued, "cued"},     {psOpen, "open"},       {psClosed, "closed"}};

struct SectionName {
  enPlayerSection section;
  const char* words;
};

constexpr SectionName kSections[] = {{epsEmpty, "-"},
                                     {epsPreIntro, "before the intro"},
                                     {epsDuringIntro, "intro"},
                                     {epsMain, "main"},
                                     {epsExtro, "extro"}};

std::string TimeText(float seconds) {
  return SecondsToText(static_cast<double>(seconds), ettDuration, true);
}

std::string Repeated(const char* glyph, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += glyph;
  return text;
}

// From AudioStart to AudioEnd, with I where the intro ends and E at the extro.
std::string PositionBar(const LiveState& state, std::size_t cells, const Glyphs& glyphs) {
  const float length = state.audioEnd - state.audioStart;
  if (cells == 0 || !(length > 0)) return Repeated(glyphs.left, cells);
  const auto cellOf = [&](float seconds) {
    const double part = std::clamp(static_cast<double>((seconds - state.audioStart) / length), 0.0, 1.0);
    return std::min(cells - 1, static_cast<std::size_t>(part * static_cast<double>(cells)));
  };
  const std::size_t head = cellOf(state.position);
  std::string bar;
  for (std::size_t cell = 0; cell < cells; ++cell) {
    const char* glyph = cell < head ? glyphs.done : glyphs.left;
    if (state.introEnd > state.audioStart && cell == cellOf(state.introEnd)) glyph = "I";
    if (state.extro > state.audioStart && state.extro < state.audioEnd && cell == cellOf(state.extro))
      glyph = "E";
    bar += cell == head ? glyphs.head : glyph;
  }
  return bar;
}

double DecibelsOf(std::int16_t peak) {
  return peak > 0 ? 20 * std::log10(peak / 32767.0) : kQuietest;
}

std::string Meter(char side, std::int16_t peak, std::size_t cells, bool unicode) {
  const double decibels = DecibelsOf(peak);
  const std::string number = decibels > kQuietest ? fmt::format("{:5.1f} dB", decibels) : "     -";
  return fmt::format("{} {} {}", side, MeterBar(peak, cells, unicode), number);
}

std::string StatusLine(const LiveState& state) {
  std::string line = fmt::format("{:<8} {:<17} volume {:>3}", StatusWords(state.status),
                                 SectionWords(state.section), state.volume);
  if (state.inLoop) line += "  in the loop";
  if (state.fading) line += "  fading";
  return line;
}

std::string TimesLine(const LiveState& state) {
  std::string line = fmt::format("{} played   {} left", TimeText(state.position), TimeText(state.remaining));
  if (state.remainingExtro > 0) line += fmt::format("   extro in {}", TimeText(state.remainingExtro));
  return line;
}

}  // namespace

std::string MeterBar(std::int16_t peak, std::size_t cells, bool unicode) {
  const Glyphs& glyphs = unicode ? kUnicode : kAscii;
  const double part = std::clamp(1 - DecibelsOf(peak) / kQuietest, 0.0, 1.0);
  const auto lit = static_cast<std::size_t>(std::lround(part * static_cast<double>(cells)));
  return Repeated(glyphs.meter, lit) + Repeated(glyphs.noMeter, cells - lit);
}

const char* StatusWords(enPlayerStatus status) {
  for (const StatusName& row : kStatus)
    if (row.status == status) return row.words;
  return "";
}

const char* SectionWords(enPlayerSection section) {
  for (const SectionName& row : kSections)
    if (row.section == section) return row.words;
  return "";
}

std::vector<std::string> DrawLive(const LiveState& state, std::size_t width, bool unicode) {
  const Glyphs& glyphs = unicode ? kUnicode : kAscii;
  const std::size_t cells = std::min(width, kWidest);
  const std::size_t meterCells = std::min(kMeterCells, cells > 11 ? cells - 11 : 0);
  std::vector<std::string> lines{
      fmt::format("{}/{}  {}  {}", state.item, state.items, state.title, state.format),
      StatusLine(state),
      PositionBar(state, cells, glyphs),
      TimesLine(state),
      Meter('L', state.left, meterCells, unicode),
      Meter('R', state.right, meterCells, unicode),
      fmt::format("missed: {} late answers, {} voices not ready, {} dry callbacks", state.misses.lateAnswers,
                  state.misses.voicesNotReady, state.misses.dryCallbacks),
  };
  if (state.isList)
    lines.push_back(kListKeys);
  else
    lines.insert(lines.end(), {unicode ? kKeys : kPlainKeys, kMoreKeys});
  for (std::string& line : lines) line = CutText(line, width);
  return lines;
}

}  // namespace qm::cli
