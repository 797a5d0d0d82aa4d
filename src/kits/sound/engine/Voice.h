#pragma once
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "kits/sound/engine/Mixer.h"
#include "kits/sound/engine/PlayPlan.h"
#include "kits/sound/engine/VolumeLine.h"

namespace qm {

class SourceReader;
class VoiceStream;

// The open file that a voice sounds.
struct VoiceFile {
  std::shared_ptr<SourceReader> reader;
  std::int32_t sampleRate = 0;
  std::int32_t channels = 0;
  std::int64_t frames = 0;
};

// How a voice goes through its file, as a control's properties give it. Seconds of the file.
struct VoiceRoute {
  float audioStart = 0;
  float audioEnd = 0;  // 0 or less, or beyond the file: its end
  float loopStart = 0;
  float loopEnd = 0;
  bool useLoop = false;
  std::int32_t loopPasses = 1;
  float speed = 1;
  float stretch = 1;
};

// When a voice's audio is read.
enum enReading : std::int32_t {
  erdAhead,   // by reader threads
  erdWithin,  // within the call that needs it (offline)
};

// One file sounding in a mixer. Every member is used with the mixer's lock held; commands come from the host
// thread and take effect where rendering stands.
//
// Commands that break the sound off (pause, locate, leave a loop, detach) ramp it out into the mixer's tail
// and, where it goes on elsewhere, ramp it in there. A start from rest is immediate.
class Voice {
 public:
  Voice(std::uint64_t serial, std::weak_ptr<VoiceOwner> owner, VoiceFile file, const OutputFormat& out,
        std::size_t rampFrames, std::size_t ringFrames, enReading reading);
  ~Voice();

  std::uint64_t Serial() const { return m_serial; }
  const std::weak_ptr<VoiceOwner>& Owner() const { return m_owner; }

  // Commands.
  void SetRoute(const VoiceRoute& route, Mixer& mixer);  // goes on at the same place of the file
  void Cue(Mixer& mixer);                                // stops, at the audio start
  void LocatePercent(double percent, Mixer& mixer);      // of the whole file; goes on playing when it was
  void Play();
  void Pause(Mixer& mixer);
  bool LeaveLoop(Mixer& mixer);              // false when not in a loop
  void RampOut(Mixer& mixer);                // what sounded up to now, into the mixer's tail
  void SetMark(const tyPositionMark& mark);  // replaces the one of the same identifier
  bool RemoveMark(std::int32_t eventId);
  void SetVolume(double percent);
  bool AddVolumeChange(const tyVolumeChange& change);
  bool RemoveVolumeChange(std::int16_t reference);

  // State.
  bool Playing() const { return m_playing; }
  bool AtEnd() const { return m_ended; }
  float Seconds() const;  // never below a mark that has been told, nor at one that lies ahead
  float SecondsRemaining() const;
  float Percent() const;
  bool InLoop() const;
  float Volume() const { return static_cast<float>(m_volume.Volume(m_out)); }

  // Rendering.
  // Frames that can be rendered before something is to be told; 0 when it is due now.
  std::int64_t FramesToStop() const;
  // How many of `limit` frames are at hand; 0 with Exhausted() false means that the reader is behind.
  std::size_t Ready(std::size_t limit) const;
  bool Exhausted() const;  // the file has ended or broken off, and all of it has been rendered
  bool Fetch();            // offline: reads on; false when nothing is left to read
  // Tells what is due at this frame, position first.
  void CollectDue(std::int64_t frame, bool onGrid, std::vector<Notification>& pending);
  // Adds `frames` frames, all at hand, to the mix.
  void Mix(float* interleaved, std::size_t frames);

 private:
  struct Mark {
    tyPositionMark mark;
    std::int64_t visit = -1;  // way at which it comes next, -1: not on the way any more
    std::int64_t due = -1;    // out frame of that
    std::int64_t told = -1;   // way at which it was last told, -1: not yet
  };

  enum enMove : std::int32_t { emContinues, emLeavesLoop, emLocates };

  PlayPlan MakePlan(std::int64_t origin, std::int64_t turns) const;
  std::int64_t SourceFrame(double seconds) const;
  std::int64_t EndFrame() const;
  std::int64_t MarkFrame(float seconds) const;
  std::int64_t Way() const { return m_plan.WayAtOut(m_out); }
  std::int64_t NextLoopPoint() const;
  VolumeLine::Schedule VolumeSchedule() const;
  VolumeLine::Span VolumeSpan() const;
  bool Sounding() const { return m_playing && m_sounded; }
  void Follow(const PlayPlan& plan, enMove move);
  void ScheduleMarks();
  void RampIn();
  std::size_t MixRun(float* interleaved, std::size_t frames);
  void Notify(std::vector<Notification>& pending, std::int64_t frame, enNotification kind,
              std::int32_t number = 0, std::int32_t tag = 0);
  void TellVolume(std::int64_t frame, bool onGrid, std::vector<Notification>& pending);
  void TellLoop(std::int64_t frame, std::vector<Notification>& pending);
  void TellMarks(std::int64_t frame, std::vector<Notification>& pending);
  void TellEnd(std::int64_t frame, std::vector<Notification>& pending);
  bool MarkDue() const;

  const std::uint64_t m_serial;
  const std::weak_ptr<VoiceOwner> m_owner;
  const VoiceFile m_file;
  const OutputFormat m_format;
  const std::size_t m_rampFrames;
  const std::size_t m_ringFrames;
  const enReading m_reading;

  VoiceRoute m_route;
  PlayPlan m_plan;
  std::shared_ptr<VoiceStream> m_stream;
  std::int64_t m_out = 0;       // out frames rendered of the plan
  std::int64_t m_loopTold = 0;  // turns told; one more than the plan's for the loop's end
  float m_reached = 0;          // latest mark told since the last move: the least position to report
  bool m_playing = false;
  bool m_ended = false;
  bool m_sounded = false;    // a frame has been rendered since Play
  bool m_resumes = false;    // Play goes on where Pause broke off: ramp in
  std::size_t m_rampIn = 0;  // frames of a ramp-in still to come
  std::vector<Mark> m_marks;
  VolumeLine m_volume;
  std::int64_t m_volumeTold = -1;  // whole per cent
  std::vector<VolumePoint> m_points;
  std::vector<float> m_scratch;  // a ramp's frames
  float m_leftPeak = 0;
  float m_rightPeak = 0;
};

}  // namespace qm
