#pragma once
#include <cstdint>
#include <string>
#include <string_view>

// Colours as cart chunks hold them: "&H", eight hexadecimal digits, "&".
namespace qm {

class cHDItem;

// "" for the default.
std::string ColourText(std::int32_t colour, std::int32_t defaultColour);

// Nothing for an empty text; 0 for one that is no number. A plain number and a missing "&" are taken as well.
void SetColourFromText(cHDItem& item, void (cHDItem::*set)(std::int32_t), std::string_view text);

}  // namespace qm
