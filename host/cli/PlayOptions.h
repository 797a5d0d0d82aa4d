#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "cli/Command.h"
#include "cli/PlayOutput.h"
#include "cli/PlayRun.h"

namespace qm::cli {

// How the items belong together.
enum enPlayManner : std::int32_t {
  epmSequence,  // one after another
  epmList,      // one running order
  epmDesk,      // as somebody at the terminal wants them
};

struct PlayOptions {
  std::vector<std::string> items;
  OutputChoice output;
  PlayWishes wishes;
  enPlayManner manner = epmSequence;
  std::int16_t players = 0;  // of the desk; 0 leaves it to the settings
  std::string profile;
  std::string eventsPath;
  std::string playLogsPath;
  enPrinting printing = epForPeople;
};

// The exit status.
std::int32_t Play(const PlayOptions& options);

}  // namespace qm::cli
