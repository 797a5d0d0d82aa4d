#include "kits/common/Colours.h"

#include <iterator>
#include <utility>

namespace qm {
namespace {

struct SystemColourRow {
  const char* name;  // nullptr: none
  std::int32_t colour;
};

// The classic desktop; the row's number is the colour's index.
constexpr SystemColourRow kClassic[] = {
    {"COLOR_SCROLLBAR", 0xC8D0D4},
    {"COLOR_BACKGROUND", 0xA56E3A},
    {"COLOR_ACTIVECAPTION", 0x6A240A},
    {"COLOR_INACTIVECAPTION", 0x808080},
    {"COLOR_MENU", 0xC8D0D4},
    {"COLOR_WINDOW", 0xFFFFFF},
    {"COLOR_WINDOWFRAME", 0x000000},
    {"COLOR_MENUTEXT", 0x000000},
    {"COLOR_WINDOWTEXT", 0x000000},
    {"COLOR_CAPTIONTEXT", 0xFFFFFF},
    {"COLOR_ACTIVEBORDER", 0xC8D0D4},
    {"COLOR_INACTIVEBORDER", 0xC8D0D4},
    {"COLOR_APPWORKSPACE", 0x808080},
    {"COLOR_HIGHLIGHT", 0x6A240A},
    {"COLOR_HIGHLIGHTTEXT", 0xFFFFFF},
    {"COLOR_BTNFACE", 0xC8D0D4},
    {"COLOR_BTNSHADOW", 0x808080},
    {"COLOR_GRAYTEXT", 0x808080},
    {"COLOR_BTNTEXT", 0x000000},
    {"COLOR_INACTIVECAPTIONTEXT", 0xC8D0D4},
    {"COLOR_BTNHIGHLIGHT", 0xFFFFFF},
    {nullptr, 0x404040},  // dark shadow
    {nullptr, 0xC8D0D4},  // light edge
    {nullptr, 0x000000},  // tool tip text
    {nullptr, 0xE1FFFF},  // tool tip
    {nullptr, 0x000000},
    {nullptr, 0x800000},  // hot item
    {"COLOR_GRADIENTACTIVECAPTION", 0xF0CAA6},
    {"COLOR_GRADIENTINACTIVECAPTION", 0xC0C0C0},
};

std::function<std::int32_t(std::int32_t)> hostPalette;

const SystemColourRow* FindRow(std::int32_t index) {
  return index >= 0 && index < std::ssize(kClassic) ? &kClassic[index] : nullptr;
}

}  // namespace

std::int32_t ConvertColour(std::int32_t colour) {
  return IsSystemColour(colour) ? SystemColour(colour & 0x7FFF) : colour;
}

std::int32_t SystemColour(std::int32_t index) {
  if (hostPalette) return hostPalette(index) & 0xFFFFFF;
  const SystemColourRow* row = FindRow(index);
  return row != nullptr ? row->colour : 0;
}

void SetSystemColours(std::function<std::int32_t(std::int32_t index)> palette) {
  hostPalette = std::move(palette);
}

std::string SystemColourName(std::int32_t index) {
  const SystemColourRow* row = FindRow(index);
  return row != nullptr && row->name != nullptr ? row->name : "";
}

}  // namespace qm
