#include "kits/common/Dates.h"

#include <fmt/core.h>

#include <cmath>
#include <ctime>
#include <limits>

#include "kits/common/Clock.h"
#include "kits/common/Numbers.h"

namespace qm {
namespace {

using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr double kDaySeconds = 86400;
constexpr std::int64_t kCycleYears = 400;  // after which the calendar repeats
constexpr std::int64_t kCycleDays = 146097;
constexpr std::int64_t kDayOfEpoch = 25569;  // serial day of 1 January 1970

std::int64_t FloorDivide(std::int64_t value, std::int64_t by) {
  return value / by - (value % by < 0 ? 1 : 0);
}

std::int32_t Clamped(std::int64_t day) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(Limit<std::int64_t>(day, Limits::min(), Limits::max()));
}

// Seconds from midnight of a day, which may lie outside it, as a moment.
tyLogDateTime Moment(std::int64_t day, double seconds) {
  const double days = std::floor(seconds / kDaySeconds);
  day += RoundToWhole(Limit(days, -1e10, 1e10));
  float time = static_cast<float>(seconds - days * kDaySeconds);
  // Single precision may round the last milliseconds of a day up to midnight.
  if (time >= static_cast<float>(kDaySeconds)) {
    time = 0;
    ++day;
  }
  return {Clamped(day), time};
}

}  // namespace

std::int32_t DayNumber(const CalendarDate& date) {
  const std::int64_t months = std::int64_t{date.year} * 12 + date.month - 1;
  const std::int64_t year = FloorDivide(months, 12);
  const std::int64_t cycle = FloorDivide(year, kCycleYears);
  const year_month_day first(std::chrono::year(static_cast<int>(year - cycle * kCycleYears)),
                             std::chrono::month(static_cast<unsigned>(months - year * 12 + 1)),
                             std::chrono::day(1));
  const std::int64_t days = sys_days(first).time_since_epoch().count();
  return Clamped(days + cycle * kCycleDays + kDayOfEpoch + date.day - 1);
}

CalendarDate DateOfDay(std::int32_t dayNumber) {
  const std::int64_t days = dayNumber - kDayOfEpoch;
  const std::int64_t cycle = FloorDivide(days, kCycleDays);
  const year_month_day date{sys_days(std::chrono::days(days - cycle * kCycleDays))};
  return {static_cast<std::int32_t>(int(date.year()) + cycle * kCycleYears),
          static_cast<std::int32_t>(unsigned(date.month())), static_cast<std::int32_t>(unsigned(date.day()))};
}

tyLogDateTime DateTimeNow(const Clock& clock) {
  return LocalDateTime(clock.Now());
}

tyLogDateTime LocalDateTime(std::chrono::system_clock::time_point moment) {
  const auto whole = std::chrono::floor<std::chrono::seconds>(moment);
  const std::time_t seconds = std::chrono::system_clock::to_time_t(whole);
  std::tm local{};
  if (localtime_r(&seconds, &local) == nullptr) return {};
  const std::int32_t day = DayNumber({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday});
  const double fraction = std::chrono::duration<double>(moment - whole).count();
  return Moment(day, local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec + fraction);
}

tyLogDateTime AddSeconds(const tyLogDateTime& moment, double seconds) {
  const double total = static_cast<double>(moment.Time) + seconds;
  return std::isfinite(total) ? Moment(moment.Date, total) : moment;
}

double SecondsBetween(const tyLogDateTime& first, const tyLogDateTime& second) {
  const double days = static_cast<double>(second.Date) - static_cast<double>(first.Date);
  return days * kDaySeconds + static_cast<double>(second.Time) - static_cast<double>(first.Time);
}

double SerialDateTime(const tyLogDateTime& moment) {
  return moment.Date + static_cast<double>(moment.Time) / kDaySeconds;
}

tyLogDateTime FromSerialDateTime(double serial) {
  if (!std::isfinite(serial)) return {};
  const double day = std::floor(serial);
  // A present-day serial is good to about a microsecond; without rounding, whole seconds would not come back
  // whole.
  constexpr double kPrecision = 1e5;
  const double seconds = std::nearbyint((serial - day) * kDaySeconds * kPrecision) / kPrecision;
  return Moment(RoundToWhole(Limit(day, -1e10, 1e10)), seconds);
}

std::string DateText(std::int32_t dayNumber) {
  const CalendarDate date = DateOfDay(dayNumber);
  return fmt::format("{:04}-{:02}-{:02}", date.year, date.month, date.day);
}

std::string CompactDateText(std::int32_t dayNumber) {
  const CalendarDate date = DateOfDay(dayNumber);
  return fmt::format("{:04}{:02}{:02}", date.year, date.month, date.day);
}

std::string DateTimeText(const tyLogDateTime& moment) {
  const tyLogDateTime inDay = AddSeconds({moment.Date, 0}, static_cast<double>(moment.Time));
  return DateText(inDay.Date) + 'T' + SecondsToText(std::floor(static_cast<double>(inDay.Time)), ettClock);
}

}  // namespace qm
