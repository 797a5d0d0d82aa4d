#include "kits/sound/devices/ThreadPriority.h"

#include <sched.h>

namespace qm {

void RaisePriority(pthread_t thread, enThreadPriority priority) {
  sched_param parameter{};
  parameter.sched_priority = priority;
  pthread_setschedparam(thread, SCHED_RR | SCHED_RESET_ON_FORK, &parameter);
}

}  // namespace qm
