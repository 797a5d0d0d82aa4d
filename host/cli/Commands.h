#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "cli/PlayOutput.h"
#include "cli/PlayRun.h"

// What the program does, command by command. Each returns the exit status.
namespace qm::cli {

enum enPrinting : std::int32_t { epForPeople, epJSON };

struct PlayOptions {
  std::vector<std::string> items;
  OutputChoice output;
  PlayWishes wishes;
  std::string profile;
  std::string eventsPath;
  enPrinting printing = epForPeople;
};

std::int32_t Play(const PlayOptions& options);
std::int32_t ListDevices(enPrinting printing);
std::int32_t TellAbout(const std::string& path, enPrinting printing);

}  // namespace qm::cli
