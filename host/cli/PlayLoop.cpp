#include "cli/PlayLoop.h"

#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include "cli/Failure.h"
#include "cli/StopSignals.h"
#include "kits/sound/engine/AudioEngine.h"

namespace qm::cli {

namespace {
constexpr int kWaitMilliseconds = 20;
}

PlayLoop::PlayLoop(Run& run, PlayOutput& output, const StopSignals& signals)
    : m_run(run), m_pool(run.Pool()), m_output(output), m_engine(m_pool.Engine()), m_signals(signals) {}

PlayLoop::~PlayLoop() = default;

void PlayLoop::Add(std::unique_ptr<PlayObserver> shown) {
  m_pool.Observe(*shown);
  m_shown.push_back(std::move(shown));
}

void PlayLoop::Show(const Showing& showing) {
  if (!showing.live || m_output.Offline() || !Terminal::Usable()) {
    if (showing.lines) Add(showing.lines());
    return;
  }
  m_terminal = std::make_unique<Terminal>(showing.use);
  auto view = showing.live(*m_terminal);
  m_view = view.get();
  m_pool.tell = [this](const std::string& text) { m_view->Tell(text); };
  Add(std::move(view));
}

int PlayLoop::Play(const Showing& showing) {
  Show(showing);
  m_run.Start();
  while (!m_run.Finished()) {
    m_run.LoadAhead();
    if (m_output.Offline())
      PumpFile();
    else
      PumpLive();
    TakeSignal();
  }
  // What is still ringing out belongs to the file.
  while (m_output.Offline() && m_engine.Pump()) {
  }
  if (m_view) m_view->Erase();
  PutAway();
  return m_endedBy;
}

void PlayLoop::PutAway() {
  for (const auto& shown : m_shown) m_pool.StopObserving(*shown);
  m_pool.tell = TellFailure;
  m_view = nullptr;
  m_shown.clear();
  m_terminal.reset();
}

void PlayLoop::PumpFile() {
  if (m_engine.Pump() || m_run.Finished()) return;
  m_pool.tell("the sound does not go on");
  m_run.Stop();
}

void PlayLoop::PumpLive() {
  if (!m_engine.Pump()) Wait();
  if (!m_view) return;
  TakeKeys();
  m_view->Refresh();
}

void PlayLoop::Wait() const {
  pollfd waited[] = {{m_engine.WaitDescriptor(), POLLIN, 0},
                     {m_signals.Descriptor(), POLLIN, 0},
                     {m_terminal ? STDIN_FILENO : -1, POLLIN, 0}};
  poll(waited, std::size(waited), kWaitMilliseconds);
}

void PlayLoop::TakeKeys() {
  const auto now = std::chrono::steady_clock::now();
  m_keys.Feed(m_terminal->ReadKeys(), now);
  for (Key key; m_keys.Take(key, now) && !m_run.Finished();) m_view->Press(key);
}

void PlayLoop::TakeSignal() {
  const int number = m_signals.Take();
  if (number == 0) return;
  if (number != SIGTSTP) {
    m_endedBy = number;
    m_run.Stop();
  } else if (m_terminal) {
    m_terminal->Suspend();
    m_view->Leave();
  } else {
    raise(SIGSTOP);
  }
}

}  // namespace qm::cli
