#include <fmt/core.h>

#include <array>
#include <chrono>
#include <cmath>

#include "kits/common/Dates.h"
#include "kits/common/Numbers.h"
#include "kits/common/Text.h"

namespace qm {
namespace {

bool AllDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// Up to three parts between separators; more of them, or none, gives a count of 0.
struct Parts {
  std::array<std::string_view, 3> part;
  std::size_t count = 0;
};

Parts Split(std::string_view text, char separator) {
  Parts parts;
  for (;;) {
    if (parts.count == parts.part.size()) return {};
    const std::size_t end = text.find(separator);
    parts.part[parts.count++] = text.substr(0, end);
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

std::int32_t DayOf(std::string_view year, std::string_view month, std::string_view day) {
  if (year.size() != 4 || month.size() > 2 || day.size() > 2) return 0;
  if (!AllDigits(year) || !AllDigits(month) || !AllDigits(day)) return 0;
  const CalendarDate date{ParseWhole(year), ParseWhole(month), ParseWhole(day)};
  const std::chrono::year_month_day calendar(std::chrono::year(date.year),
                                             std::chrono::month(static_cast<unsigned>(date.month)),
                                             std::chrono::day(static_cast<unsigned>(date.day)));
  return calendar.ok() ? DayNumber(date) : 0;
}

}  // namespace

std::int32_t ParseDate(std::string_view text) {
  text = Trim(text);
  if (text.size() == 8 && AllDigits(text)) return DayOf(text.substr(0, 4), text.substr(4, 2), text.substr(6));
  for (const char separator : {'-', '/'}) {
    const Parts parts = Split(text, separator);
    if (parts.count != 3) continue;
    const auto& [first, middle, last] = parts.part;
    return first.size() == 4 ? DayOf(first, middle, last) : DayOf(last, middle, first);
  }
  return 0;
}

std::string SecondsToText(double seconds, enTimeText mode, bool hundredths) {
  // A clock shows the second that has begun, but 2.9999998 out of a single-precision sum is 3.
  const std::int64_t all = RoundToWhole(Limit(std::abs(seconds), 0.0, 1e14) * 100);
  const std::int64_t whole = all / 100, part = all % 100;
  const std::int64_t hour = whole / 3600, minute = whole / 60 % 60, second = whole % 60;
  const bool shown = mode != ettClock || hundredths ? all != 0 : whole != 0;
  const char* sign = seconds < 0 && shown ? "-" : "";
  if (mode == ettClock) {
    const std::string clock = fmt::format("{}{:02}:{:02}:{:02}", sign, hour, minute, second);
    return hundredths ? fmt::format("{}.{:02}", clock, part) : clock;
  }
  if (hour == 0) return fmt::format("{}{}:{:02}.{:02}", sign, minute, second, part);
  return fmt::format("{}{}:{:02}:{:02}.{:02}", sign, hour, minute, second, part);
}

double TextToSeconds(std::string_view text) {
  text = Trim(text);
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  const Parts parts = Split(text, ':');
  double seconds = 0;
  for (std::size_t i = 0; i < parts.count; ++i) {
    const std::string_view part = parts.part[i];
    const std::size_t point = i + 1 == parts.count ? part.find('.') : std::string_view::npos;
    if (!AllDigits(part.substr(0, point))) return 0;
    if (point != std::string_view::npos && part.size() > point + 1 && !AllDigits(part.substr(point + 1)))
      return 0;
    seconds = seconds * 60 + ParseNumber(part);
  }
  return negative ? -seconds : seconds;
}

}  // namespace qm
