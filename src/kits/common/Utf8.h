#pragma once
#include <cstddef>
#include <string>
#include <string_view>

// Single characters of UTF-8 text.
namespace qm {

// The character at position, which moves behind it. False, with position left alone, at the end of the text
// and where no valid character stands (stray or missing bytes, overlong forms, surrogates, above U+10FFFF).
bool NextCharacter(std::string_view text, std::size_t& position, char32_t& character);

// Appends a character; nothing for a value that is none.
void AppendCharacter(std::string& text, char32_t character);

}  // namespace qm
