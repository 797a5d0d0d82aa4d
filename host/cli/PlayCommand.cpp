#include <signal.h>
#include <unistd.h>

#include <memory>

#include "cli/Desk.h"
#include "cli/DeskView.h"
#include "cli/EventWriter.h"
#include "cli/Failure.h"
#include "cli/LiveView.h"
#include "cli/PlainView.h"
#include "cli/PlayList.h"
#include "cli/PlayLogWriter.h"
#include "cli/PlayLoop.h"
#include "cli/PlayOptions.h"
#include "cli/PlaySequence.h"
#include "cli/ProgressBar.h"
#include "cli/StopSignals.h"

namespace qm::cli {

namespace {

bool ParseItems(const std::vector<std::string>& texts, std::vector<ItemArgument>& items) {
  for (const std::string& text : texts) {
    std::string errorText;
    items.emplace_back();
    if (ParseItemArgument(text, items.back(), errorText)) continue;
    TellFailure("'" + text + "': " + errorText);
    return false;
  }
  return true;
}

// The files that are written while it plays.
struct Writers {
  std::vector<std::unique_ptr<EventWriter>> events;
  std::unique_ptr<PlayLogWriter> logs;

  bool OpenEvents(const PlayOptions& options, std::string& errorText) {
    if (options.printing == epJSON) events.push_back(EventWriter::ToStandardOutput());
    if (options.eventsPath.empty()) return true;
    auto writer = EventWriter::Open(options.eventsPath, errorText);
    if (!writer) return false;
    events.push_back(std::move(writer));
    return true;
  }

  bool OpenLogs(const PlayOptions& options, const PlayPool& pool, std::string& errorText) {
    if (options.playLogsPath.empty()) return true;
    logs = std::make_unique<PlayLogWriter>(pool, options.playLogsPath);
    return logs->Open(errorText);
  }

  void Observe(PlayPool& pool) const {
    for (const auto& writer : events) pool.Observe(*writer);
    if (logs) pool.Observe(*logs);
  }

  bool Finish(std::string& errorText) {
    bool good = !logs || logs->Finish(errorText);
    for (const auto& writer : events) good = writer->Finish(errorText) && good;
    return good;
  }
};

// Both are finished whatever became of the other; a failure already told is not told again.
bool FinishAll(PlayOutput& output, Writers& writers, bool told) {
  std::string errorText;
  bool good = output.Finish(errorText);
  good = writers.Finish(errorText) && good;
  if (!good && !told) TellFailure(errorText);
  return good;
}

int PlayRunOut(PlayRun& run, PlayOutput& output, const StopSignals& signals, enPrinting printing) {
  PlayLoop loop(run, output, signals);
  if (output.Offline() && isatty(STDERR_FILENO)) {
    auto bar = std::make_unique<ProgressBar>(run);
    run.Pool().tell = [bar = bar.get()](const std::string& text) {
      bar->Clear();
      TellFailure(text);
    };
    loop.Add(std::move(bar));  // before the lines, so that the bar is gone when one comes
  }
  Showing showing;
  if (printing == epForPeople) {
    showing.live = [&run](const Terminal& terminal) { return std::make_unique<LiveView>(run, terminal); };
    showing.lines = [&run] { return std::make_unique<PlainView>(run); };
  }
  return loop.Play(showing);
}

int WorkDesk(Desk& desk, PlayOutput& output, const StopSignals& signals) {
  PlayLoop loop(desk, output, signals);
  Showing showing;
  showing.use = etuWholeScreen;
  showing.live = [&desk](const Terminal& terminal) { return std::make_unique<DeskView>(desk, terminal); };
  return loop.Play(showing);
}

std::int32_t Play(const PlayOptions& options, std::vector<ItemArgument> items, PlayOutput& output,
                  const StopSignals& signals) {
  Writers writers;
  std::string errorText;
  if (!writers.OpenEvents(options, errorText)) return TellFailure(errorText), exsFailed;
  const bool oneRun = options.manner != epmDesk;
  PlayPool pool(output.Engine(), {options.profile, output.DeviceNumber(),
                                  oneRun ? std::int16_t{1} : options.players, options.wishes.volume});
  if (!writers.OpenLogs(options, pool, errorText)) return TellFailure(errorText), exsFailed;
  writers.Observe(pool);

  const auto finish = [&](const Run& run, int ended) -> std::int32_t {
    pool.Terminate();
    const bool finished = FinishAll(output, writers, run.Failed());
    if (ended != 0) return exsSignal + ended;
    return finished && !run.Failed() ? exsDone : exsFailed;
  };
  if (!oneRun) {
    Desk desk(pool, std::move(items), options.wishes.volume);
    return finish(desk, WorkDesk(desk, output, signals));
  }
  std::unique_ptr<PlayRun> run;
  if (options.manner == epmList)
    run = std::make_unique<PlayList>(pool, std::move(items), options.wishes);
  else
    run = std::make_unique<PlaySequence>(pool, std::move(items), options.wishes);
  return finish(*run, PlayRunOut(*run, output, signals, options.printing));
}

}  // namespace

std::int32_t Play(const PlayOptions& options) {
  std::vector<ItemArgument> items;
  if (!ParseItems(options.items, items)) return exsUsage;
  const StopSignals signals;
  signal(SIGPIPE, SIG_IGN);  // a reader that goes away must not take the sound with it

  if (options.manner == epmDesk && !Terminal::Usable())
    return TellFailure("the desk needs a terminal to be worked at"), exsFailed;
  PlayOutput output;
  std::string errorText;
  if (!output.Choose(options.output, errorText)) return TellFailure(errorText), exsFailed;
  return Play(options, std::move(items), output, signals);
}

}  // namespace qm::cli
