#include "kits/sound/engine/Voice.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "kits/sound/engine/SourceReader.h"
#include "kits/sound/engine/VoiceStream.h"

// The commands of a voice and its state; rendering and telling stand in VoiceRender.cpp.
namespace qm {

Voice::Voice(std::uint64_t serial, std::weak_ptr<VoiceOwner> owner, VoiceFile file, const OutputFormat& out,
             std::size_t rampFrames, std::size_t ringFrames, enReading reading)
    : m_serial(serial),
      m_owner(std::move(owner)),
      m_file(std::move(file)),
      m_format(out),
      m_rampFrames(rampFrames),
      m_ringFrames(ringFrames),
      m_reading(reading),
      m_plan(MakePlan(0, 0)),
      m_volume(rampFrames),
      m_scratch(rampFrames * static_cast<std::size_t>(out.channels)) {
  m_points.reserve(8);
}

Voice::~Voice() = default;

std::int64_t Voice::SourceFrame(double seconds) const {
  const double frame = std::rint(seconds * m_file.sampleRate);
  return frame > 0 ? static_cast<std::int64_t>(std::min(frame, static_cast<double>(m_file.frames))) : 0;
}

std::int64_t Voice::EndFrame() const {
  return m_route.audioEnd > 0 ? SourceFrame(static_cast<double>(m_route.audioEnd)) : m_file.frames;
}

// Lengths that are kept in milliseconds may lie a little behind the last frame: a mark there belongs to the
// end.
std::int64_t Voice::MarkFrame(float seconds) const {
  const auto frame = static_cast<std::int64_t>(std::rint(static_cast<double>(seconds) * m_file.sampleRate));
  const std::int64_t end = EndFrame();
  return frame > end && frame - end <= m_file.sampleRate / 1000 ? end : frame;
}

PlayPlan Voice::MakePlan(std::int64_t origin, std::int64_t turns) const {
  PlayPlan plan;
  plan.end = EndFrame();
  plan.origin = std::clamp<std::int64_t>(origin, 0, plan.end);
  const double speed = static_cast<double>(m_route.speed);
  plan.resampling = m_format.sampleRate / (m_file.sampleRate * speed);
  plan.stretch = static_cast<double>(m_route.stretch);
  if (!m_route.useLoop) return plan;
  const std::int64_t start = SourceFrame(static_cast<double>(m_route.loopStart));
  const std::int64_t end = std::min(plan.end, SourceFrame(static_cast<double>(m_route.loopEnd)));
  if (start < end && plan.origin < end) {
    plan.hasLoop = true;
    plan.loopStart = start;
    plan.loopEnd = end;
    plan.turns = turns;
  }
  return plan;
}

void Voice::SetRoute(const VoiceRoute& route, Mixer& mixer) {
  const bool newLoop = route.loopStart != m_route.loopStart || route.loopEnd != m_route.loopEnd ||
                       route.loopPasses != m_route.loopPasses || route.useLoop != m_route.useLoop;
  m_route = route;
  if (!m_stream) return;
  const std::int64_t way = Way();
  const std::int64_t turnsLeft = newLoop ? m_route.loopPasses - 1 : m_plan.turns - m_plan.TurnsDone(way);
  PlayPlan same = m_plan;
  same.origin = m_plan.Source(way);
  same.turns = m_plan.turns - m_plan.TurnsDone(way);
  same.hasLoop = m_plan.hasLoop && same.origin < m_plan.loopEnd;
  if (!same.hasLoop) same.loopStart = same.loopEnd = same.turns = 0;
  const PlayPlan plan = MakePlan(same.origin, turnsLeft);
  if (plan == same) return;
  // Unchanged frames go on without a seam; others meet in two ramps.
  const bool seam = Sounding() && !(plan.Straight() && m_plan.Straight());
  if (seam) RampOut(mixer);
  Follow(plan, emContinues);
  if (seam) RampIn();
}

void Voice::Cue(Mixer& mixer) {
  RampOut(mixer);
  m_playing = false;
  m_sounded = false;
  m_resumes = false;
  Follow(MakePlan(SourceFrame(static_cast<double>(m_route.audioStart)), m_route.loopPasses - 1), emLocates);
}

void Voice::LocatePercent(double percent, Mixer& mixer) {
  const auto frame = static_cast<std::int64_t>(std::rint(percent / 100 * static_cast<double>(m_file.frames)));
  const bool seam = Sounding();
  RampOut(mixer);
  m_resumes = false;
  Follow(MakePlan(frame, m_route.loopPasses - 1), emLocates);
  if (seam) RampIn();
}

void Voice::Play() {
  if (m_playing) return;
  m_playing = true;
  m_sounded = false;
  if (m_resumes) RampIn();
}

void Voice::Pause(Mixer& mixer) {
  if (Sounding()) {
    RampOut(mixer);
    m_resumes = true;
  }
  m_playing = false;
}

bool Voice::LeaveLoop(Mixer& mixer) {
  if (!InLoop()) return false;
  const bool seam = Sounding();
  RampOut(mixer);
  Follow(MakePlan(m_plan.loopEnd, 0), emLeavesLoop);
  if (seam) RampIn();
  return true;
}

// The frames that would have come next are heard falling to nothing; they stay in the ring, so that a paused
// voice goes on with them.
void Voice::RampOut(Mixer& mixer) {
  if (!Sounding() || !m_stream) return;
  while (m_stream->Fill() < m_rampFrames && Fetch()) {
  }
  const std::size_t channels = static_cast<std::size_t>(m_format.channels);
  const std::size_t frames = m_stream->Ring().Peek(m_scratch.data(), m_rampFrames);
  const VolumeLine::Line line = m_volume.LineAt(m_out);
  const double whole = static_cast<double>(m_rampFrames) + 1;
  for (std::size_t i = 0; i < frames; ++i) {
    const double at = static_cast<double>(std::min<std::int64_t>(static_cast<std::int64_t>(i), line.frames));
    const double in = m_rampIn > i ? (static_cast<double>(m_rampFrames - m_rampIn + i) + 1) / whole : 1;
    const double out = 1 - (static_cast<double>(i) + 1) / (static_cast<double>(frames) + 1);
    const auto gain = static_cast<float>((line.volume + line.step * at) / 100 * in * out);
    for (std::size_t c = 0; c < channels; ++c) m_scratch[i * channels + c] *= gain;
  }
  mixer.AddTail(m_scratch.data(), frames);
}

void Voice::RampIn() {
  m_rampIn = m_rampFrames;
}

// Takes a new way from the present moment on: the place in the file is the plan's origin.
void Voice::Follow(const PlayPlan& plan, enMove move) {
  // A mark told at this very frame is not told again where the way goes on.
  for (Mark& mark : m_marks) {
    const bool toldHere = move == emContinues && mark.told >= 0 && m_plan.Out(mark.told) == m_out;
    mark.told = toldHere ? std::max<std::int64_t>(0, MarkFrame(mark.mark.Position) - plan.origin) : -1;
  }
  const double scale = plan.resampling * plan.stretch / (m_plan.resampling * m_plan.stretch);
  const std::int64_t out = m_out;
  // A start that waits to be heard is not read anew.
  const bool atHand = m_stream && m_out == 0 && plan == m_plan;
  m_plan = plan;
  m_out = 0;
  m_loopTold = 0;
  m_ended = false;
  if (move != emContinues) {
    m_rampIn = 0;
    m_reached = 0;
  }
  if (!atHand) {
    m_stream = std::make_shared<VoiceStream>(plan, m_file.channels, m_format.sampleRate, m_format.channels,
                                             m_ringFrames);
    m_file.reader->SetStream(m_stream);
  }
  ScheduleMarks();
  m_volume.Rebase(out, scale, move == emLocates, VolumeSchedule(), VolumeSpan());
}

void Voice::ScheduleMarks() {
  const std::int64_t way = Way();
  for (Mark& mark : m_marks) {
    mark.visit = m_plan.NextVisit(MarkFrame(mark.mark.Position), std::max(way, mark.told + 1));
    mark.due = mark.visit < 0 ? -1 : m_plan.Out(mark.visit);
  }
}

VolumeLine::Schedule Voice::VolumeSchedule() const {
  return [this](const tyVolumeChange& change) {
    const std::int64_t visit = m_plan.NextVisit(SourceFrame(static_cast<double>(change.StartTime)), Way());
    return visit < 0 ? -1 : m_plan.Out(visit);
  };
}

VolumeLine::Span Voice::VolumeSpan() const {
  return [this](float seconds) {
    return m_plan.Out(static_cast<std::int64_t>(std::rint(static_cast<double>(seconds) * m_file.sampleRate)));
  };
}

void Voice::SetMark(const tyPositionMark& mark) {
  RemoveMark(mark.EventId);
  const auto place = std::find_if(m_marks.begin(), m_marks.end(), [&](const Mark& other) {
    return other.mark.Position > mark.Position ||
           (other.mark.Position == mark.Position && other.mark.EventId > mark.EventId);
  });
  m_marks.insert(place, Mark{.mark = mark});
  ScheduleMarks();
}

bool Voice::RemoveMark(std::int32_t eventId) {
  return std::erase_if(m_marks, [&](const Mark& mark) { return mark.mark.EventId == eventId; }) > 0;
}

void Voice::SetVolume(double percent) {
  m_volume.Set(percent, m_out, Sounding());
}

bool Voice::AddVolumeChange(const tyVolumeChange& change) {
  const bool sensible = std::isfinite(change.StartTime) && std::isfinite(change.Duration) &&
                        change.Duration >= 0 && std::isfinite(change.StartVolume) &&
                        std::isfinite(change.EndVolume) && std::isfinite(change.NotifyVolume);
  if (sensible) m_volume.Add(change, m_out, VolumeSchedule(), VolumeSpan());
  return sensible;
}

bool Voice::RemoveVolumeChange(std::int16_t reference) {
  return m_volume.Remove(reference, m_out);
}

float Voice::Seconds() const {
  const double way = static_cast<double>(m_out) / (m_plan.resampling * m_plan.stretch);
  const double source = m_plan.SourcePosition(way);
  auto seconds = static_cast<float>(source / m_file.sampleRate);
  // Hours into a file a single-precision second is coarser than a frame: a position short of a mark must not
  // read as the mark.
  for (const Mark& mark : m_marks)
    if (seconds >= mark.mark.Position && source < static_cast<double>(MarkFrame(mark.mark.Position)))
      seconds = std::nextafter(mark.mark.Position, 0.f);
  return std::max(m_reached, seconds);
}

float Voice::SecondsRemaining() const {
  const auto whole = static_cast<float>(static_cast<double>(m_file.frames) / m_file.sampleRate);
  const float end = m_route.audioEnd > 0 ? std::min(m_route.audioEnd, whole) : whole;
  return std::max(0.f, end - Seconds());
}

float Voice::Percent() const {
  if (m_file.frames <= 0) return 0;
  const double way = static_cast<double>(m_out) / (m_plan.resampling * m_plan.stretch);
  return static_cast<float>(m_plan.SourcePosition(way) / static_cast<double>(m_file.frames) * 100);
}

bool Voice::InLoop() const {
  if (!m_plan.hasLoop || m_loopTold > m_plan.turns) return false;
  const std::int64_t source = m_plan.Source(Way());
  return source >= m_plan.loopStart && source < m_plan.loopEnd;
}

}  // namespace qm
