#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "contract/PlayerVocabulary.h"

namespace qm::cli {

// A player at the desk. Times are seconds.
struct DeskPlayer {
  std::int16_t number = 0;
  std::string caption, title;
  std::string lastPlay;       // what it has played last, for when it is empty
  std::int16_t firstKey = 0;  // of its four function keys; 0 for none
  bool keysWithShift = false;
  enPlayerStatus status = psClosed;
  enPlayerSection section = epsEmpty;
  float toIntroEnd = 0, toExtro = 0, toEnd = 0;
  bool hasExtro = false;             // one that is not the end
  std::int16_t volume = 0;           // per cent
  std::int16_t left = 0, right = 0;  // signed 16-bit peaks
  bool inLoop = false, fading = false;
  bool chosen = false;
};

struct DeskRow {
  std::string title, length, note;
  bool failed = false;
};

struct DeskState {
  std::vector<DeskPlayer> players;
  std::vector<DeskRow> rows;
  std::size_t chosenRow = 0;
  std::string clock;
  std::string message;
  bool refusal = false;
  std::uint64_t misses = 0;
};

enum enDeskStyle : std::int32_t {
  edsPlain,
  edsDim,
  edsBold,
  edsHead,
  edsOnAir,
  edsCued,
  edsWarning,
  edsChosen
};

// A stretch of a line, in one style.
struct DeskSpan {
  enDeskStyle style = edsPlain;
  std::string text;
  friend bool operator==(const DeskSpan&, const DeskSpan&) = default;
};
using DeskLine = std::vector<DeskSpan>;

// The picture: at most `height` lines of exactly `width` cells. What does not fit is shortened, panels first,
// then the list. Without `unicode` its own signs are ASCII alone.
std::vector<DeskLine> DrawDesk(const DeskState& state, std::size_t width, std::size_t height, bool unicode);

}  // namespace qm::cli
