#include "kits/common/Text.h"

#include <algorithm>

#include "kits/common/Utf8.h"

namespace qm {
namespace {

constexpr std::string_view kBlanks = " \t\r\n\v\f";

constexpr char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}
constexpr char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}
constexpr bool SameLetter(char first, char second) {
  return Lower(first) == Lower(second);
}

std::string Mapped(std::string_view text, char (*map)(char)) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), map);
  return result;
}

}  // namespace

std::string_view Trim(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string LowerCase(std::string_view text) {
  return Mapped(text, Lower);
}
std::string UpperCase(std::string_view text) {
  return Mapped(text, Upper);
}

bool EqualIgnoringCase(std::string_view first, std::string_view second) {
  return first.size() == second.size() && std::equal(first.begin(), first.end(), second.begin(), SameLetter);
}

bool SameReference(std::string_view first, std::string_view second) {
  return EqualIgnoringCase(Trim(first), Trim(second));
}

bool ContainsIgnoringCase(std::string_view text, std::string_view part) {
  return FindIgnoringCase(text, part) != std::string_view::npos;
}

bool StartsWithIgnoringCase(std::string_view text, std::string_view start) {
  return EqualIgnoringCase(text.substr(0, start.size()), start);
}

std::size_t FindIgnoringCase(std::string_view text, std::string_view part, std::size_t from) {
  if (from > text.size() || part.size() > text.size() - from) return std::string_view::npos;
  if (part.empty()) return from;
  // Whole items are looked through for each of their keys, so most of the time goes into the step from one
  // possible beginning to the next.
  const char lower = Lower(part[0]), upper = Upper(part[0]);
  const std::string_view rest = part.substr(1);
  const std::size_t last = text.size() - part.size();
  for (std::size_t at = from; at <= last; ++at) {
    if (lower == upper) at = text.find(lower, at);
    if (at > last) break;
    if (SameLetter(text[at], lower) && EqualIgnoringCase(text.substr(at + 1, rest.size()), rest)) return at;
  }
  return std::string_view::npos;
}

std::string_view GetDelimitedText(std::string_view text, std::size_t start, std::string_view delimiter,
                                  std::size_t& foundPosition) {
  foundPosition = std::string_view::npos;
  if (start >= text.size() || delimiter.empty()) return {};
  foundPosition = text.find(delimiter, start);
  return text.substr(start, foundPosition == std::string_view::npos ? foundPosition : foundPosition - start);
}

bool IsValidUtf8(std::string_view text) {
  char32_t character = 0;
  std::size_t position = 0;
  while (NextCharacter(text, position, character)) {
  }
  return position == text.size();
}

std::string_view CutAtCharacter(std::string_view text, std::size_t maxBytes) {
  if (text.size() <= maxBytes) return text;
  // Only a whole character that lies across the cut moves it; bytes that are no text are cut where they
  // stand.
  for (std::size_t back = 1; back <= 3 && back <= maxBytes; ++back) {
    std::size_t end = maxBytes - back;
    char32_t character = 0;
    if (NextCharacter(text, end, character) && end > maxBytes) return text.substr(0, maxBytes - back);
  }
  return text.substr(0, maxBytes);
}

}  // namespace qm
