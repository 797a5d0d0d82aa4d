#include "kits/common/EightBitText.h"

#include <algorithm>
#include <array>

#include "kits/common/Text.h"
#include "kits/common/Utf8.h"

namespace qm {
namespace {

constexpr std::array<char16_t, 256> MakeTable() {
  // The codes 80 to 9F, which alone differ from the characters of the same number.
  constexpr std::array<char16_t, 32> kOwn = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                             0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                             0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                             0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
  std::array<char16_t, 256> table{};
  for (std::size_t code = 0; code < table.size(); ++code) {
    table[code] = code >= 0x80 && code < 0xA0 ? kOwn[code - 0x80] : static_cast<char16_t>(code);
  }
  return table;
}

constexpr std::array<char16_t, 256> kCharacters = MakeTable();

// Windows-1252 of the whole text; false when a character has no place there.
bool ToWindows1252(std::string_view text, std::string& bytes) {
  std::size_t position = 0;
  char32_t character = 0;
  while (NextCharacter(text, position, character)) {
    const auto found = std::find(kCharacters.begin(), kCharacters.end(), character);
    if (found == kCharacters.end()) return false;
    bytes += static_cast<char>(found - kCharacters.begin());
  }
  return position == text.size();
}

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

std::string TextFromEightBit(std::string_view bytes) {
  if (IsValidUtf8(bytes)) return std::string(bytes);
  std::string text;
  for (const char c : bytes) AppendCharacter(text, kCharacters[static_cast<unsigned char>(c)]);
  return text;
}

std::string EightBitFromText(std::string_view text, std::size_t maxBytes) {
  std::string bytes;
  if (ToWindows1252(text, bytes)) {
    bytes.resize(std::min(bytes.size(), maxBytes));
    if (IsAscii(bytes) || !IsValidUtf8(bytes)) return bytes;
  }
  return std::string(CutAtCharacter(text, maxBytes));
}

}  // namespace qm
