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

// To the extro and to the end; with a letter for the extro where there is no room for words.
DeskLine TimesLine(const DeskPlayer& player, std::size_t width) {
  if (!IsLoaded(player)) return {{edsPlain, std::string(width, ' ')}};
  std::string extro, end = "end " + TimeText(player.toEnd) + " ";
  if (player.hasExtro) extro = player.toExtro > 0 ? " extro " + TimeText(player.toExtro) : " in the extro";
  if (TextWidth(extro) + TextWidth(end) > width) {
    extro = player.toExtro > 0 ? " E " + TimeText(player.toExtro) : " E";
    end = TimeText(player.toEnd) + " ";
  }
  const float left = player.hasExtro ? player.toExtro : player.toEnd;
  const bool soon = player.status == psPlaying && left < kSoon;
  return {{soon ? edsWarning : edsBold, TwoEnds(extro, end, width)}};
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

// With each key's name where there is room for it.
DeskLine KeysLine(const DeskPlayer& player, std::size_t width) {
  if (player.firstKey == 0) return {{edsDim, FitText(" no function keys", width)}};
  const int key = player.firstKey;
  const char* const shift = player.keysWithShift ? "Shift+" : "";
  std::string text =
      fmt::format(" {}F{} play  F{} pause  F{} cue  F{} close", shift, key, key + 1, key + 2, key + 3);
  if (TextWidth(text) > width) text = fmt::format(" {}F{}-F{} play pause cue close", shift, key, key + 3);
  return {{edsDim, FitText(text, width)}};
}

DeskLine TitleLine(const DeskPlayer& player, std::size_t width) {
  if (IsLoaded(player)) return {{edsBold, FitText(" " + player.title, width)}};
  return {{edsDim, FitText(" " + (player.title.empty() ? player.lastPlay : player.title), width)}};
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
      TitleLine(player, width),
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
