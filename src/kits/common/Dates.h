#pragma once
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

// Dates on the serial scale: day 0 is 30 December 1899; a time of day is a fraction of a day or seconds after
// midnight. Everything is local time.
namespace qm {

class Clock;

// The 8-byte date and time record: whole day and seconds after midnight. Day 0 at 0 seconds means none.
struct tyLogDateTime {
  std::int32_t Date = 0;  // serial day number
  float Time = 0;         // seconds after midnight
  friend bool operator==(const tyLogDateTime&, const tyLogDateTime&) = default;
};

struct CalendarDate {
  std::int32_t year = 1899;
  std::int32_t month = 12;  // 1 to 12
  std::int32_t day = 30;    // 1 to 31
};

std::int32_t DayNumber(const CalendarDate& date);  // proleptic Gregorian
CalendarDate DateOfDay(std::int32_t dayNumber);

tyLogDateTime DateTimeNow(const Clock& clock);
tyLogDateTime LocalDateTime(std::chrono::system_clock::time_point moment);

// The moment that many seconds later (or earlier, for negative seconds).
tyLogDateTime AddSeconds(const tyLogDateTime& moment, double seconds);
// Seconds from first to second.
double SecondsBetween(const tyLogDateTime& first, const tyLogDateTime& second);

// Serial date-time as a double: day number plus fraction of the day, and back.
double SerialDateTime(const tyLogDateTime& moment);
tyLogDateTime FromSerialDateTime(double serial);

// "yyyy-mm-dd", and "yyyymmdd".
std::string DateText(std::int32_t dayNumber);
std::string CompactDateText(std::int32_t dayNumber);
// "yyyy-mm-ddThh:mm:ss".
std::string DateTimeText(const tyLogDateTime& moment);
// The day number of "yyyy-mm-dd", "yyyy/mm/dd", "dd/mm/yyyy", "dd-mm-yyyy" or "yyyymmdd"; 0 for anything else.
std::int32_t ParseDate(std::string_view text);

enum enTimeText : std::int32_t {
  ettDuration = 1,  // "m:ss.hh", growing to "h:mm:ss.hh"
  ettClock = 2,     // "hh:mm:ss", with ".hh" where hundredths are asked for
};

std::string SecondsToText(double seconds, enTimeText mode, bool hundredths = false);
// Takes every form that SecondsToText writes, and plain seconds; 0 for anything else.
double TextToSeconds(std::string_view text);

}  // namespace qm
