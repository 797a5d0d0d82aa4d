#pragma once
#include <cstddef>
#include <vector>

#include "cli/DeskPicture.h"

namespace qm::cli {

// How much of a player is shown.
enum enPanelSize : std::int32_t { epsLarge, epsMiddle, epsSmall, epsOneLine };

std::size_t PanelLines(enPanelSize size);
std::size_t PanelCells(enPanelSize size);  // the fewest that a panel of the size makes sense with

// A player's panel: PanelLines lines of exactly `width` cells.
std::vector<DeskLine> DrawPanel(const DeskPlayer& player, enPanelSize size, std::size_t width, bool unicode);

}  // namespace qm::cli
