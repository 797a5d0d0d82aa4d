#pragma once
#include <cstdint>
#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace qm::cli {

enum enPrinting : std::int32_t { epForPeople, epJSON };

// A command of the program: its part of the parser, and what it does once its arguments stand. What arguments
// must fulfil beyond the parser's own checks is checked in the part's callback, by throwing its
// ValidationError. `run` returns the exit status.
struct Command {
  CLI::App* app = nullptr;
  std::function<std::int32_t()> run;
};

// The usual --json option.
void AddJson(CLI::App& command, enPrinting& printing, const std::string& help = "Print one JSON document");

Command AddPlayCommand(CLI::App& program);
Command AddDevicesCommand(CLI::App& program);
Command AddInfoCommand(CLI::App& program);
Command AddTagCommand(CLI::App& program);
Command AddCopyCommand(CLI::App& program);
Command AddPeaksCommand(CLI::App& program);
Command AddWaveCommand(CLI::App& program);
Command AddRecordCommand(CLI::App& program);

}  // namespace qm::cli
