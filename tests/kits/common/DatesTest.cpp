#include "kits/common/Dates.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <time.h>

#include <cmath>
#include <limits>

#include "kits/common/Clock.h"

namespace qm {
namespace {

TEST(Dates, EveryDayNumberIsADate) {
  const std::pair<CalendarDate, std::int32_t> cases[] = {
      {{1899, 12, 30}, 0},  {{1900, 1, 1}, 2},       {{1970, 1, 1}, 25569},   {{2000, 2, 29}, 36585},
      {{1899, 12, 29}, -1}, {{2026, 10, 14}, 46309}, {{1600, 1, 1}, -109571}, {{9999, 12, 31}, 2958465}};
  for (const auto& [date, day] : cases) EXPECT_EQ(DayNumber(date), day) << date.year;
  for (std::int64_t day = std::numeric_limits<std::int32_t>::min();
       day <= std::numeric_limits<std::int32_t>::max(); day += 999331)
    ASSERT_EQ(DayNumber(DateOfDay(static_cast<std::int32_t>(day))), day);
}

TEST(Dates, NowIsLocalTime) {
  setenv("TZ", "XYZ-05:30", 1);
  tzset();
  ManualClock clock(std::chrono::sys_days(std::chrono::year(2024) / 2 / 28) + std::chrono::hours(20) +
                    std::chrono::milliseconds(250));
  EXPECT_EQ(DateTimeNow(clock), (tyLogDateTime{45351, 5400.25f}));
  clock.Advance(std::chrono::hours(24));
  EXPECT_EQ(DateTimeText(DateTimeNow(clock)), "2024-03-01T01:30:00");
  unsetenv("TZ");
  tzset();
}

TEST(Dates, SecondsCarryOverMidnight) {
  const tyLogDateTime start{100, 86399};
  const std::pair<double, tyLogDateTime> cases[] = {
      {2, {101, 1}}, {-86400.0 * 3, {97, 86399}}, {0.9999, {101, 0}}, {std::nan(""), start}};
  for (const auto& [seconds, moment] : cases) EXPECT_EQ(AddSeconds(start, seconds), moment) << seconds;
  EXPECT_EQ(AddSeconds(start, 1e300).Date, std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(SecondsBetween(start, {101, 1}), 2);
  EXPECT_EQ(SecondsBetween({101, 1}, start), -2);
}

TEST(Dates, SerialMomentsKeepWholeSecondsAndMilliseconds) {
  for (const float time : {0.0f, 1.0f, 43201.0f, 86399.0f, 0.001f, 12345.678f}) {
    const tyLogDateTime moment{46309, time};
    EXPECT_EQ(FromSerialDateTime(SerialDateTime(moment)), moment) << time;
  }
  EXPECT_EQ(FromSerialDateTime(-0.25), (tyLogDateTime{-1, 64800}));
  EXPECT_EQ(FromSerialDateTime(std::nan("")), tyLogDateTime{});
}

TEST(Dates, DateTextsAndTheirReader) {
  EXPECT_EQ(DateText(46309), "2026-10-14");
  EXPECT_EQ(CompactDateText(46309), "20261014");
  for (const char* text :
       {"2026-10-14", "2026/10/14", "14/10/2026", "14-10-2026", "20261014", " 2026-10-14 "})
    EXPECT_EQ(ParseDate(text), 46309) << text;
  for (const char* text : {"", "2026-13-01", "2026-02-29", "31/04/2026", "2026-10", "2026-10-14-1",
                           "26-10-14", "2026-10/14", "20261x14", "2026-10-14T10:00:00", "----"})
    EXPECT_EQ(ParseDate(text), 0) << text;
}

TEST(Dates, TimeTextsOfBothModesAreWrittenAndRead) {
  const struct {
    double seconds;
    const char *duration, *clock, *hundredths;
  } cases[] = {{0, "0:00.00", "00:00:00", "00:00:00.00"},
               {75.5, "1:15.50", "00:01:15", "00:01:15.50"},
               {3599.996, "1:00:00.00", "01:00:00", "01:00:00.00"},
               {2.9999998, "0:03.00", "00:00:03", "00:00:03.00"},
               {86399.9, "23:59:59.90", "23:59:59", "23:59:59.90"},
               {360000, "100:00:00.00", "100:00:00", "100:00:00.00"},
               {-65.25, "-1:05.25", "-00:01:05", "-00:01:05.25"},
               {-0.001, "0:00.00", "00:00:00", "00:00:00.00"},
               {std::nan(""), "0:00.00", "00:00:00", "00:00:00.00"}};
  for (const auto& c : cases) {
    EXPECT_EQ(SecondsToText(c.seconds, ettDuration), c.duration);
    EXPECT_EQ(SecondsToText(c.seconds, ettClock), c.clock);
    EXPECT_EQ(SecondsToText(c.seconds, ettClock, true), c.hundredths);
  }
  for (double seconds = -4000; seconds < 100000; seconds += 997.37) {
    EXPECT_NEAR(TextToSeconds(SecondsToText(seconds, ettDuration)), seconds, 0.0051);
    EXPECT_NEAR(TextToSeconds(SecondsToText(seconds, ettClock, true)), seconds, 0.0051);
  }
  const std::pair<const char*, double> texts[] = {
      {"12.25", 12.25}, {"90", 90},  {" 1:30 ", 90}, {"-0:05.5", -5.5}, {"", 0},     {"1:2:3:4", 0},
      {"1::2", 0},      {"a:10", 0}, {"1.5:10", 0},  {"10:3x", 0},      {"1:+5", 0}, {"1.2.3", 0}};
  for (const auto& [text, seconds] : texts) EXPECT_DOUBLE_EQ(TextToSeconds(text), seconds) << text;
}

}  // namespace
}  // namespace qm
