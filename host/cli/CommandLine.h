#pragma once
#include <cstdint>

namespace qm::cli {

// The whole program. Returns the exit status.
std::int32_t Run(int argc, char** argv);

}  // namespace qm::cli
