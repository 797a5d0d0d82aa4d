#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/Command.h"

namespace qm::cli {

// What `quillmere copy` was told. 0 and -1 leave a choice to the sources.
struct CopyOptions {
  std::vector<std::string> paths;           // the sources, and behind them the destination
  std::optional<float> normalise, autoTop;  // per cent
  float start = -1, end = -1;               // seconds of each source
  float mix = 0;                            // seconds
  float mixVolume = 75;                     // per cent
  std::int32_t rate = 0, channels = 0, bits = 0;
  std::int32_t bitRate = 0;  // below 1000 in thousands
  enPrinting printing = epForPeople;
};

std::int32_t Copy(const CopyOptions& options);

}  // namespace qm::cli
