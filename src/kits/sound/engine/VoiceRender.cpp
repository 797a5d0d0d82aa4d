#include <algorithm>
#include <cmath>
#include <limits>

#include "kits/sound/engine/SourceReader.h"
#include "kits/sound/engine/Voice.h"
#include "kits/sound/engine/VoiceStream.h"

namespace qm {

namespace {

constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();

std::int16_t Level(float peak) {
  return static_cast<std::int16_t>(std::lrint(std::min(peak, 1.f) * 32767.f));
}

// Adds frames at a gain to the mix, and keeps the peaks of what was added.
template <class Gain>
void AddFrames(const float* from, float* to, std::size_t frames, std::size_t channels, Gain gain, float& left,
               float& right) {
  float peakLeft = left, peakRight = right;
  if (channels == 2) {
    for (std::size_t i = 0; i < frames; ++i) {
      const float g = gain(i);
      const float l = from[2 * i] * g, r = from[2 * i + 1] * g;
      to[2 * i] += l;
      to[2 * i + 1] += r;
      peakLeft = std::max(peakLeft, std::fabs(l));
      peakRight = std::max(peakRight, std::fabs(r));
    }
  } else {
    for (std::size_t i = 0; i < frames; ++i) {
      const float l = from[i] * gain(i);
      to[i] += l;
      peakLeft = std::max(peakLeft, std::fabs(l));
    }
    peakRight = peakLeft;
  }
  left = peakLeft;
  right = peakRight;
}

}  // namespace

std::int64_t Voice::NextLoopPoint() const {
  if (!m_plan.hasLoop || m_loopTold > m_plan.turns) return kNever;
  return m_plan.Out(m_plan.TurnWay(m_loopTold));
}

std::int64_t Voice::FramesToStop() const {
  std::int64_t next = std::min({m_plan.OutLength(), NextLoopPoint(), m_volume.NextStop(m_out)});
  for (const Mark& mark : m_marks)
    if (mark.due >= 0) next = std::min(next, mark.due);
  return std::max<std::int64_t>(0, next - m_out);
}

std::size_t Voice::Ready(std::size_t limit) const {
  return std::min(limit, m_stream->Fill());
}

bool Voice::Exhausted() const {
  return m_stream->Complete() && m_stream->Fill() == 0;
}

bool Voice::Fetch() {
  return m_reading == erdWithin && m_file.reader->Work();
}

void Voice::Mix(float* interleaved, std::size_t frames) {
  while (frames > 0) {
    const std::size_t n = MixRun(interleaved, frames);
    interleaved += n * static_cast<std::size_t>(m_format.channels);
    frames -= n;
  }
}

// One piece over which the gain is a straight line.
std::size_t Voice::MixRun(float* interleaved, std::size_t frames) {
  const VolumeLine::Line line = m_volume.LineAt(m_out);
  std::size_t n = frames;
  if (static_cast<std::int64_t>(n) > line.frames) n = static_cast<std::size_t>(line.frames);
  if (m_rampIn > 0) n = std::min(n, m_rampIn);
  const float* from = m_stream->Ring().Front(n);
  const std::size_t channels = static_cast<std::size_t>(m_format.channels);
  if (m_rampIn > 0) {
    const double whole = static_cast<double>(m_rampFrames) + 1;
    const double first = static_cast<double>(m_rampFrames - m_rampIn) + 1;
    AddFrames(
        from, interleaved, n, channels,
        [&](std::size_t i) {
          const double at = static_cast<double>(i);
          return static_cast<float>((line.volume + line.step * at) / 100 * ((first + at) / whole));
        },
        m_leftPeak, m_rightPeak);
    m_rampIn -= n;
  } else if (line.step != 0) {
    AddFrames(
        from, interleaved, n, channels,
        [&](std::size_t i) {
          return static_cast<float>((line.volume + line.step * static_cast<double>(i)) / 100);
        },
        m_leftPeak, m_rightPeak);
  } else {
    const auto gain = static_cast<float>(line.volume / 100);
    AddFrames(
        from, interleaved, n, channels, [gain](std::size_t) { return gain; }, m_leftPeak, m_rightPeak);
  }
  m_stream->Ring().Consume(n);
  m_volume.Advance(n);
  m_out += static_cast<std::int64_t>(n);
  m_sounded = true;
  return n;
}

void Voice::Notify(std::vector<Notification>& pending, std::int64_t frame, enNotification kind,
                   std::int32_t number, std::int32_t tag) {
  Notification notification;
  notification.kind = kind;
  notification.frame = frame;
  notification.owner = m_owner;
  notification.voice = m_serial;
  notification.number = number;
  notification.tag = tag;
  pending.push_back(std::move(notification));
}

bool Voice::MarkDue() const {
  return std::any_of(m_marks.begin(), m_marks.end(),
                     [&](const Mark& mark) { return mark.due >= 0 && mark.due <= m_out; });
}

void Voice::CollectDue(std::int64_t frame, bool onGrid, std::vector<Notification>& pending) {
  const bool ends = m_out >= m_plan.OutLength() || Exhausted();
  const bool levels = (onGrid && m_sounded) || ends;
  if (levels || MarkDue()) {
    Notify(pending, frame, entPosition, levels ? 1 : 0);
    if (levels) {
      pending.back().leftLevel = Level(m_leftPeak);
      pending.back().rightLevel = Level(m_rightPeak);
      m_leftPeak = m_rightPeak = 0;
    }
  }
  TellVolume(frame, onGrid, pending);
  TellLoop(frame, pending);
  TellMarks(frame, pending);
  if (ends) TellEnd(frame, pending);
}

void Voice::TellVolume(std::int64_t frame, bool onGrid, std::vector<Notification>& pending) {
  m_points.clear();
  const bool ramping = m_volume.Ramping();
  m_volume.Reach(m_out, m_sounded, m_points);
  const bool ended = std::any_of(m_points.begin(), m_points.end(),
                                 [](const VolumePoint& point) { return point.kind == VolumePoint::End; });
  const double volume = m_volume.Volume(m_out);
  const std::int64_t whole = std::llrint(volume);
  if ((ended || (ramping && onGrid)) && whole != m_volumeTold) {
    m_volumeTold = whole;
    Notify(pending, frame, entVolume);
    pending.back().volume = static_cast<float>(volume);
  }
  for (const VolumePoint& point : m_points) {
    const enNotification kind = point.kind == VolumePoint::Start    ? entVolumeStart
                                : point.kind == VolumePoint::Notify ? entVolumeNotify
                                                                    : entVolumeEnd;
    Notify(pending, frame, kind, point.reference);
  }
}

void Voice::TellLoop(std::int64_t frame, std::vector<Notification>& pending) {
  while (NextLoopPoint() <= m_out) {
    const bool turned = m_loopTold < m_plan.turns;
    ++m_loopTold;
    if (turned) m_reached = 0;
    Notify(pending, frame, turned ? entLoopRestart : entLoopCompleted);
  }
}

void Voice::TellMarks(std::int64_t frame, std::vector<Notification>& pending) {
  bool told = false;
  for (Mark& mark : m_marks) {
    if (mark.due < 0 || mark.due > m_out) continue;
    mark.told = mark.visit;
    told = true;
    m_reached = std::max(m_reached, mark.mark.Position);
    Notify(pending, frame, entMark, mark.mark.EventId, mark.mark.Tag);
  }
  if (told) ScheduleMarks();
}

void Voice::TellEnd(std::int64_t frame, std::vector<Notification>& pending) {
  m_playing = false;
  m_ended = true;
  if (m_stream->BrokeOff()) {
    Notify(pending, frame, entError, 1);
    pending.back().text = "the audio breaks off before its end";
  } else if (m_route.audioEnd > 0 && m_plan.end == MarkFrame(m_route.audioEnd)) {
    m_reached = std::max(m_reached, m_route.audioEnd);
  }
  Notify(pending, frame, entAudioEnd);
}

}  // namespace qm
