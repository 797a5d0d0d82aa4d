#include "kits/common/Numbers.h"

#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>
#include <random>
#include <system_error>

#include "kits/common/Text.h"

namespace qm {
namespace {

constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

template <class T, class... Format>
std::string ToText(T value, Format... format) {
  std::array<char, 64> buffer;
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format...);
  return {buffer.data(), result.ptr};
}

// Round numbers such as 100000 would come out as 1e+05 by length alone; in the range people read and type,
// the plain form is kept, as long as it has no digits beyond the type's precision.
template <class T>
std::string FloatingText(T value) {
  if (!std::isfinite(value) || value == 0) return "0";
  constexpr T kHighest = std::numeric_limits<T>::digits10 >= 15 ? T(1e15) : T(1e7);
  const T size = std::abs(value);
  if (size >= T(1e-5) && size < kHighest) return ToText(value, std::chars_format::fixed);
  return ToText(value);
}

// Whether decimal text that is out of a double's range is too large rather than too small.
bool IsTooLarge(std::string_view number) {
  const std::size_t mark = std::min(number.find_first_of("eE"), number.size());
  const std::string_view digits = number.substr(0, mark);
  std::int64_t exponent = 0;
  if (mark < number.size()) {
    const bool down = number[mark + 1] == '-';
    const char* first = number.data() + mark + (number[mark + 1] == '+' ? 2 : 1);
    const auto read = std::from_chars(first, number.data() + number.size(), exponent);
    if (read.ec == std::errc::result_out_of_range) return !down;
  }
  const auto point = static_cast<std::int64_t>(std::min(digits.find('.'), digits.size()));
  const auto leading = static_cast<std::int64_t>(digits.find_first_of("123456789"));
  return point - leading + exponent > 0;
}

std::array<unsigned char, 16> RandomBytes() {
  std::array<unsigned char, 16> bytes{};
  if (getentropy(bytes.data(), bytes.size()) == 0) return bytes;
  static std::mt19937_64 engine(
      static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count()) ^
      static_cast<std::uint64_t>(getpid()) << 32);
  for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(engine());
  return bytes;
}

}  // namespace

std::string NumberText(float value) {
  return FloatingText(value);
}
std::string NumberText(double value) {
  return FloatingText(value);
}
std::string NumberText(std::int32_t value) {
  return ToText(value);
}
std::string NumberText(std::int64_t value) {
  return ToText(value);
}

std::string FixedText(double value, int decimals) {
  if (!std::isfinite(value)) value = 0;
  return fmt::format("{:.{}f}", value, Limit(decimals, 0, 300));
}

double ParseNumber(std::string_view text) {
  text = Trim(text);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const std::size_t point = text.starts_with('.') ? 1 : 0;
  if (text.size() <= point || !IsDigit(text[point])) return 0;

  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    const std::string_view taken(text.data(), static_cast<std::size_t>(result.ptr - text.data()));
    value = IsTooLarge(taken) ? std::numeric_limits<double>::max() : 0;
  }
  return negative ? -value : value;
}

std::int32_t ParseWhole(std::string_view text) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(
      Limit<std::int64_t>(RoundToWhole(ParseNumber(text)), Limits::min(), Limits::max()));
}

std::int64_t RoundToWhole(double value) {
  constexpr double kBeyond = 9223372036854775808.0;  // 2^63
  if (std::isnan(value)) return 0;
  if (value >= kBeyond) return std::numeric_limits<std::int64_t>::max();
  if (value < -kBeyond) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(std::nearbyint(value));
}

std::string NewGuid() {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::array<unsigned char, 16> bytes = RandomBytes();
  bytes[6] = static_cast<unsigned char>(0x40 | (bytes[6] & 0x0F));  // version 4
  bytes[8] = static_cast<unsigned char>(0x80 | (bytes[8] & 0x3F));  // variant 1
  std::string guid = "{";
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) guid += '-';
    guid += kDigits[bytes[i] >> 4];
    guid += kDigits[bytes[i] & 0x0F];
  }
  return guid + '}';
}

}  // namespace qm
