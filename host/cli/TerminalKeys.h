#pragma once
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace qm::cli {

// Keys that are no characters. Function keys count on from ekF1.
enum enKey : std::int32_t {
  ekUnknown = 0,
  ekTab = '\t',
  ekEnter = '\r',
  ekEscape = '\x1b',
  ekBackspace = '\x7f',
  ekUp = 0x110000,
  ekDown,
  ekRight,
  ekLeft,
  ekHome,
  ekEnd,
  ekPageUp,
  ekPageDown,
  ekF1,
  ekF16 = ekF1 + 15,
};

// Bits, as the pool of players counts them.
enum enHeld : std::int16_t { ehShift = 1, ehControl = 2, ehAlt = 4 };

struct Key {
  std::int32_t code = ekUnknown;  // a character's number, or enKey
  std::int16_t held = 0;          // enHeld; of a character only alt
  friend bool operator==(const Key&, const Key&) = default;
};

// Makes keys of the bytes that a terminal sends: xterm's and its kin's, the Linux console's, rxvt's.
class KeyReader {
 public:
  using Time = std::chrono::steady_clock::time_point;
  // A sequence that has begun is waited for this long; then its first byte was the escape key.
  static constexpr auto kPatience = std::chrono::milliseconds(60);

  void Feed(std::string_view bytes, Time now);
  // False when no whole key is there.
  bool Take(Key& key, Time now);

 private:
  std::string m_bytes;
  Time m_fed{};
};

}  // namespace qm::cli
