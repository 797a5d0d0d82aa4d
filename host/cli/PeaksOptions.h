#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "cli/Command.h"

namespace qm::cli {

enum enPeaksTask : std::int32_t { eptMake, eptMakeAnew, eptCheck };

struct PeaksOptions {
  std::vector<std::string> paths;
  enPeaksTask task = eptMake;
  enPrinting printing = epForPeople;
};

// Makes or checks the peak files; the exit status.
std::int32_t Peaks(const PeaksOptions& options);

}  // namespace qm::cli
