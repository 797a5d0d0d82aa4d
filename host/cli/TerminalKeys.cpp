#include "cli/TerminalKeys.h"

#include <array>

#include "kits/common/Utf8.h"

namespace qm::cli {

namespace {

constexpr char kEscape = '\x1b';

struct LetterKey {
  char letter;
  std::int32_t code;
};

// Behind ESC O and ESC [.
constexpr LetterKey kLetters[] = {{'A', ekUp},     {'B', ekDown},   {'C', ekRight}, {'D', ekLeft},
                                  {'H', ekHome},   {'F', ekEnd},    {'P', ekF1},    {'Q', ekF1 + 1},
                                  {'R', ekF1 + 2}, {'S', ekF1 + 3}, {'M', ekEnter}};

// By the number of ESC [ number ~; 0 stands for none.
constexpr std::array<std::int32_t, 35> kNumbers = [] {
  std::array<std::int32_t, 35> keys{};
  keys[1] = keys[7] = ekHome;
  keys[4] = keys[8] = ekEnd;
  keys[5] = ekPageUp;
  keys[6] = ekPageDown;
  // The old terminals' numbers leave a gap behind every five or so.
  constexpr int kFunctionKeys[] = {11, 12, 13, 14, 15, 17, 18, 19, 20, 21, 23, 24, 25, 26, 28, 29};
  std::int32_t code = ekF1;
  for (const int number : kFunctionKeys) keys[static_cast<std::size_t>(number)] = code++;
  return keys;
}();

// xterm counts shift 1, alt 2, control 4, meta 8, and adds 1.
std::int16_t HeldOf(std::int32_t parameter) {
  const std::int32_t bits = parameter > 1 ? parameter - 1 : 0;
  return static_cast<std::int16_t>((bits & 1 ? ehShift : 0) | (bits & 4 ? ehControl : 0) |
                                   (bits & (2 | 8) ? ehAlt : 0));
}

// rxvt tells the same by what ends the sequence.
std::int16_t HeldOfEnding(char ending) {
  return ending == '$' ? ehShift : ending == '^' ? ehControl : ending == '@' ? ehShift | ehControl : 0;
}

bool IsParameter(char byte) {
  return byte >= '0' && byte <= '?';
}

struct Sequence {
  std::array<std::int32_t, 2> parameters{};
  std::size_t count = 0;  // of parameters
  char ending = 0;
};

Key KeyOf(const Sequence& sequence) {
  const auto [first, second] = sequence.parameters;
  if (sequence.ending == 'Z') return {ekTab, ehShift};
  if (const std::int16_t held = HeldOfEnding(sequence.ending); sequence.ending == '~' || held != 0) {
    const std::int32_t code = first > 0 && first < static_cast<std::int32_t>(kNumbers.size())
                                  ? kNumbers[static_cast<std::size_t>(first)]
                                  : ekUnknown;
    return {code, static_cast<std::int16_t>(held | HeldOf(second))};
  }
  for (const LetterKey& row : kLetters)
    // A single parameter before a letter is the held keys' in the older manner.
    if (row.letter == sequence.ending) return {row.code, HeldOf(sequence.count > 1 ? second : first)};
  return {};
}

// What begins behind ESC O or ESC [. Length 0 when it is not all there yet.
std::size_t TakeSequence(std::string_view bytes, Key& key) {
  // The Linux console's F1 to F5: ESC [ [ A to E.
  if (bytes.starts_with('[')) {
    if (bytes.size() < 2) return 0;
    key = {bytes[1] >= 'A' && bytes[1] <= 'E' ? ekF1 + (bytes[1] - 'A') : ekUnknown, 0};
    return 2;
  }
  Sequence sequence;
  std::size_t at = 0;
  std::int32_t value = 0;
  const auto close = [&] {
    if (sequence.count < sequence.parameters.size()) sequence.parameters[sequence.count] = value;
    ++sequence.count;
    value = 0;
  };
  for (; at < bytes.size() && IsParameter(bytes[at]); ++at) {
    if (bytes[at] == ';')
      close();
    else if (bytes[at] <= '9' && value < 1000)
      value = value * 10 + (bytes[at] - '0');
  }
  if (at > 0) close();
  if (at == bytes.size()) return 0;
  sequence.ending = bytes[at];
  key = KeyOf(sequence);
  return at + 1;
}

// Length of the first key, 0 when it is not all there yet.
std::size_t TakeKey(std::string_view bytes, Key& key) {
  if (bytes.front() != kEscape) {
    std::size_t length = 0;
    char32_t character = 0;
    if (!NextCharacter(bytes, length, character)) {
      key = {};
      return 1;
    }
    key = {character == '\n' ? ekEnter : static_cast<std::int32_t>(character), 0};
    return length;
  }
  if (bytes.size() < 2) return 0;
  if (bytes[1] == '[' || bytes[1] == 'O') {
    const std::size_t length = TakeSequence(bytes.substr(2), key);
    return length == 0 ? 0 : length + 2;
  }
  // Alt puts an escape before what the key sends without it.
  const std::size_t length = TakeKey(bytes.substr(1), key);
  key.held |= ehAlt;
  return length == 0 ? 0 : length + 1;
}

}  // namespace

void KeyReader::Feed(std::string_view bytes, Time now) {
  if (bytes.empty()) return;
  m_bytes += bytes;
  m_fed = now;
}

bool KeyReader::Take(Key& key, Time now) {
  if (m_bytes.empty()) return false;
  std::size_t length = TakeKey(m_bytes, key);
  if (length == 0) {
    if (now - m_fed < kPatience) return false;
    key = {static_cast<unsigned char>(m_bytes.front()), 0};
    length = 1;
  }
  m_bytes.erase(0, length);
  return true;
}

}  // namespace qm::cli
