#include "cli/TerminalText.h"

#include <wchar.h>

#include <clocale>

#include "kits/common/Utf8.h"

namespace qm::cli {

namespace {

// Cells of the character at position, which moves behind it; its bytes, or "?", are appended to `shown`.
std::size_t TakeCharacter(std::string_view text, std::size_t& position, std::string& shown) {
  // The system's table of widths answers for the characters of a UTF-8 locale only.
  static const char* const locale = std::setlocale(LC_CTYPE, "C.UTF-8");
  const std::size_t start = position;
  char32_t character = 0;
  if (!NextCharacter(text, position, character)) {
    ++position;
    shown = "?";
    return 1;
  }
  const int cells = locale || character < 128 ? wcwidth(static_cast<wchar_t>(character)) : 1;
  shown = cells < 0 ? "?" : text.substr(start, position - start);
  return cells < 0 ? 1 : static_cast<std::size_t>(cells);
}

std::string Take(std::string_view text, std::size_t width, std::size_t& used) {
  std::string result, shown;
  used = 0;
  for (std::size_t position = 0; position < text.size();) {
    const std::size_t cells = TakeCharacter(text, position, shown);
    if (used + cells > width) break;
    used += cells;
    result += shown;
  }
  return result;
}

}  // namespace

std::size_t TextWidth(std::string_view text) {
  std::size_t used = 0;
  Take(text, std::string_view::npos / 2, used);
  return used;
}

std::string CutText(std::string_view text, std::size_t width) {
  std::size_t used = 0;
  return Take(text, width, used);
}

std::string FitText(std::string_view text, std::size_t width) {
  std::size_t used = 0;
  std::string result = Take(text, width, used);
  result.append(width - used, ' ');
  return result;
}

}  // namespace qm::cli
