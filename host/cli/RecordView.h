#pragma once
#include <chrono>
#include <cstdint>
#include <string>

#include "contract/RecorderVocabulary.h"

namespace qm {
class cRecorder;
}

namespace qm::cli {

class Terminal;

// What is shown of a recording at one moment.
struct RecordState {
  enRecorderStatus status = rsClosed;
  float seconds = 0, remaining = 0;
  std::int32_t left = 0, right = 0;  // 16-bit peaks
  bool asking = false;               // whether to discard
};

// One line of at most `width` cells: status, time and levels, or the question.
std::string DrawRecording(const RecordState& state, std::size_t width);

// The line, redrawn in place at the foot of the terminal.
class RecordView {
 public:
  RecordView(const cRecorder& recorder, const Terminal& terminal)
      : m_recorder(recorder), m_terminal(terminal) {}

  // Draws unless it has only just done so.
  void Refresh(bool asking);
  void Erase();

 private:
  using Clock = std::chrono::steady_clock;

  const cRecorder& m_recorder;
  const Terminal& m_terminal;
  Clock::time_point m_next{};
};

}  // namespace qm::cli
