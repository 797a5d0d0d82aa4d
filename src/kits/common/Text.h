#pragma once
#include <string>
#include <string_view>

// Plain text helpers. Text is UTF-8; case is that of ASCII letters, all others compare as they stand.
namespace qm {

// Blanks (space, tab, carriage return, line feed, vertical tab, form feed) off both ends.
std::string_view Trim(std::string_view text);

std::string LowerCase(std::string_view text);
std::string UpperCase(std::string_view text);

bool EqualIgnoringCase(std::string_view first, std::string_view second);

// Equal when trimmed, ignoring case: how references of items are compared.
bool SameReference(std::string_view first, std::string_view second);

bool ContainsIgnoringCase(std::string_view text, std::string_view part);
bool StartsWithIgnoringCase(std::string_view text, std::string_view start);

// Position of part in text at or after from, ignoring case; npos when it is not there.
std::size_t FindIgnoringCase(std::string_view text, std::string_view part, std::size_t from = 0);

// The token that begins at position start (from 0) and runs to the next delimiter or the end of the text.
// foundPosition receives the position of that delimiter, npos when the text ended first. A start at or behind
// the end, or an empty delimiter, gives "" and npos.
std::string_view GetDelimitedText(std::string_view text, std::size_t start, std::string_view delimiter,
                                  std::size_t& foundPosition);

bool IsValidUtf8(std::string_view text);

// The longest prefix of at most maxBytes bytes that does not cut a UTF-8 character.
std::string_view CutAtCharacter(std::string_view text, std::size_t maxBytes);

}  // namespace qm
