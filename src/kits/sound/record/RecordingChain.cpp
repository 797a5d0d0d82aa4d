#include "kits/sound/record/RecordingChain.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "kits/sound/dsp/Channels.h"
#include "kits/sound/dsp/Resampler.h"
#include "kits/sound/record/RecordingControl.h"
#include "kits/sound/record/RecordingFile.h"
#include "kits/sound/record/RecordingNotes.h"

namespace qm {

namespace {

constexpr std::int32_t kNotesPerSecond = 25;
constexpr std::size_t kResampledFrames = 4096;

std::int16_t Peak16(float peak) {
  return static_cast<std::int16_t>(std::min(std::lround(peak * 32768), 32767L));
}

}  // namespace

RecordingChain::RecordingChain(const OutputFormat& input, const RecordingRequest& request,
                               RecordingFile& file, RecordingNotes& notes)
    : m_input(input),
      m_channels(static_cast<std::size_t>(request.format.Channels())),
      m_noteFrames(static_cast<std::uint64_t>(std::max(1, input.sampleRate / kNotesPerSecond))),
      m_file(file),
      m_notes(notes),
      m_leftOut(request.startSeconds > 0 ? static_cast<std::uint64_t>(
                                               std::llround(double{request.startSeconds} * input.sampleRate))
                                         : 0),
      m_trigger(request.triggerLevel, static_cast<double>(request.triggerSeconds), input.sampleRate,
                m_channels) {
  if (input.sampleRate != request.format.SampleRate()) {
    m_resampler = std::make_unique<Resampler>(
        static_cast<double>(request.format.SampleRate()) / input.sampleRate, m_channels);
    m_resampled.resize(kResampledFrames * m_channels);
  }
  TellState(m_trigger.IsOpen() ? ersRecording : ersWaiting);
}

RecordingChain::~RecordingChain() = default;

void RecordingChain::TellState(std::int32_t state) {
  m_notes.Add({.kind = ernState, .number = state});
}

void RecordingChain::SetGate(std::uint64_t frame, enRecordingGate gate) {
  std::lock_guard lock(m_mutex);
  m_commands.push_back({frame, gate});
}

void RecordingChain::SetTriggerLevel(std::int16_t level) {
  std::lock_guard lock(m_mutex);
  m_newLevel = std::max<std::int32_t>(0, level);
}

// Obeys what is due at the frame; how many of the frames behind it may be taken until more is due.
std::size_t RecordingChain::ObeyAt(std::uint64_t frame, std::size_t frames) {
  bool paused = false;
  {
    std::lock_guard lock(m_mutex);
    if (m_newLevel >= 0 && !m_trigger.IsOpen()) m_trigger.SetLevel(static_cast<std::int16_t>(m_newLevel));
    m_newLevel = -1;
    while (!m_commands.empty() && m_commands.front().frame <= frame) {
      paused = paused || m_commands.front().gate == ergPaused;
      m_gate = m_commands.front().gate;
      m_commands.pop_front();
    }
    if (!m_commands.empty())
      frames = static_cast<std::size_t>(std::min<std::uint64_t>(frames, m_commands.front().frame - frame));
  }
  if (paused) m_file.Checkpoint();
  return frames;
}

void RecordingChain::Take(const float* interleaved, std::size_t frames, double secondsLeft) {
  const auto inputChannels = static_cast<std::size_t>(m_input.channels);
  m_secondsLeft = secondsLeft;
  for (std::size_t done = 0; done < frames;) {
    const auto toNote = static_cast<std::size_t>(m_notedAt + m_noteFrames - m_taken);
    const std::size_t piece = ObeyAt(m_taken, std::min(frames - done, toNote));
    m_mapped.resize(piece * m_channels);
    MapChannels(interleaved + done * inputChannels, inputChannels, m_mapped.data(), m_channels, piece);
    TakePiece(m_mapped.data(), piece);
    done += piece;
    m_taken += piece;
    if (m_taken == m_notedAt + m_noteFrames) TellProgress();
  }
}

void RecordingChain::TakePiece(const float* frames, std::size_t count) {
  Measure(frames, count);
  if (m_gate == ergPaused) return;
  const auto out = static_cast<std::size_t>(std::min<std::uint64_t>(m_leftOut, count));
  m_leftOut -= out;
  frames += out * m_channels;
  count -= out;
  if (m_trigger.IsOpen()) return Record(frames, count);
  const bool opened = m_trigger.Take(frames, count, m_begin);
  if (!opened) return;
  TellState(ersRecording);
  Record(m_begin.data(), m_begin.size() / m_channels);
  m_begin = {};
}

void RecordingChain::Measure(const float* frames, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    m_left = std::max(m_left, std::fabs(frames[i * m_channels]));
    m_right = std::max(m_right, std::fabs(frames[(i + 1) * m_channels - 1]));
  }
}

void RecordingChain::Record(const float* frames, std::size_t count) {
  if (!m_resampler) return Write(frames, count);
  while (count > 0) {
    const Resampler::Moved moved = m_resampler->Process(frames, count, m_resampled.data(), kResampledFrames);
    Write(m_resampled.data(), moved.produced);
    frames += moved.consumed * m_channels;
    count -= moved.consumed;
    if (moved.consumed == 0 && moved.produced == 0) return;
  }
}

void RecordingChain::SetLimit(double seconds) {
  m_limit = std::llround(seconds * m_file.Format().SampleRate());
}

void RecordingChain::TellEnd() {
  if (!std::exchange(m_ended, true)) m_notes.Add({.kind = ernEnd});
}

// A file that cannot be written is told once; what it holds stays.
void RecordingChain::Write(const float* frames, std::size_t count) {
  if (m_failed || m_ended || count == 0) return;
  count = static_cast<std::size_t>(std::min(static_cast<std::int64_t>(count), m_limit - m_file.Frames()));
  const AudioFileError error = m_file.Write(frames, count);
  if (!error && m_file.Frames() == m_limit) {
    TellPosition();
    TellEnd();
  }
  if (!error) return;
  m_failed = true;
  m_notes.Add({.kind = ernError, .number = error.number, .text = error.text});
}

double RecordingChain::Remaining() const {
  const double limit = static_cast<double>(m_limit - m_file.Frames()) / m_file.Format().SampleRate();
  return std::min(limit, m_secondsLeft < 0 ? m_file.SecondsOfRoom() : m_secondsLeft);
}

void RecordingChain::TellPosition() {
  m_notedFrames = m_file.Frames();
  m_notes.Add({.kind = ernPosition, .frames = m_notedFrames, .remaining = Remaining()});
}

void RecordingChain::TellProgress() {
  m_notedAt = m_taken;
  if (m_file.Frames() != m_notedFrames || (m_finished && !m_ended)) TellPosition();
  m_notes.Add({.kind = ernLevel,
               .left = Peak16(std::exchange(m_left, 0.f)),
               .right = Peak16(std::exchange(m_right, 0.f))});
}

void RecordingChain::Finish() {
  if (std::exchange(m_finished, true)) return;
  ObeyAt(m_taken, 0);
  for (bool more = m_resampler != nullptr && m_trigger.IsOpen(); more;) {
    const Resampler::Moved moved = m_resampler->Process(nullptr, 0, m_resampled.data(), kResampledFrames);
    Write(m_resampled.data(), moved.produced);
    more = moved.produced > 0;
  }
  TellProgress();
}

}  // namespace qm
