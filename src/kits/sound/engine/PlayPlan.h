#pragma once
#include <cstdint>

namespace qm {

// The way of a voice through its file, from an origin to the audio end, with the turns of a loop on the way.
//
// Three counts of frames meet here. A *source frame* is a frame of the file. The *way* counts the source
// frames that have been passed since the origin, loops counted as often as they are played. The *out* count
// is frames of the device since the origin. The plan is a plain value: the reader that makes the sound and
// the voice that times it follow the same one and need not talk.
struct PlayPlan {
  std::int64_t origin = 0;     // source frame at way 0
  std::int64_t end = 0;        // source frame behind the last one played; >= origin
  std::int64_t loopStart = 0;  // the loop, used only with hasLoop: origin < loopEnd <= end
  std::int64_t loopEnd = 0;
  std::int64_t turns = 0;  // jumps from loopEnd to loopStart that are to be made
  bool hasLoop = false;
  double resampling = 1;  // device frames per source frame, before stretching
  double stretch = 1;     // the audio lasts this many times as long

  friend bool operator==(const PlayPlan&, const PlayPlan&) = default;

  // Every out frame is a source frame, unchanged.
  bool Straight() const { return resampling == 1 && stretch == 1; }

  std::int64_t Length() const;  // way at the end
  std::int64_t OutLength() const { return Out(Length()); }

  std::int64_t Out(std::int64_t way) const;       // to nearest, a half to the even neighbour
  std::int64_t WayAtOut(std::int64_t out) const;  // the smallest way whose Out is at or behind `out`

  std::int64_t Source(std::int64_t way) const;  // source frame at a way; `end` at or behind Length()
  double SourcePosition(double way) const;      // the same between frames

  // Frames that can be read in one piece from a way on: to the next turn or the end. 0 only at the end.
  std::int64_t Run(std::int64_t way) const;

  std::int64_t TurnsDone(std::int64_t way) const;
  std::int64_t TurnWay(std::int64_t turn) const;  // way of turn 0, 1, ..., turns - 1
  std::int64_t LoopLeft() const;                  // way at which loopEnd is passed for good; with hasLoop

  // The first way at or behind `from` at which the source frame is reached (`end` counts as reached at the
  // end); -1 when it is not on the way any more.
  std::int64_t NextVisit(std::int64_t sourceFrame, std::int64_t from) const;
};

}  // namespace qm
