#include "kits/sound/record/RecordingNotes.h"

#include <algorithm>

namespace qm {

void RecordingNotes::Add(RecordingNote note) {
  {
    std::lock_guard lock(m_mutex);
    if (!Merge(note)) m_notes.push_back(std::move(note));
  }
  if (m_onPending) m_onPending();
}

// Into a note of its kind with none but positions and levels behind it.
bool RecordingNotes::Merge(const RecordingNote& note) {
  if (note.kind != ernPosition && note.kind != ernLevel) return false;
  for (auto former = m_notes.rbegin(); former != m_notes.rend(); ++former) {
    if (former->kind != ernPosition && former->kind != ernLevel) return false;
    if (former->kind != note.kind) continue;
    former->frames = note.frames;
    former->remaining = note.remaining;
    former->left = std::max(former->left, note.left);
    former->right = std::max(former->right, note.right);
    return true;
  }
  return false;
}

std::optional<RecordingNote> RecordingNotes::Next() {
  std::lock_guard lock(m_mutex);
  if (m_notes.empty()) return std::nullopt;
  RecordingNote note = std::move(m_notes.front());
  m_notes.pop_front();
  return note;
}

}  // namespace qm
