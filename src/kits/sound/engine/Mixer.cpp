#include "kits/sound/engine/Mixer.h"

#include <algorithm>

#include "kits/sound/engine/Voice.h"

namespace qm {

namespace {
constexpr std::int32_t kPositionsPerSecond = 25;
constexpr double kRampSeconds = 0.005;
constexpr std::size_t kPendingAtOnce = 1024;  // room kept, so that telling does not allocate
}  // namespace

Mixer::Mixer(OutputFormat format)
    : m_format(format),
      m_rampFrames(std::max<std::size_t>(1, static_cast<std::size_t>(format.sampleRate * kRampSeconds))),
      m_positionGrid(std::max(1, format.sampleRate / kPositionsPerSecond)),
      m_tail(m_rampFrames * static_cast<std::size_t>(format.channels)) {
  m_pending.reserve(kPendingAtOnce);
  m_voices.reserve(64);
}

Mixer::~Mixer() = default;

std::size_t Mixer::Render(float* interleaved, std::size_t frames, enRenderPatience patience) {
  const std::size_t channels = static_cast<std::size_t>(m_format.channels);
  std::fill_n(interleaved, frames * channels, 0.f);
  std::size_t done = 0;
  bool told = false;
  {
    const std::lock_guard lock(m_mutex);
    while (done < frames) {
      if (m_standing) {
        if (patience != erpGoOn) break;
        m_counters.lateAnswers.fetch_add(1, std::memory_order_relaxed);
        m_standing = false;
      }
      // Offline, time moves only while something sounds.
      if (patience == erpFetch && !Sounding()) break;
      std::size_t n = FramesToNextStop(frames - done);
      if (n > 0) n = ReadyFrames(n, patience);
      if (n == 0) {
        if (!CollectDue()) break;
        told = told || m_standing;
        continue;
      }
      MixBlock(interleaved + done * channels, n);
      done += n;
    }
  }
  if (told && onPending) onPending();
  return done;
}

// 0 when something is due at this very frame.
std::size_t Mixer::FramesToNextStop(std::size_t limit) const {
  bool anyPlaying = false;
  auto next = static_cast<std::int64_t>(limit);
  for (const auto& voice : m_voices) {
    if (!voice->Playing()) continue;
    anyPlaying = true;
    next = std::min(next, voice->FramesToStop());
  }
  if (anyPlaying)
    next = std::min(next, FramesToGrid());
  else if (m_tailLeft > 0)
    next = std::min(next, static_cast<std::int64_t>(m_tailLeft));
  return static_cast<std::size_t>(next);
}

std::int64_t Mixer::FramesToGrid() const {
  const std::int64_t behind = m_frame % m_positionGrid;
  if (behind == 0 && m_gridTold != m_frame) return 0;
  return m_positionGrid - behind;
}

// How far every playing voice has its audio at hand.
std::size_t Mixer::ReadyFrames(std::size_t limit, enRenderPatience patience) {
  for (const auto& voice : m_voices) {
    if (!voice->Playing()) continue;
    std::size_t ready = voice->Ready(limit);
    while (patience == erpFetch && ready < limit && voice->Fetch()) ready = voice->Ready(limit);
    if (ready == 0 && patience == erpGoOn && !voice->Exhausted()) {
      m_counters.voicesNotReady.fetch_add(1, std::memory_order_relaxed);
      continue;
    }
    limit = std::min(limit, ready);
  }
  return limit;
}

// Tells what is due at this frame; false when there was nothing, that is, when a reader is behind.
bool Mixer::CollectDue() {
  const bool onGrid = FramesToGrid() == 0;
  const std::size_t before = m_pending.size();
  bool progress = onGrid;
  for (const auto& voice : m_voices) {
    if (!voice->Playing()) continue;
    const bool due = onGrid || voice->FramesToStop() == 0 || voice->Exhausted();
    if (due) voice->CollectDue(m_frame, onGrid, m_pending);
    progress = progress || due;
  }
  if (onGrid) m_gridTold = m_frame;
  if (m_pending.size() > before) m_standing = true;
  return progress;
}

void Mixer::MixBlock(float* interleaved, std::size_t frames) {
  for (const auto& voice : m_voices)
    if (voice->Playing() && voice->Ready(frames) == frames) voice->Mix(interleaved, frames);
  const std::size_t channels = static_cast<std::size_t>(m_format.channels);
  for (std::size_t i = 0; i < frames && m_tailLeft > 0; ++i, --m_tailLeft) {
    for (std::size_t c = 0; c < channels; ++c) {
      float& sample = m_tail[m_tailAt * channels + c];
      interleaved[i * channels + c] += sample;
      sample = 0;
    }
    m_tailAt = (m_tailAt + 1) % m_rampFrames;
  }
  m_frame += static_cast<std::int64_t>(frames);
}

void Mixer::AddTail(const float* interleaved, std::size_t frames) {
  const std::size_t channels = static_cast<std::size_t>(m_format.channels);
  for (std::size_t i = 0; i < frames; ++i)
    for (std::size_t c = 0; c < channels; ++c)
      m_tail[(m_tailAt + i) % m_rampFrames * channels + c] += interleaved[i * channels + c];
  m_tailLeft = std::max(m_tailLeft, frames);
}

bool Mixer::DeliverPending() {
  std::unique_lock lock(m_mutex);
  if (m_deliveredFrame >= 0 || m_pending.empty()) return false;
  while (!m_pending.empty()) {
    const Notification notification = std::move(m_pending.front());
    m_pending.erase(m_pending.begin());
    m_deliveredFrame = notification.frame;
    lock.unlock();
    if (const auto owner = notification.owner.lock()) owner->Deliver(notification);
    lock.lock();
  }
  m_deliveredFrame = -1;
  m_standing = false;
  return true;
}

std::int64_t Mixer::Frame() const {
  const std::lock_guard lock(m_mutex);
  return m_deliveredFrame >= 0 ? m_deliveredFrame : m_frame;
}

bool Mixer::Active() const {
  const std::lock_guard lock(m_mutex);
  return Sounding();
}

bool Mixer::Sounding() const {
  return m_tailLeft > 0 ||
         std::any_of(m_voices.begin(), m_voices.end(), [](const auto& voice) { return voice->Playing(); });
}

bool Mixer::HasPending() const {
  const std::lock_guard lock(m_mutex);
  return !m_pending.empty();
}

void Mixer::Post(const Voice& voice, enNotification kind, std::int32_t number, const std::string& text) {
  Notification notification;
  notification.kind = kind;
  notification.frame = m_frame;
  notification.owner = voice.Owner();
  notification.voice = voice.Serial();
  notification.number = number;
  notification.text = text;
  m_pending.push_back(std::move(notification));
  m_standing = true;
}

void Mixer::ReportFault(std::int32_t number, const std::string& text) {
  {
    const std::lock_guard lock(m_mutex);
    for (const auto& voice : m_voices) Post(*voice, entError, number, text);
  }
  if (onPending) onPending();
}

void Mixer::Attach(const std::shared_ptr<Voice>& voice) {
  const std::lock_guard lock(m_mutex);
  m_voices.push_back(voice);
}

void Mixer::Detach(const std::shared_ptr<Voice>& voice) {
  const std::lock_guard lock(m_mutex);
  voice->RampOut(*this);
  std::erase(m_voices, voice);
  std::erase_if(m_pending,
                [&](const Notification& notification) { return notification.voice == voice->Serial(); });
  // With nothing left to answer, rendering need not stand.
  if (m_pending.empty() && m_deliveredFrame < 0) m_standing = false;
}

}  // namespace qm
