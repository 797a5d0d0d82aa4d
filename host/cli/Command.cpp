#include "cli/Command.h"

#include <CLI/CLI.hpp>

namespace qm::cli {

void AddJson(CLI::App& command, enPrinting& printing, const std::string& help) {
  command.add_flag_callback(
      "--json", [&printing] { printing = epJSON; }, help);
}

}  // namespace qm::cli
