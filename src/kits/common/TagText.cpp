#include "kits/common/TagText.h"

#include "kits/common/Text.h"

namespace qm {
namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

constexpr bool IsEscaped(unsigned char c) {
  return c < 32 || c == 127 || c == '"' || c == '%';
}

constexpr int DigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

// The character that the escape at the start of the text stands for, or -1 where there is none.
int EscapedCharacter(std::string_view text) {
  if (text.size() < 3 || text[0] != '%') return -1;
  const int high = DigitValue(text[1]);
  const int low = DigitValue(text[2]);
  if (high < 0 || low < 0) return -1;
  const int character = high * 16 + low;
  return IsEscaped(static_cast<unsigned char>(character)) ? character : -1;
}

std::string WithSeparator(std::string_view separator, std::string_view text) {
  std::string result;
  if (!StartsWithIgnoringCase(text, separator)) result = separator;
  return result.append(text);
}

// Where the value behind the first key begins, npos without one.
std::size_t FindValue(std::string_view text, std::string_view key, std::string_view equals,
                      std::string_view separator, bool ensureSeparator) {
  std::string sought(key);
  if (ensureSeparator) {
    sought = WithSeparator(separator, key);
  }
  sought.append(equals);
  if (ensureSeparator && !StartsWithIgnoringCase(text, separator)) {
    // A text without its leading separator is taken as if it had one; only its beginning is copied for that.
    std::string start(separator);
    start.append(text.substr(0, sought.size()));
    const std::size_t found = FindIgnoringCase(start, sought);
    if (found != std::string::npos) return found + sought.size() - separator.size();
  }
  const std::size_t found = FindIgnoringCase(text, sought);
  return found == std::string_view::npos ? found : found + sought.size();
}

}  // namespace

std::string EncodeTagValue(std::string_view value) {
  std::string result;
  result.reserve(value.size());
  for (const char c : value) {
    const auto byte = static_cast<unsigned char>(c);
    if (IsEscaped(byte)) {
      result += '%';
      result += kDigits[byte >> 4];
      result += kDigits[byte & 0x0F];
    } else {
      result += c;
    }
  }
  return result;
}

std::string DecodeTagValue(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int character = EscapedCharacter(text.substr(i, 3));
    result += character < 0 ? text[i] : static_cast<char>(character);
    if (character >= 0) i += 2;
  }
  return result;
}

std::string AppendTag(std::string Text, std::string_view Key, std::string_view Value, std::string_view Equals,
                      bool Quoted, std::string_view Separator) {
  if (!Text.empty()) Text.append(Separator);
  Text.append(Key).append(Equals);
  if (!Quoted) return std::move(Text.append(Value));
  return std::move(Text.append("\"").append(EncodeTagValue(Value)).append("\""));
}

std::string GetTagValue(std::string_view Text, std::string_view Key, std::string_view Equals, bool Decode,
                        std::string_view Separator, bool EnsureSeparator) {
  const std::size_t start = FindValue(Text, Key, Equals, Separator, EnsureSeparator);
  if (start == std::string_view::npos) return {};
  std::string_view value = Text.substr(start);
  if (value.starts_with('"')) {
    value.remove_prefix(1);
    value = value.substr(0, value.find('"'));
  } else if (!Separator.empty()) {
    value = value.substr(0, FindIgnoringCase(value, Separator));
  }
  return Decode ? DecodeTagValue(value) : std::string(value);
}

std::string GetMarkupTagValue(std::string_view Text, std::string_view Tag) {
  const std::string name = std::string(Tag) + '>';
  const std::string opening = '<' + name;
  const std::size_t opened = FindIgnoringCase(Text, opening);
  if (opened == std::string_view::npos) return {};
  const std::size_t start = opened + opening.size();
  const std::size_t end = FindIgnoringCase(Text, "</" + name, start);
  return end == std::string_view::npos ? std::string() : std::string(Text.substr(start, end - start));
}

}  // namespace qm
