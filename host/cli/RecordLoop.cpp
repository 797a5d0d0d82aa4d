#include <fmt/format.h>
#include <poll.h>
#include <unistd.h>

#include <memory>

#include <nlohmann/json.hpp>

#include "audio/cRecorder.h"
#include "cli/Failure.h"
#include "cli/RecordRun.h"
#include "cli/RecordView.h"
#include "cli/StopSignals.h"
#include "cli/Terminal.h"
#include "kits/common/Dates.h"
#include "kits/sound/engine/AudioEngine.h"

namespace qm::cli {

namespace {

constexpr int kWaitMilliseconds = 20;
constexpr char kKeys[] = "space pauses and goes on, s saves and stops, d discards\n";

enum class Wish { GoOn, Save, Discard };

// Gives the engine its turns, shows what happens, hears keys and signals, until the recording is to end.
class RecordLoop {
 public:
  RecordLoop(RecordRun& run, const StopSignals& signals, enPrinting printing)
      : m_run(run), m_signals(signals) {
    if (run.Offline() || printing == epJSON || !Terminal::Usable()) return;
    m_terminal = std::make_unique<Terminal>();
    m_view = std::make_unique<RecordView>(run.Recorder(), *m_terminal);
    m_terminal->Write(kKeys);
  }

  Wish Run() {
    Wish wish = Wish::GoOn;
    while (wish == Wish::GoOn && !m_run.Ended()) {
      if (!m_run.Engine().Pump()) Wait();
      wish = TakeSignal();
      if (m_view && wish == Wish::GoOn) wish = TakeKeys();
      if (m_view) m_view->Refresh(m_asking);
    }
    if (m_view) m_view->Erase();
    return wish == Wish::Discard ? wish : Wish::Save;
  }

 private:
  void Wait() const {
    pollfd waited[] = {{m_run.Engine().WaitDescriptor(), POLLIN, 0},
                       {m_signals.Descriptor(), POLLIN, 0},
                       {m_terminal ? STDIN_FILENO : -1, POLLIN, 0}};
    poll(waited, std::size(waited), kWaitMilliseconds);
  }

  Wish TakeSignal() const {
    const int number = m_signals.Take();
    if (number == 0) return Wish::GoOn;
    if (number != SIGTSTP) return Wish::Save;
    if (m_terminal)
      m_terminal->Suspend();
    else
      raise(SIGSTOP);
    return Wish::GoOn;
  }

  Wish TakeKeys() {
    for (const char key : m_terminal->ReadKeys())
      if (const Wish wish = Press(key); wish != Wish::GoOn) return wish;
    return Wish::GoOn;
  }

  Wish Press(char key) {
    if (std::exchange(m_asking, !m_asking && key == 'd')) return key == 'y' ? Wish::Discard : Wish::GoOn;
    if (key == ' ') {
      cRecorder& recorder = m_run.Recorder();
      recorder.Status() == rsPaused ? recorder.ResumeItem() : recorder.PauseItem();
    }
    return key == 's' ? Wish::Save : Wish::GoOn;
  }

  RecordRun& m_run;
  const StopSignals& m_signals;
  std::unique_ptr<Terminal> m_terminal;
  std::unique_ptr<RecordView> m_view;
  bool m_asking = false;
};

void Tell(const RecordRun& run, const RecordOptions& options) {
  if (options.printing == epJSON) {
    const nlohmann::ordered_json document{{"file", options.path},
                                          {"kept", run.Kept()},
                                          {"seconds", run.Seconds()},
                                          {"format", options.format.FormatDescription()},
                                          {"framesLost", run.FramesLost()}};
    fmt::print("{}\n", document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace));
  } else {
    fmt::print("{} {}  {}  {}\n", run.Kept() ? "recorded" : "discarded", options.path,
               SecondsToText(run.Seconds(), ettDuration, true), options.format.FormatDescription());
  }
}

}  // namespace

std::int32_t Record(const RecordOptions& options) {
  const StopSignals signals;
  RecordRun run(options);
  std::string errorText;
  if (!run.Start(errorText)) {
    if (!errorText.empty()) TellFailure(errorText);
    return exsFailed;
  }
  Wish wish = Wish::Save;
  {
    RecordLoop loop(run, signals, options.printing);
    wish = loop.Run();
  }
  run.Close(wish == Wish::Save);
  Tell(run, options);
  return run.Failed() ? exsFailed : exsDone;
}

}  // namespace qm::cli
