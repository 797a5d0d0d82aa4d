#include "kits/common/Utf8.h"

namespace qm {
namespace {

struct Form {
  unsigned char mask;  // of the lead byte
  unsigned char lead;  // what the masked lead byte is
  std::size_t length;  // bytes
  char32_t lowest;     // a smaller character in this form is overlong
};

constexpr Form kForms[] = {
    {0x80, 0x00, 1, 0},
    {0xE0, 0xC0, 2, 0x80},
    {0xF0, 0xE0, 3, 0x800},
    {0xF8, 0xF0, 4, 0x10000},
};

constexpr bool IsCharacter(char32_t value) {
  return value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
}

}  // namespace

bool NextCharacter(std::string_view text, std::size_t& position, char32_t& character) {
  if (position >= text.size()) return false;
  const auto lead = static_cast<unsigned char>(text[position]);
  for (const Form& form : kForms) {
    if ((lead & form.mask) != form.lead) continue;
    if (text.size() - position < form.length) return false;
    char32_t value = lead & static_cast<unsigned char>(~form.mask);
    for (std::size_t i = 1; i < form.length; ++i) {
      const auto next = static_cast<unsigned char>(text[position + i]);
      if ((next & 0xC0) != 0x80) return false;
      value = value << 6 | (next & 0x3Fu);
    }
    if (value < form.lowest || !IsCharacter(value)) return false;
    position += form.length;
    character = value;
    return true;
  }
  return false;
}

void AppendCharacter(std::string& text, char32_t character) {
  if (!IsCharacter(character)) return;
  std::size_t form = 3;
  while (character < kForms[form].lowest) --form;
  int shift = 6 * static_cast<int>(form);
  text += static_cast<char>(kForms[form].lead | character >> shift);
  while (shift > 0) {
    shift -= 6;
    text += static_cast<char>(0x80 | (character >> shift & 0x3F));
  }
}

}  // namespace qm
