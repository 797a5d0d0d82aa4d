#pragma once
#include <cstddef>
#include <string>
#include <string_view>

// Text fields of 8-bit files: UTF-8 or Windows-1252, told apart by what the bytes are. The five codes that
// Windows-1252 leaves open stand for the control characters of the same number, so that every byte has its
// place.
namespace qm {

// UTF-8 of a field's bytes: as they are when they are valid UTF-8, else read as Windows-1252.
std::string TextFromEightBit(std::string_view bytes);

// The bytes of a field of at most maxBytes, cut at a character's edge: Windows-1252 when every character has
// a place there and the bytes would not be taken for UTF-8, else UTF-8. TextFromEightBit gives back what was
// not cut. Text that is no valid UTF-8 stays as it is.
std::string EightBitFromText(std::string_view text, std::size_t maxBytes = std::string_view::npos);

}  // namespace qm
