#include "cli/DeskPanel.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/LivePicture.h"
#include "cli/TerminalText.h"
#include "kits/common/Dates.h"

namespace qm::cli {

namespace {

struct PanelShape {
  std::size_t lines, cells;
};

constexpr PanelShape kShapes[] = {{7, 30}, {5, 30}, {3, 20}, {1, 26}};

constexpr float kSoon = 10;  // seconds to the end or the extro at which time is shown to be short

// "m:ss.t": a tenth is all that the eye can follow.
std::string TimeText(float seconds) {
  std::string text = SecondsToText(static_cast<double>(std::max(seconds, 0.0f)), ettDuration, true);
  text.pop_back();
  return text;
}

bool IsLoaded(const DeskPlayer& player) {
  return player.status != psClosed && player.status != psLocked;
}

enDeskStyle HeadStyle(const DeskPlayer& player) {
  if (player.status == psPlaying) return edsOnAir;
  return player.status == psCued || player.status == psPaused ? edsCued : edsHead;
}

std::string StatusText(const DeskPlayer& player) {
  if (player.status == psPlaying && player.fading) return "fading";
  if (player.status == psPlaying && player.inLoop) return "loop";
  return player.status == psClosed ? "" : StatusWords(player.status);
}

std::string NameOf(const DeskPlayer& player) {
  return fmt::format("{}{} {}", player.chosen ? '>' : ' ', player.number, player.caption);
}

// Text at both ends.
std::string TwoEnds(const std::string& left, const std::string& right, std::size_t width) {
  const std::size_t cells = std::min(width, TextWidth(right));
  return FitText(left, width - cells) + FitText(right, cells);
}

DeskLine TimesLine(const DeskPlayer& player, std::size_t width) {
  if (!IsLoaded(player)) return {{edsPlain, std::string(width, ' ')}};
  const std::string extro = player.toExtro > 0 ? " extro " + TimeText(player.toExtro) : " extro";
  const bool soon = player.status == psPlaying && (player.toEnd < kSoon || player.toExtro < kSoon);
  return {{soon ? edsWarning : edsBold, TwoEnds(extro, "end " + TimeText(player.toEnd) + " ", width)}};
}

DeskLine StateLine(const DeskPlayer& player, std::size_t width) {
  if (!IsLoaded(player)) return {{edsPlain, std::string(width, ' ')}};
  std::string section = SectionWords(player.section);
  if (player.toIntroEnd > 0) section = "intro " + TimeText(player.toIntroEnd);
  return {{edsPlain, TwoEnds(" " + section, fmt::format("vol {} ", player.volume), width)}};
}

DeskLine LevelLine(const char* side, std::int16_t peak, std::size_t width, bool unicode) {
  const std::size_t cells = width > 4 ? width - 4 : 0;
  return {{edsPlain, FitText(fmt::format(" {} {}", side, MeterBar(peak, cells, unicode)), width)}};
}

DeskLine KeysLine(const DeskPlayer& player, std::size_t width) {
  const std::string text =
      player.keys.empty() ? " no function keys" : " " + player.keys + "  play pause cue close";
  return {{edsDim, FitText(text, width)}};
}

DeskLine OneLine(const DeskPlayer& player, std::size_t width) {
  const std::string right = IsLoaded(player) ? " " + TimeText(player.toEnd) + " " : "";
  return {{HeadStyle(player), TwoEnds(NameOf(player) + " " + player.title, right, width)}};
}

}  // namespace

std::size_t PanelLines(enPanelSize size) {
  return kShapes[size].lines;
}

std::size_t PanelCells(enPanelSize size) {
  return kShapes[size].cells;
}

std::vector<DeskLine> DrawPanel(const DeskPlayer& player, enPanelSize size, std::size_t width, bool unicode) {
  if (size == epsOneLine) return {OneLine(player, width)};
  std::vector<DeskLine> lines{
      {{HeadStyle(player), TwoEnds(NameOf(player), StatusText(player) + " ", width)}},
      {{edsBold, FitText(" " + player.title, width)}},
      TimesLine(player, width),
  };
  if (size == epsSmall) return lines;
  if (size == epsLarge) {
    lines.insert(lines.begin() + 2, StateLine(player, width));
    lines.push_back(LevelLine("L", player.left, width, unicode));
    lines.push_back(LevelLine("R", player.right, width, unicode));
  } else {
    lines.push_back(LevelLine(" ", std::max(player.left, player.right), width, unicode));
  }
  lines.push_back(KeysLine(player, width));
  return lines;
}

}  // namespace qm::cli
