#include "logs/CSVText.h"

#include <algorithm>
#include <limits>

#include "kits/common/Dates.h"
#include "kits/common/Numbers.h"
#include "kits/common/Text.h"

namespace qm {

namespace {

constexpr char kQuote = '"';

void ReplaceAll(std::string& text, std::string_view part, std::string_view replacement) {
  for (auto at = text.find(part); at != text.npos; at = text.find(part, at + replacement.size()))
    text.replace(at, part.size(), replacement);
}

std::string Escaped(std::string text, std::string_view separator) {
  text = OnOneLine(std::move(text));
  if (text.size() >= 2 && text.front() == kQuote && text.back() == kQuote)
    text = text.substr(1, text.size() - 2);
  const bool quoted = text.find(separator) != text.npos || text.find(kQuote) != text.npos;
  ReplaceAll(text, "\"", "\"\"");
  return quoted ? kQuote + text + kQuote : text;
}

// Hundredths that a single digit behind the point stands for.
void CompleteHundredths(std::string& text) {
  if (text.size() >= 2 && text[text.size() - 2] == '.') text.insert(text.size() - 1, "0");
}

}  // namespace

CSVRecord SplitCSVFields(std::string_view text, std::string_view separator) {
  CSVRecord names;
  for (std::size_t start = 0, found = 0; found != text.npos; start = found + separator.size()) {
    found = separator.empty() ? text.npos : text.find(separator, start);
    std::string name(text.substr(start, found - start));
    if (name.starts_with(kQuote)) std::erase(name, kQuote);
    names.push_back(std::move(name));
  }
  return names;
}

std::string JoinCSVFields(const CSVRecord& names, std::string_view separator) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) text.append(i == 0 ? "" : separator).append(names[i]);
  return text;
}

std::string CSVRecordLine(const CSVRecord& values, std::string_view separator) {
  CSVRecord escaped;
  for (const std::string& value : values) escaped.push_back(Escaped(value, separator));
  return JoinCSVFields(escaped, separator);
}

CSVRecord ParseCSVRecord(std::string_view line) {
  CSVRecord record;
  for (std::size_t at = 0; at < line.size();) {
    const std::string_view rest = line.substr(at);
    const bool quoted = rest[0] == kQuote && !rest.starts_with("\"\"");
    const std::size_t start = quoted ? 1 : 0;
    const std::size_t end = quoted ? rest.find("\",", start) : rest.find(',');
    std::string field(rest.substr(start, end == rest.npos ? end : end - start));
    ReplaceAll(field, "\"\"", "\"");
    record.push_back(std::move(field));
    at = end == rest.npos ? line.size() : at + end + start + 1;
  }
  return record;
}

std::string OnOneLine(std::string text) {
  ReplaceAll(text, "\r\n", "\n");
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

float CSVTime(std::string text) {
  if (text.empty()) return 0;
  std::replace(text.begin(), text.end(), '\'', ':');
  // Also of plain seconds, before they become a time: "12.3" is 00:00:12.03.
  CompleteHundredths(text);
  if (text.find(':') == text.npos) text = SecondsToText(ParseNumber(text), ettClock, true);
  if (text.size() < 3 || text[text.size() - 3] != '.') text += ".00";
  constexpr std::size_t kSecondsLength = 5, kMinutesLength = 8;
  if (text.size() == kSecondsLength) text.insert(0, "00:");
  if (text.size() == kMinutesLength) text.insert(0, "00:");
  constexpr double most = std::numeric_limits<float>::max();
  return static_cast<float>(Limit(TextToSeconds(text), -most, most));
}

}  // namespace qm
