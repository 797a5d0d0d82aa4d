#include "kits/common/Numbers.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <regex>

namespace qm {
namespace {

constexpr double kInfinite = std::numeric_limits<double>::infinity();

TEST(Numbers, TextIsTheShortestOfItsTypeAndReadsBackToTheSameValue) {
  const std::pair<double, const char*> doubles[] = {
      {0, "0"},        {-0.0, "0"},     {0.1, "0.1"},         {-1, "-1"},
      {1e20, "1e+20"}, {1e-9, "1e-09"}, {kInfinite, "0"},     {NAN, "0"},
      {1e15, "1e+15"}, {1e5, "100000"}, {0.00125, "0.00125"}, {3.005011, "3.005011"}};
  for (const auto& [value, text] : doubles) EXPECT_EQ(NumberText(value), text);
  EXPECT_EQ(NumberText(45000.52100694444), "45000.52100694444");
  EXPECT_EQ(NumberText(123456789012345.0), "123456789012345");
  const std::pair<float, const char*> singles[] = {{0.1f, "0.1"}, {86399.99f, "86399.99"}, {1e5f, "100000"}};
  for (const auto& [value, text] : singles) EXPECT_EQ(NumberText(value), text);
  EXPECT_EQ(NumberText(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
  std::mt19937_64 random(1);
  for (int i = 0; i < 20000; ++i) {
    const std::uint64_t bits = random();
    const double value = std::bit_cast<double>(bits);
    const float single = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
    const double everyday = static_cast<double>(bits % 1000000007) / 1000;
    ASSERT_EQ(ParseNumber(NumberText(value)), std::isfinite(value) ? value : 0);
    ASSERT_EQ(static_cast<float>(ParseNumber(NumberText(single))), std::isfinite(single) ? single : 0);
    ASSERT_EQ(ParseNumber(NumberText(everyday)), everyday);
  }
}

TEST(Numbers, ReadingStopsAtTheFirstCharacterThatDoesNotFit) {
  constexpr double kLargest = std::numeric_limits<double>::max();
  const std::string zeros(400, '0'), nines(400, '9');
  for (const char* text : {"", "-", "+-1", "--1", ".", ".e1", "inf", "-nan", "0x10", "Line 3", "1e-999",
                           "1e-99999999999999999999"})
    EXPECT_EQ(ParseNumber(text), 0) << text;
  for (const std::string text : {"1e999", "1e99999999999999999999"}) {
    EXPECT_EQ(ParseNumber(text), kLargest);
    EXPECT_EQ(ParseNumber("-" + text), -kLargest);
  }
  const std::pair<const char*, double> cases[] = {{"12.5s", 12.5}, {" \t+3", 3},  {"-.5", -0.5},
                                                  {"5.", 5},       {"1,5", 1},    {"1e3x", 1000},
                                                  {"2e", 2},       {"1.2.3", 1.2}};
  for (const auto& [text, value] : cases) EXPECT_EQ(ParseNumber(text), value) << text;
  EXPECT_EQ(ParseNumber("0." + zeros + "1e5"), 0);
  EXPECT_EQ(ParseNumber("0." + zeros + "1e400"), 0.1);
  EXPECT_EQ(ParseNumber(nines + "e-5"), kLargest);
  for (const auto& [text, value] : {std::pair{"2.5", 2}, {"3.5", 4}, {"-9e9", INT32_MIN}})
    EXPECT_EQ(ParseWhole(text), value);
}

TEST(Numbers, RoundsHalvesToEvenAndClamps) {
  const std::pair<double, std::int64_t> cases[] = {{0.5, 0},
                                                   {1.5, 2},
                                                   {2.5, 2},
                                                   {-0.5, 0},
                                                   {-1.5, -2},
                                                   {-2.5, -2},
                                                   {NAN, 0},
                                                   {1e300, INT64_MAX},
                                                   {-1e300, INT64_MIN},
                                                   {0x1p63, INT64_MAX},
                                                   {-0x1p63, INT64_MIN},
                                                   {0x1.fffffffffffffp-2, 0}};
  for (const auto& [value, rounded] : cases) EXPECT_EQ(RoundToWhole(value), rounded) << value;
  EXPECT_EQ(Limit(5, 10, 1), 10) << "the low end is tested first";
  EXPECT_EQ(Limit(20, 10, 1), 1);
  EXPECT_EQ(FixedText(12.5, 2), "12.50");
  EXPECT_EQ(FixedText(-0.125, 2), "-0.12");
  EXPECT_EQ(FixedText(kInfinite, 1), "0.0");
}

TEST(Numbers, IdentitiesAreRandomAndWellFormed) {
  const std::regex form("\\{[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}\\}");
  const std::string first = NewGuid(), second = NewGuid();
  EXPECT_TRUE(std::regex_match(first, form)) << first;
  EXPECT_NE(first, second);
}

}  // namespace
}  // namespace qm
