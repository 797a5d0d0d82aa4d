#pragma once
#include <memory>

#include "cli/PlayOptions.h"

namespace qm::cli {

class LiveView;
class StopSignals;
class Terminal;

// Plays a run to its end: gives the engine its turns, shows what happens, hears keys and signals.
class PlayLoop {
 public:
  PlayLoop(PlayRun& run, PlayOutput& output, const StopSignals& signals);
  ~PlayLoop();

  // The signal that ended it, or 0.
  int Run(enPrinting printing);

 private:
  void ShowToPeople();
  void ShowProgress();
  void PutAway();
  void PumpFile();
  void PumpLive();
  void Wait() const;
  void TakeKeys();
  void TakeSignal();

  PlayRun& m_run;
  PlayOutput& m_output;
  AudioEngine& m_engine;
  const StopSignals& m_signals;
  std::vector<std::unique_ptr<PlayObserver>> m_shown;
  std::unique_ptr<Terminal> m_terminal;  // with the live view only
  LiveView* m_view = nullptr;            // one of those shown
  int m_endedBy = 0;
};

}  // namespace qm::cli
