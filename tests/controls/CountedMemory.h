#pragma once
#include <cstdint>

namespace qm::test {

// How often this program has taken memory with new.
extern std::int64_t allocations;

}  // namespace qm::test
