#pragma once
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

namespace qm {

enum enRecordingNote : std::int32_t { ernPosition, ernLevel, ernState, ernError, ernEnd };

// Something that happened to a recording.
struct RecordingNote {
  enRecordingNote kind = ernPosition;
  std::int32_t number = 0;  // of a state or an error
  std::int64_t frames = 0;  // recorded so far
  double remaining = 0;     // seconds
  std::int16_t left = 0, right = 0;
  std::string text = {};
};

// Notes on their way from the thread that records to the host. A host that does not look gets the last of
// the positions and the greatest of the levels, so that no more than a few ever wait.
class RecordingNotes {
 public:
  explicit RecordingNotes(std::function<void()> onPending) : m_onPending(std::move(onPending)) {}

  void Add(RecordingNote note);
  std::optional<RecordingNote> Next();

 private:
  bool Merge(const RecordingNote& note);

  const std::function<void()> m_onPending;
  std::mutex m_mutex;
  std::deque<RecordingNote> m_notes;
};

}  // namespace qm
