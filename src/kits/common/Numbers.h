#pragma once
#include <cstdint>
#include <string>
#include <string_view>

// Numbers and their text, free of any locale.
namespace qm {

// Shortest decimal text that reads back to the same value: "0.1", "-1", "3.005011", "1e+20".
// Values that are no number read "0" when written.
std::string NumberText(float value);
std::string NumberText(double value);
std::string NumberText(std::int32_t value);
std::string NumberText(std::int64_t value);

// With that many digits behind the decimal point, rounded to nearest: "12.50".
std::string FixedText(double value, int decimals);

// The number at the start of the text, leading blanks skipped. Reading stops at the first character that does
// not fit; with no digits at all the result is 0. A leading plus or minus sign, a decimal point and an
// exponent fit; names such as "inf" do not. A value out of range is clamped to the type's largest finite one.
double ParseNumber(std::string_view text);
// The same, rounded with RoundToWhole and clamped to 32 bits.
std::int32_t ParseWhole(std::string_view text);

// To nearest, a half to the even neighbour. NaN gives 0; values out of range are clamped.
std::int64_t RoundToWhole(double value);

// Clamps; the low end is tested first, so that with low > high the result is low for values below low.
template <class T>
constexpr T Limit(T value, T low, T high) {
  if (value < low) return low;
  if (value > high) return high;
  return value;
}

template <class T>
constexpr T Greater(T first, T second) {
  return first < second ? second : first;
}

// A new random (version 4) identity, in braces, upper case.
std::string NewGuid();

}  // namespace qm
