#pragma once
#include <pthread.h>

#include <cstdint>

namespace qm {

// Above all ordinary threads, and below those of the sound servers, which run from 5 on.
enum enThreadPriority : std::int32_t {
  etpRender = 2,
  etpCallback = 3,
};

// Lets a thread go before all ordinary ones. The system may refuse, as it does without a limit for real-time
// priority; the thread then takes its turn with everything else.
void RaisePriority(pthread_t thread, enThreadPriority priority);

}  // namespace qm
