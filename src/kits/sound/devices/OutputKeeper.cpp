#include "kits/sound/devices/OutputKeeper.h"

#include <algorithm>

namespace qm {
namespace {

// A device that is not there cannot be asked for its rate; this is the one that most come with.
constexpr std::int32_t kAbsentDeviceRate = 48000;

}  // namespace

OutputKeeper::OutputKeeper(std::unique_ptr<Output> output, std::unique_ptr<Output> standIn, Hooks hooks)
    : m_output(std::move(output)), m_standIn(std::move(standIn)), m_hooks(std::move(hooks)) {}

OutputKeeper::~OutputKeeper() {
  Close();
}

bool OutputKeeper::Open(const OutputShape& wanted, std::string& errorText) {
  m_opened = m_output->Open(wanted, eomNearest, m_absentText);
  m_shape = m_opened ? m_output->Shape() : wanted;
  if (m_opened) return true;
  m_shape.format.sampleRate = kAbsentDeviceRate;
  return m_standIn->Open(m_shape, eomExact, errorText);
}

bool OutputKeeper::Start(FrameSource& source, Time now, std::string& errorText) {
  m_tap.source = &source;
  if (m_opened && m_output->Start(m_tap, m_absentText)) {
    BeginWatch(now);
    return true;
  }
  m_opened = false;
  if (!StartStandIn(errorText)) return false;
  m_lost = true;
  m_nextTry = now + kRetryInterval;
  m_hooks.lost(edfAbsent, m_absentText);
  return true;
}

void OutputKeeper::Close() {
  m_output->Close(m_lost ? eocDrop : eocHearOut);
  m_standIn->Close(eocDrop);
}

void OutputKeeper::Check(Time now) {
  if (!m_lost)
    Watch(now);
  else if (now >= m_nextTry)
    TryAgain(now);
}

void OutputKeeper::BeginWatch(Time now) {
  m_lastCheck = now;
  m_silence = {};
  m_pulledAtStart = m_pulledBefore = m_tap.pulled.load(std::memory_order_relaxed);
}

// One interval between checks counts for no more than two: a machine that stood still has kept the device
// waiting too.
void OutputKeeper::Watch(Time now) {
  const std::uint64_t pulled = m_tap.pulled.load(std::memory_order_relaxed);
  m_silence =
      pulled == m_pulledBefore ? m_silence + std::min(now - m_lastCheck, 2 * kCheckInterval) : Duration{};
  m_pulledBefore = pulled;
  m_lastCheck = now;
  const bool running = pulled - m_pulledAtStart > static_cast<std::uint64_t>(m_shape.format.sampleRate);
  if (!m_output->Alive())
    Lose(edfLost, m_output->FaultText(), now);
  else if (m_silence >= (running ? kSilenceLimit : kFirstSilenceLimit))
    Lose(edfLost, Name() + ": the sound device asks for no more sound", now);
}

bool OutputKeeper::StartStandIn(std::string& errorText) {
  return m_standIn->Open(m_shape, eomExact, errorText) && m_standIn->Start(m_tap, errorText);
}

void OutputKeeper::Lose(std::int32_t fault, const std::string& text, Time now) {
  m_output->Close(eocDrop);
  m_lost = true;
  std::string standInError;
  StartStandIn(standInError);
  m_nextTry = now + kRetryInterval;
  m_hooks.lost(fault, text.empty() ? Name() + ": the sound device has gone" : text);
}

// The stand-in goes on while the device is being opened, which may take seconds.
void OutputKeeper::TryAgain(Time now) {
  m_nextTry = now + kRetryInterval;
  std::string text;
  if (!m_output->Open(m_shape, eomExact, text)) return;
  m_standIn->Close(eocDrop);
  if (!m_output->Start(m_tap, text)) {
    StartStandIn(text);
    return;
  }
  m_shape = m_output->Shape();  // the same but for the period
  m_lost = false;
  BeginWatch(now);
  m_hooks.returned(Name() + ": the sound device is back");
}

}  // namespace qm
