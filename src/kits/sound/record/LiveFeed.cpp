#include <pthread.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

#include "kits/sound/devices/Input.h"
#include "kits/sound/devices/OutputKeeper.h"
#include "kits/sound/devices/ThreadPriority.h"
#include "kits/sound/engine/FrameRing.h"
#include "kits/sound/record/RecordingChain.h"
#include "kits/sound/record/RecordingControl.h"
#include "kits/sound/record/RecordingFeed.h"
#include "kits/sound/record/RecordingNotes.h"

namespace qm {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kRingSeconds = 8;  // how long the disk may stand still
constexpr auto kWriteInterval = 5ms;
constexpr auto kCheckInterval = 100ms;
constexpr auto kTellInterval = 1s;  // between two remarks of one kind

// What the device's thread does: copies, and counts.
class RingTaker final : public FrameTaker {
 public:
  RingTaker(std::size_t frames, std::size_t channels) : m_ring(frames, channels) {}

  void Push(const float* interleaved, std::size_t count, enInputGap gap) noexcept override {
    const std::size_t taken = m_ring.Write(interleaved, count);
    m_captured.fetch_add(taken, std::memory_order_release);
    if (taken < count) m_lost.fetch_add(count - taken, std::memory_order_relaxed);
    if (gap == eigOverflow) m_gaps.fetch_add(1, std::memory_order_relaxed);
  }

  FrameRing& Ring() { return m_ring; }
  std::uint64_t Captured() const { return m_captured.load(std::memory_order_acquire); }
  std::uint64_t Lost() const { return m_lost.load(std::memory_order_relaxed); }
  std::uint64_t Gaps() const { return m_gaps.load(std::memory_order_relaxed); }

 private:
  FrameRing m_ring;
  std::atomic<std::uint64_t> m_captured{0};
  std::atomic<std::uint64_t> m_lost{0};  // frames
  std::atomic<std::uint64_t> m_gaps{0};  // of the device's own
};

class LiveFeed : public RecordingFeed {
 public:
  explicit LiveFeed(std::unique_ptr<Input> input) : m_input(std::move(input)) {}
  ~LiveFeed() override { Stop(); }

  bool Open(std::int32_t sampleRate, std::string& errorText) override;
  OutputFormat Format() const override { return m_shape.format; }
  bool Start(RecordingChain& chain, RecordingNotes& notes, std::string& errorText) override;
  void Stop() override;
  bool Pump() override { return false; }
  std::uint64_t Captured() const override { return m_taker ? m_taker->Captured() : 0; }
  std::uint64_t Lost() const override { return m_taker ? m_taker->Lost() : 0; }
  double Seconds() const override { return -1; }

 private:
  void Run(std::stop_token stop);
  void Drain();
  void Check(Clock::time_point now);
  void TellLosses(Clock::time_point now);
  void Lose(const std::string& text, Clock::time_point now);
  void TryAgain(Clock::time_point now);
  void Tell(std::int32_t number, std::string text) {
    m_notes->Add({.kind = ernError, .number = number, .text = std::move(text)});
  }

