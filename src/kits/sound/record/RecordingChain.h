#pragma once
#include <cstddef>
#include <cstdint>
#include <deque>
#include <limits>
#include <memory>
#include <mutex>
#include <vector>

#include "kits/sound/engine/Mixer.h"
#include "kits/sound/record/LevelTrigger.h"

namespace qm {

class RecordingFile;
class RecordingNotes;
class Resampler;
struct RecordingRequest;

enum enRecordingGate : std::int32_t { ergPaused, ergOpen };

// What happens to the sound of an input on its way into the file: channels, start and trigger, pause, rate;
// and what there is to tell about it. Frames are counted as they come in, whatever becomes of them.
//
// Take and Finish: one thread at a time. The rest: host thread.
class RecordingChain {
 public:
  // File and notes outlive it.
  RecordingChain(const OutputFormat& input, const RecordingRequest& request, RecordingFile& file,
                 RecordingNotes& notes);
  ~RecordingChain();

  // Before the first Take.
  void SetLimit(double seconds);
  // `secondsLeft`: how long the input itself still lasts behind these, below 0 when nobody knows.
  void Take(const float* interleaved, std::size_t frames, double secondsLeft = -1);
  // No more will come: what is inside goes to the file.
  void Finish();
  // Tells the host, once, that there is no more to be recorded.
  void TellEnd();
  bool Ended() const { return m_ended; }

  // From that input frame on; from the next one taken where that has gone by.
  void SetGate(std::uint64_t frame, enRecordingGate gate);
  void SetTriggerLevel(std::int16_t level);

 private:
  struct Command {
    std::uint64_t frame;
    enRecordingGate gate;
  };

  std::size_t ObeyAt(std::uint64_t frame, std::size_t frames);
  void TakePiece(const float* interleaved, std::size_t frames);
  void Record(const float* frames, std::size_t count);
  void Write(const float* frames, std::size_t count);
  void Measure(const float* frames, std::size_t count);
  double Remaining() const;
  void TellPosition();
  void TellProgress();
  void TellState(std::int32_t state);

  const OutputFormat m_input;
  const std::size_t m_channels;  // of the file
  const std::uint64_t m_noteFrames;
  RecordingFile& m_file;
  RecordingNotes& m_notes;
  std::uint64_t m_leftOut;  // frames still to be left out at the start
  LevelTrigger m_trigger;
  std::unique_ptr<Resampler> m_resampler;
  std::vector<float> m_mapped, m_begin, m_resampled;
  std::uint64_t m_taken = 0;
  std::uint64_t m_notedAt = 0;
  std::int64_t m_notedFrames = 0;  // recorded at the last note
  double m_secondsLeft = -1;       // of the input
  float m_left = 0, m_right = 0;
  std::int64_t m_limit = std::numeric_limits<std::int64_t>::max();  // frames of the file
  bool m_failed = false;
  bool m_ended = false;
  bool m_finished = false;
  enRecordingGate m_gate = ergOpen;
  std::mutex m_mutex;  // for the next two
  std::deque<Command> m_commands;
  std::int32_t m_newLevel = -1;
};

}  // namespace qm
