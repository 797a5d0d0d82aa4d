#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "cli/Command.h"
#include "cli/PlayOutput.h"
#include "cli/PlayRun.h"

namespace qm::cli {

struct PlayOptions {
  std::vector<std::string> items;
  OutputChoice output;
  PlayWishes wishes;
  std::string profile;
  std::string eventsPath;
  enPrinting printing = epForPeople;
};

// The exit status.
std::int32_t Play(const PlayOptions& options);

}  // namespace qm::cli
