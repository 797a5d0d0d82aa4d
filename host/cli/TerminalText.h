#pragma once
#include <cstddef>
#include <string>
#include <string_view>

// Text as a terminal shows it, in cells. What a terminal would obey instead of showing counts and shows as
// "?".
namespace qm::cli {

std::size_t TextWidth(std::string_view text);

// Exactly `width` cells: cut off, or filled up with blanks.
std::string FitText(std::string_view text, std::size_t width);

// At most `width` cells.
std::string CutText(std::string_view text, std::size_t width);

}  // namespace qm::cli
