#include "cli/PlayLoop.h"

#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include "cli/Failure.h"
#include "cli/LiveKeys.h"
#include "cli/LiveView.h"
#include "cli/PlainView.h"
#include "cli/ProgressBar.h"
#include "cli/StopSignals.h"
#include "cli/Terminal.h"
#include "kits/sound/engine/AudioEngine.h"

namespace qm::cli {

namespace {
constexpr int kWaitMilliseconds = 20;
}

PlayLoop::PlayLoop(PlayRun& run, PlayOutput& output, const StopSignals& signals)
    : m_run(run), m_output(output), m_engine(*output.Engine()), m_signals(signals) {}

PlayLoop::~PlayLoop() = default;

// The live view where there is somebody to look at it, else a line for each event.
void PlayLoop::ShowToPeople() {
  if (m_output.Offline() || !Terminal::Usable()) {
    m_shown.push_back(std::make_unique<PlainView>(m_run));
    return;
  }
  m_terminal = std::make_unique<Terminal>();
  auto view = std::make_unique<LiveView>(m_run, m_engine, *m_terminal);
  m_view = view.get();
  m_run.tell = [this](const std::string& text) { m_view->Tell(text); };
  m_shown.push_back(std::move(view));
}

void PlayLoop::ShowProgress() {
  if (!m_output.Offline() || !isatty(STDERR_FILENO)) return;
  auto bar = std::make_unique<ProgressBar>(m_run);
  m_run.tell = [bar = bar.get()](const std::string& text) {
    bar->Clear();
    TellFailure(text);
  };
  m_shown.push_back(std::move(bar));
}

int PlayLoop::Run(enPrinting printing) {
  ShowProgress();  // before the view, so that the bar is gone when a line comes
  if (printing == epForPeople) ShowToPeople();
  for (const auto& shown : m_shown) m_run.Observe(*shown);
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
  for (const auto& shown : m_shown) m_run.StopObserving(*shown);
  m_run.tell = TellFailure;
  m_view = nullptr;
  m_shown.clear();
  m_terminal.reset();
}

void PlayLoop::PumpFile() {
  if (m_engine.Pump() || m_run.Finished()) return;
  m_run.tell("the sound does not go on");
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
  const std::string bytes = m_terminal->ReadKeys();
  for (std::string_view rest = bytes; !rest.empty();) PressKey(TakeKey(rest), m_run);
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
