#pragma once
#include <functional>
#include <memory>
#include <vector>

#include "cli/LiveScreen.h"
#include "cli/PlayOutput.h"
#include "cli/PlayRun.h"
#include "cli/Terminal.h"
#include "cli/TerminalKeys.h"

namespace qm::cli {

class StopSignals;

// What a run looks like to people. Absent functions show nothing.
struct Showing {
  enTerminalUse use = etuBlock;
  std::function<std::unique_ptr<LiveScreen>(const Terminal&)> live;  // where there is somebody to look at it
  std::function<std::unique_ptr<PlayObserver>()> lines;              // elsewhere
};

// Plays a run to its end: gives the engine its turns, shows what happens, hears keys and signals.
class PlayLoop {
 public:
  PlayLoop(Run& run, PlayOutput& output, const StopSignals& signals);
  ~PlayLoop();

  // For long work without a picture: shown until the end.
  void Add(std::unique_ptr<PlayObserver> shown);

  // The signal that ended it, or 0.
  int Play(const Showing& showing);

 private:
  void Show(const Showing& showing);
  void PutAway();
  void PumpFile();
  void PumpLive();
  void Wait() const;
  void TakeKeys();
  void TakeSignal();

  Run& m_run;
  PlayPool& m_pool;
  PlayOutput& m_output;
  AudioEngine& m_engine;
  const StopSignals& m_signals;
  std::vector<std::unique_ptr<PlayObserver>> m_shown;
  std::unique_ptr<Terminal> m_terminal;  // with a live view only
  LiveScreen* m_view = nullptr;          // one of those shown
  KeyReader m_keys;
  int m_endedBy = 0;
};

}  // namespace qm::cli
