#include "kits/sound/engine/PlayPlan.h"

#include <algorithm>
#include <cmath>

namespace qm {

std::int64_t PlayPlan::Length() const {
  return end - origin + (hasLoop ? turns * (loopEnd - loopStart) : 0);
}

std::int64_t PlayPlan::Out(std::int64_t way) const {
  if (Straight()) return way;
  return std::llrint(static_cast<double>(way) * resampling * stretch);
}

std::int64_t PlayPlan::WayAtOut(std::int64_t out) const {
  if (Straight()) return out;
  std::int64_t way = static_cast<std::int64_t>(static_cast<double>(out) / (resampling * stretch));
  while (way > 0 && Out(way - 1) >= out) --way;
  while (Out(way) < out) ++way;
  return way;
}

double PlayPlan::SourcePosition(double way) const {
  const double last = static_cast<double>(end);
  if (!hasLoop || way < static_cast<double>(loopEnd - origin))
    return std::min(last, static_cast<double>(origin) + way);
  const double behind = way - static_cast<double>(loopEnd - origin);
  const double pass = static_cast<double>(loopEnd - loopStart);
  if (behind < static_cast<double>(turns) * pass)
    return static_cast<double>(loopStart) + std::fmod(behind, pass);
  return std::min(last, static_cast<double>(loopEnd) + behind - static_cast<double>(turns) * pass);
}

// Exact for any way below 2^53, which is centuries of audio.
std::int64_t PlayPlan::Source(std::int64_t way) const {
  return static_cast<std::int64_t>(SourcePosition(static_cast<double>(way)));
}

std::int64_t PlayPlan::Run(std::int64_t way) const {
  if (!hasLoop) return std::max<std::int64_t>(0, Length() - way);
  const std::int64_t done = TurnsDone(way);
  return std::max<std::int64_t>(0, (done < turns ? TurnWay(done) : Length()) - way);
}

std::int64_t PlayPlan::TurnsDone(std::int64_t way) const {
  if (!hasLoop || way < loopEnd - origin) return 0;
  return std::min(turns, (way - (loopEnd - origin)) / (loopEnd - loopStart) + 1);
}

std::int64_t PlayPlan::TurnWay(std::int64_t turn) const {
  return loopEnd - origin + turn * (loopEnd - loopStart);
}

std::int64_t PlayPlan::LoopLeft() const {
  return TurnWay(turns);
}

std::int64_t PlayPlan::NextVisit(std::int64_t sourceFrame, std::int64_t from) const {
  if (sourceFrame > end) return -1;
  from = std::max<std::int64_t>(0, from);
  const std::int64_t first = sourceFrame - origin;
  if (!hasLoop || turns == 0) return first >= from ? first : -1;
  // Before the first turn.
  if (sourceFrame < loopEnd && first >= from) return first;
  const std::int64_t pass = loopEnd - loopStart;
  // Within a later pass.
  if (sourceFrame >= loopStart && sourceFrame < loopEnd) {
    const std::int64_t inPass = TurnWay(0) + sourceFrame - loopStart;
    const std::int64_t skipped = from <= inPass ? 0 : (from - inPass + pass - 1) / pass;
    return skipped < turns ? inPass + skipped * pass : -1;
  }
  // Behind the loop.
  if (sourceFrame < loopEnd) return -1;
  const std::int64_t behind = first + turns * pass;
  return behind >= from ? behind : -1;
}

}  // namespace qm
