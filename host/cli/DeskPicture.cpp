#include "cli/DeskPicture.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/DeskPanel.h"
#include "cli/TerminalText.h"

namespace qm::cli {

namespace {

constexpr std::size_t kHeaderLines = 1;
constexpr std::size_t kFooterLines = 2;      // keys, message
constexpr std::size_t kFewestListLines = 4;  // with its heading
constexpr std::size_t kTallEnough = 20;      // for the chosen player's keys as well
constexpr std::size_t kNoteCells = 24;
constexpr std::size_t kLengthCells = 9;

constexpr char kListKeys[] =
    "\u2191\u2193 choose  Enter cue  p play  a play all cued  Alt+F3 cue there  q quit";
constexpr char kPlainListKeys[] =
    "up/down choose  Enter cue  p play  a play all cued  Alt+F3 cue there  q quit";
constexpr char kPlayerKeys[] =
    "\u2190\u2192 player {}:  space play/pause  c cue  x close  f fade  [ ] volume";
constexpr char kPlainPlayerKeys[] =
    "left/right player {}:  space play/pause  c cue  x close  f fade  [ ] volume";

struct Layout {
  enPanelSize size = epsOneLine;
  std::size_t columns = 1, rows = 0;
};

std::size_t LinesLeft(const Layout& layout, std::size_t height) {
  const std::size_t used = kHeaderLines + kFooterLines + layout.rows * PanelLines(layout.size);
  return height > used ? height - used : 0;
}

// The largest panels that leave room for a bit of the list.
Layout ChooseLayout(std::size_t players, std::size_t width, std::size_t height) {
  Layout layout;
  for (const enPanelSize size : {epsLarge, epsMiddle, epsSmall, epsOneLine}) {
    layout.size = size;
    const std::size_t most =
        std::clamp<std::size_t>(width / PanelCells(size), 1, std::max<std::size_t>(players, 1));
    layout.rows = (players + most - 1) / most;
    layout.columns = layout.rows > 0 ? (players + layout.rows - 1) / layout.rows : 1;
    if (LinesLeft(layout, height) >= kFewestListLines) break;
  }
  return layout;
}

DeskLine Header(const DeskState& state, std::size_t width) {
  std::string right = state.clock + " ";
  if (state.misses > 0) right = fmt::format("{} missed   ", state.misses) + right;
  const std::size_t cells = std::min(width, TextWidth(right));
  return {{edsHead, FitText(" quillmere desk", width - cells) + FitText(right, cells)}};
}

void AddPanels(const DeskState& state, const Layout& layout, std::size_t width, bool unicode,
               std::vector<DeskLine>& lines) {
  const std::size_t gaps = layout.columns - 1;
  const std::size_t cells = width > gaps ? (width - gaps) / layout.columns : 1;
  for (std::size_t row = 0; row < layout.rows; ++row) {
    std::vector<DeskLine> strip(PanelLines(layout.size));
    for (std::size_t column = 0; column < layout.columns; ++column) {
      const std::size_t index = row * layout.columns + column;
      // The last panel of a row takes what the others leave.
      const bool last = column + 1 == layout.columns;
      const std::size_t own = last ? width - std::min(width, (cells + 1) * gaps) : cells;
      const auto panel =
          index < state.players.size()
              ? DrawPanel(state.players[index], layout.size, own, unicode)
              : std::vector<DeskLine>(strip.size(), DeskLine{{edsPlain, std::string(own, ' ')}});
      for (std::size_t line = 0; line < strip.size(); ++line) {
        strip[line].insert(strip[line].end(), panel[line].begin(), panel[line].end());
        if (!last) strip[line].push_back({edsDim, unicode ? "\u2502" : "|"});
      }
    }
    lines.insert(lines.end(), strip.begin(), strip.end());
  }
}

DeskLine ListLine(enDeskStyle style, const std::string& title, const std::string& length,
                  const std::string& note, std::size_t width) {
  const std::size_t noteCells = width > 60 ? kNoteCells : 0;
  const std::size_t fixed = kLengthCells + 2 + noteCells;
  const std::size_t titleCells = width > fixed ? width - fixed : 0;
  std::string text =
      FitText(title, titleCells) + fmt::format("{:>{}}  ", length, kLengthCells) + FitText(note, noteCells);
  return {{style, FitText(text, width)}};
}

void AddList(const DeskState& state, std::size_t count, std::size_t width, std::vector<DeskLine>& lines) {
  if (count == 0) return;
  const std::size_t shown = count - 1;
  const std::size_t behind = state.rows.size() > shown ? state.rows.size() - shown : 0;
  const std::size_t first = std::min(behind, state.chosenRow > shown / 2 ? state.chosenRow - shown / 2 : 0);
  lines.push_back(ListLine(edsDim,
                           fmt::format("  {} file{}", state.rows.size(), state.rows.size() == 1 ? "" : "s"),
                           "length", "where", width));
  for (std::size_t index = first; index < first + shown; ++index) {
    if (index >= state.rows.size()) {
      lines.push_back({{edsPlain, std::string(width, ' ')}});
      continue;
    }
    const DeskRow& row = state.rows[index];
    const bool chosen = index == state.chosenRow;
    lines.push_back(ListLine(chosen       ? edsChosen
                             : row.failed ? edsWarning
                                          : edsPlain,
                             fmt::format("{} {:>2} {}", chosen ? '>' : ' ', index + 1, row.title), row.length,
                             row.note, width));
  }
}

std::int16_t ChosenPlayer(const DeskState& state) {
  for (const DeskPlayer& player : state.players)
    if (player.chosen) return player.number;
  return 0;
}

}  // namespace

std::vector<DeskLine> DrawDesk(const DeskState& state, std::size_t width, std::size_t height, bool unicode) {
  const Layout layout = ChooseLayout(state.players.size(), width, height);
  std::vector<DeskLine> lines{Header(state, width)};
  AddPanels(state, layout, width, unicode, lines);
  std::size_t left = LinesLeft(layout, height);
  const bool playerKeys = height >= kTallEnough && left > kFewestListLines;
  AddList(state, playerKeys ? left - 1 : left, width, lines);
  lines.push_back({{edsDim, FitText(unicode ? kListKeys : kPlainListKeys, width)}});
  if (playerKeys)
    lines.push_back({{edsDim, FitText(fmt::format(fmt::runtime(unicode ? kPlayerKeys : kPlainPlayerKeys),
                                                  ChosenPlayer(state)),
                                      width)}});
  // The message is the last to give way.
  if (lines.size() >= height) lines.resize(height > 0 ? height - 1 : 0);
  if (height > 0) lines.push_back({{state.refusal ? edsWarning : edsBold, FitText(state.message, width)}});
  return lines;
}

}  // namespace qm::cli
