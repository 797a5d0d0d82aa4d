#pragma once
#include <cstdint>
#include <functional>
#include <vector>

#include "kits/sound/ctlVellanPlayer.h"

namespace qm {

// A moment of a volume change that is to be told of.
struct VolumePoint {
  enum Kind : std::int32_t { Start, Notify, End } kind = Start;
  std::int16_t reference = 0;
};

// The volume of a voice along its way: what was set by hand, and ramps over it. Volumes are per cent, as
// numbers with fractions; times are out frames of the voice's plan. Used with the mixer's lock held.
//
// Of several changes the one that starts last rules; one that it overtakes is over. A jump of the volume
// while the voice sounds is drawn out over `rampFrames`.
class VolumeLine {
 public:
  explicit VolumeLine(std::size_t rampFrames) : m_rampFrames(static_cast<std::int64_t>(rampFrames)) {}

  // When a volume change starts: its out frame, or -1 when its start is not on the way any more.
  using Schedule = std::function<std::int64_t(const tyVolumeChange&)>;
  // How many out frames a number of seconds of item time lasts.
  using Span = std::function<std::int64_t(float seconds)>;

  // By hand, at out frame `now`; ends a change that is under way.
  void Set(double percent, std::int64_t now, bool sounding);
  double Volume(std::int64_t now) const;

  // Replaces the change of the same reference. One whose start has passed starts at `now`.
  void Add(const tyVolumeChange& change, std::int64_t now, const Schedule& schedule, const Span& span);
  // One that is under way leaves the volume where it is.
  bool Remove(std::int16_t reference, std::int64_t now);
  void Clear() { m_changes.clear(); }

  // The way has changed: out frame `now` of the old plan is frame 0 of the new one, and frames last `scale`
  // times as long. With `rewound` changes that are under way or over, and whose start lies ahead again, wait
  // for it.
  void Rebase(std::int64_t now, double scale, bool rewound, const Schedule& schedule, const Span& span);

  // The next out frame, at or behind `now`, at which Reach has something to do; the largest value for none.
  std::int64_t NextStop(std::int64_t now) const;
  // Does what is due at `now`, and says what is to be told.
  void Reach(std::int64_t now, bool sounding, std::vector<VolumePoint>& points);

  // The volume of frame `now` and its growth a frame, valid for `frames` frames, jumps drawn out.
  struct Line {
    double volume = 0;
    double step = 0;
    std::int64_t frames = 0;
  };
  Line LineAt(std::int64_t now) const;
  // Frames have been rendered.
  void Advance(std::size_t frames);
  bool Ramping() const { return Active() != nullptr; }

 private:
  enum State : std::int32_t { Waiting, Running, Over };
  struct Change {
    tyVolumeChange change;
    State state = Waiting;
    std::int64_t start = -1;   // out frame; -1: does not come
    std::int64_t notify = -1;  // out frame; -1: told, or not asked for
    std::int64_t end = 0;      // out frame
    std::int64_t span = 0;     // out frames
    double before = 0;         // volume to return to
  };
  const Change* Active() const;
  Change* Active() { return const_cast<Change*>(static_cast<const VolumeLine*>(this)->Active()); }
  Change* NextDue(std::int64_t now);
  void StartChange(Change& change, std::int64_t now, std::vector<VolumePoint>& points);
  void EndActive(std::int64_t now, std::vector<VolumePoint>& points);
  void DrawOut(double jump, bool sounding);

  const std::int64_t m_rampFrames;
  std::vector<Change> m_changes;
  double m_volume = 100;         // without changes
  double m_drawn = 0;            // what a jump still keeps back: volume shown minus volume due, at its start
  std::int64_t m_drawnLeft = 0;  // frames until that is gone
};

}  // namespace qm