  const std::unique_ptr<Input> m_input;
  OutputShape m_shape;
  std::unique_ptr<RingTaker> m_taker;
  RecordingChain* m_chain = nullptr;
  RecordingNotes* m_notes = nullptr;
  // Of the writing thread.
  bool m_lost = false;
  Clock::time_point m_nextTry{}, m_nextTelling{}, m_heardAt{};
  std::uint64_t m_heard = 0, m_toldLost = 0, m_toldGaps = 0;
  std::mutex m_mutex;
  std::condition_variable_any m_wake;
  std::jthread m_thread;
};

bool LiveFeed::Open(std::int32_t sampleRate, std::string& errorText) {
  if (!m_input->Open({.format = {.sampleRate = sampleRate}}, eomNearest, errorText)) return false;
  m_shape = m_input->Shape();
  return true;
}

bool LiveFeed::Start(RecordingChain& chain, RecordingNotes& notes, std::string& errorText) {
  m_chain = &chain;
  m_notes = &notes;
  m_taker = std::make_unique<RingTaker>(kRingSeconds * static_cast<std::size_t>(m_shape.format.sampleRate),
                                        static_cast<std::size_t>(m_shape.format.channels));
  if (!m_input->Start(*m_taker, errorText)) return false;
  m_heardAt = Clock::now();
  try {
    m_thread = std::jthread([this](std::stop_token stop) { Run(stop); });
  } catch (const std::system_error& error) {
    errorText = m_input->Name() + ": " + error.what();
    m_input->Close();
    return false;
  }
  RaisePriority(m_thread.native_handle(), etpRender);
  return true;
}

void LiveFeed::Stop() {
  m_thread = {};
  m_input->Close();
  if (!m_chain) return;
  Drain();
  m_nextTelling = {};
  TellLosses(Clock::now());
  m_chain->Finish();
  m_chain = nullptr;
}

void LiveFeed::Run(std::stop_token stop) {
  Clock::time_point nextCheck = Clock::now();
  std::unique_lock lock(m_mutex);
  while (!stop.stop_requested()) {
    Drain();
    if (const Clock::time_point now = Clock::now(); now >= nextCheck) {
      Check(now);
      nextCheck = now + kCheckInterval;
    }
    m_wake.wait_for(lock, stop, kWriteInterval, [] { return false; });
  }
}

void LiveFeed::Drain() {
  FrameRing& ring = m_taker->Ring();
  for (std::size_t count = ring.Fill(); count > 0; count = ring.Fill()) {
    const float* front = ring.Front(count);
    m_chain->Take(front, count);
    ring.Consume(count);
  }
}

void LiveFeed::Check(Clock::time_point now) {
  TellLosses(now);
  if (m_lost) {
    if (now >= m_nextTry) TryAgain(now);
    return;
  }
  if (const std::uint64_t captured = m_taker->Captured() + m_taker->Lost(); captured != m_heard) {
    m_heard = captured;
    m_heardAt = now;
  }
  if (!m_input->Alive())
    Lose(m_input->FaultText(), now);
  else if (now - m_heardAt >= OutputKeeper::kFirstSilenceLimit)
    Lose(m_input->Name() + ": the sound device gives no sound", now);
}

void LiveFeed::TellLosses(Clock::time_point now) {
  if (now < m_nextTelling) return;
  const std::uint64_t lost = m_taker->Lost(), gaps = m_taker->Gaps();
  if (lost == m_toldLost && gaps == m_toldGaps) return;
  m_nextTelling = now + kTellInterval;
  if (lost != m_toldLost)
    Tell(ereOverrun, "the disk was too slow: " + std::to_string(lost) + " frames of the recording are lost");
  if (gaps != m_toldGaps)
    Tell(ereOverrun,
         m_input->Name() + ": the sound device has lost sound " + std::to_string(gaps) + " times");
  m_toldLost = lost;
  m_toldGaps = gaps;
}

void LiveFeed::Lose(const std::string& text, Clock::time_point now) {
  m_input->Close();
  m_lost = true;
  m_nextTry = now + OutputKeeper::kRetryInterval;
  Tell(edfLost, text.empty() ? m_input->Name() + ": the sound device has gone" : text);
}

// The ring goes on: what the chain has been told of rate and channels must stay true.
void LiveFeed::TryAgain(Clock::time_point now) {
  m_nextTry = now + OutputKeeper::kRetryInterval;
  std::string text;
  if (!m_input->Open(m_shape, eomExact, text) || !m_input->Start(*m_taker, text)) return;
  m_lost = false;
  m_heardAt = now;
}

}  // namespace

std::unique_ptr<RecordingFeed> MakeLiveFeed(std::unique_ptr<Input> input) {
  return std::make_unique<LiveFeed>(std::move(input));
}

}  // namespace qm
