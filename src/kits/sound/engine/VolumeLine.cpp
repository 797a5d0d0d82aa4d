#include "kits/sound/engine/VolumeLine.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace qm {

namespace {

constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();

// Where on a ramp, from 0 to 1, its notify level is crossed; below 0 when it is not. A ramp that starts
// beyond the level has crossed it at its start.
double NotifyFraction(const tyVolumeChange& change) {
  if (change.NotifyVolume < 0) return -1;
  const double start = change.StartVolume, end = change.EndVolume, level = change.NotifyVolume;
  if (start == end) return level == start ? 0 : -1;
  const double fraction = (level - start) / (end - start);
  return fraction > 1 ? -1 : std::max(0.0, fraction);
}

// The volume of a running change.
double RampVolume(const tyVolumeChange& change, std::int64_t span, std::int64_t left) {
  if (span <= 0 || left <= 0) return change.EndVolume;
  const double passed = static_cast<double>(span - left) / static_cast<double>(span);
  return change.StartVolume + (change.EndVolume - change.StartVolume) * passed;
}

}  // namespace

const VolumeLine::Change* VolumeLine::Active() const {
  const auto running = std::find_if(m_changes.begin(), m_changes.end(),
                                    [](const Change& change) { return change.state == Running; });
  return running == m_changes.end() ? nullptr : &*running;
}

VolumeLine::Change* VolumeLine::NextDue(std::int64_t now) {
  const auto due = std::find_if(m_changes.begin(), m_changes.end(), [&](const Change& change) {
    return change.state == Waiting && change.start >= 0 && change.start <= now;
  });
  return due == m_changes.end() ? nullptr : &*due;
}

double VolumeLine::Volume(std::int64_t now) const {
  const Change* active = Active();
  return active ? RampVolume(active->change, active->span, active->end - now) : m_volume;
}

// The volume has dropped by `jump` at once; what is heard follows over the ramp.
void VolumeLine::DrawOut(double jump, bool sounding) {
  m_drawnLeft = sounding ? m_rampFrames : 0;
  m_drawn = jump;
}

void VolumeLine::Set(double percent, std::int64_t now, bool sounding) {
  const double shown = LineAt(now).volume;
  std::erase_if(m_changes, [](const Change& change) { return change.state == Running; });
  m_volume = percent;
  DrawOut(shown - percent, sounding);
}

void VolumeLine::Add(const tyVolumeChange& change, std::int64_t now, const Schedule& schedule,
                     const Span& span) {
  Remove(change.Reference, now);
  Change added{.change = change};
  added.start = std::max(now, schedule(change));
  added.span = span(change.Duration);
  m_changes.push_back(added);
}

bool VolumeLine::Remove(std::int16_t reference, std::int64_t now) {
  const auto found = std::find_if(m_changes.begin(), m_changes.end(),
                                  [&](const Change& change) { return change.change.Reference == reference; });
  if (found == m_changes.end()) return false;
  if (found->state == Running) m_volume = Volume(now);
  m_changes.erase(found);
  return true;
}

void VolumeLine::Rebase(std::int64_t now, double scale, bool rewound, const Schedule& schedule,
                        const Span& span) {
  const auto moved = [&](std::int64_t out) {
    return static_cast<std::int64_t>(std::llrint(static_cast<double>(out - now) * scale));
  };
  for (Change& change : m_changes) {
    const std::int64_t start = schedule(change.change);
    if (change.state == Running && (!rewound || start < 0)) {
      change.span = static_cast<std::int64_t>(std::llrint(static_cast<double>(change.span) * scale));
      change.end = moved(change.end);
      if (change.notify >= 0) change.notify = std::max<std::int64_t>(0, moved(change.notify));
      continue;
    }
    if (change.state == Running) m_volume = Volume(now);
    change.span = span(change.change.Duration);
    if (change.state != Over || (rewound && start >= 0)) {
      change.state = Waiting;
      change.start = std::max<std::int64_t>(0, start);
    }
  }
}

std::int64_t VolumeLine::NextStop(std::int64_t now) const {
  std::int64_t next = kNever;
  for (const Change& change : m_changes) {
    if (change.state == Waiting) next = std::min(next, change.start);
    if (change.state != Running) continue;
    next = std::min(next, change.end);
    if (change.notify >= 0) next = std::min(next, change.notify);
  }
  return next == kNever ? kNever : std::max(now, next);
}

void VolumeLine::StartChange(Change& change, std::int64_t now, std::vector<VolumePoint>& points) {
  change.state = Running;
  change.before = m_volume;
  change.end = now + change.span;
  const double fraction = NotifyFraction(change.change);
  const double toNotify = fraction * static_cast<double>(change.span);
  change.notify = fraction < 0 ? -1 : now + static_cast<std::int64_t>(std::llrint(toNotify));
  points.push_back({VolumePoint::Start, change.change.Reference});
}

void VolumeLine::EndActive(std::int64_t now, std::vector<VolumePoint>& points) {
  Change& change = *Active();
  m_volume = change.change.SetVolumePermanently ? Volume(now) : change.before;
  change.state = Over;
  points.push_back({VolumePoint::End, change.change.Reference});
  std::erase_if(m_changes,
                [](const Change& over) { return over.state == Over && over.change.RemoveWhenComplete; });
}

void VolumeLine::Reach(std::int64_t now, bool sounding, std::vector<VolumePoint>& points) {
  for (;;) {
    const double shown = LineAt(now).volume;
    const double due = Volume(now);
    Change* active = Active();
    if (active && active->notify >= 0 && active->notify <= now) {
      active->notify = -1;
      points.push_back({VolumePoint::Notify, active->change.Reference});
    }
    if (active && (active->end <= now || NextDue(now))) {
      EndActive(now, points);
    } else if (Change* next = NextDue(now)) {
      StartChange(*next, now, points);
    } else {
      return;
    }
    if (Volume(now) != due) DrawOut(shown - Volume(now), sounding);
  }
}

VolumeLine::Line VolumeLine::LineAt(std::int64_t now) const {
  Line line{Volume(now), 0, kNever};
  const Change* active = Active();
  if (active && active->end > now) {
    line.step = (active->change.EndVolume - active->change.StartVolume) / static_cast<double>(active->span);
    line.frames = active->end - now;
  }
  if (m_drawnLeft > 0) {
    const double step = m_drawn / static_cast<double>(m_rampFrames);
    line.volume += step * static_cast<double>(m_drawnLeft);
    line.step -= step;
    line.frames = std::min(line.frames, m_drawnLeft);
  }
  return line;
}

void VolumeLine::Advance(std::size_t frames) {
  m_drawnLeft = std::max<std::int64_t>(0, m_drawnLeft - static_cast<std::int64_t>(frames));
}

}  // namespace qm
