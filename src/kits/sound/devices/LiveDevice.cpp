#include "kits/sound/devices/LiveDevice.h"

#include <chrono>
#include <exception>
#include <utility>

#include "kits/sound/devices/ClockOutput.h"
#include "kits/sound/devices/OutputKeeper.h"
#include "kits/sound/devices/RingFeeder.h"
#include "kits/sound/devices/ThreadPriority.h"

namespace qm {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto kRenderInterval = 2ms;
constexpr auto kHearOutLimit = 500ms;

}  // namespace

LiveDevice::LiveDevice(std::string name, std::unique_ptr<Output> output, double advanceSeconds,
                       std::unique_ptr<Output> standIn)
    : m_name(std::move(name)),
      m_advanceSeconds(advanceSeconds),
      m_keeper(std::make_unique<OutputKeeper>(
          std::move(output), standIn ? std::move(standIn) : std::make_unique<ClockOutput>(),
          OutputKeeper::Hooks{
              [this](std::int32_t fault, const std::string& text) { ChangeState(text, fault); },
              [this](const std::string& text) { ChangeState(text, 0); }})) {}

// Nothing is rendered any more, and what is in the ring is heard.
LiveDevice::~LiveDevice() {
  m_keeperThread = {};
  m_renderThread = {};
  if (m_feeder && !m_keeper->Lost()) HearOut();
  m_keeper->Close();
}

bool LiveDevice::Start(std::int32_t sampleRate, std::string& errorText) {
  if (m_feeder) return true;
  try {
    if (!m_keeper->Open({.format = {.sampleRate = sampleRate}}, errorText)) return false;
    m_feeder = std::make_unique<RingFeeder>(m_keeper->Shape(), m_advanceSeconds);
    m_feeder->GetMixer().onPending = onPending;
    m_feeder->RenderAhead();
    if (!m_keeper->Start(*m_feeder, Clock::now(), errorText)) {
      m_feeder = nullptr;
      return false;
    }
    m_renderThread = std::jthread([this](std::stop_token stop) { Render(stop); });
    RaisePriority(m_renderThread.native_handle(), etpRender);
    m_keeperThread = std::jthread([this](std::stop_token stop) { Keep(stop); });
    return true;
  } catch (const std::exception& caught) {
    errorText = m_name + ": " + caught.what();
  }
  m_renderThread = {};
  m_keeper->Close();
  m_feeder = nullptr;
  return false;
}

Mixer* LiveDevice::GetMixer() {
  return m_feeder ? &m_feeder->GetMixer() : nullptr;
}

bool LiveDevice::Pump() {
  if (!m_feeder) return false;
  TellState();
  return m_feeder->Pump();
}

void LiveDevice::Render(std::stop_token stop) {
  std::unique_lock lock(m_sleepMutex);
  while (!stop.stop_requested()) {
    m_feeder->RenderAhead();
    TellFault();
    m_wake.wait_for(lock, stop, kRenderInterval, [] { return false; });
  }
}

void LiveDevice::Keep(std::stop_token stop) {
  std::mutex mutex;
  std::condition_variable_any wake;
  std::unique_lock lock(mutex);
  while (!stop.stop_requested()) {
    wake.wait_for(lock, stop, OutputKeeper::kCheckInterval, [] { return false; });
    if (!stop.stop_requested()) m_keeper->Check(Clock::now());
  }
}

void LiveDevice::ChangeState(const std::string& line, std::int32_t fault) {
  {
    std::lock_guard lock(m_stateMutex);
    m_stateLines.push_back(line);
    m_untoldFault = fault;
    m_untoldText = line;
  }
  if (fault == 0) m_feeder->SetPeriod(m_keeper->Shape().periodFrames);
  if (onPending) onPending();
}

// A fault while nothing plays has nobody to tell it to; it is kept for whoever plays next.
void LiveDevice::TellFault() {
  std::int32_t fault = 0;
  std::string text;
  {
    std::lock_guard lock(m_stateMutex);
    if (m_untoldFault == 0 || !m_feeder->GetMixer().Active()) return;
    fault = std::exchange(m_untoldFault, 0);
    text = m_untoldText;
  }
  m_feeder->GetMixer().ReportFault(fault, text);
}

void LiveDevice::TellState() {
  for (;;) {
    std::string line;
    {
      std::lock_guard lock(m_stateMutex);
      if (m_stateLines.empty()) return;
      line = std::move(m_stateLines.front());
      m_stateLines.pop_front();
    }
    if (onStateChange) onStateChange(line);
  }
}

void LiveDevice::HearOut() {
  const auto limit = Clock::now() + kHearOutLimit;
  while (m_feeder->FramesOfSoundLeft() > 0 && Clock::now() < limit)
    std::this_thread::sleep_for(kRenderInterval);
}

std::unique_ptr<Device> MakeLiveDevice(std::string name, std::unique_ptr<Output> output,
                                       double advanceSeconds) {
  return std::make_unique<LiveDevice>(std::move(name), std::move(output), advanceSeconds);
}

}  // namespace qm
