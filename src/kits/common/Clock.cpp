#include "kits/common/Clock.h"

namespace qm {
namespace {

class RealClock : public Clock {
 public:
  std::chrono::system_clock::time_point Now() const override { return std::chrono::system_clock::now(); }
};

}  // namespace

std::shared_ptr<Clock> SystemClock() {
  static const auto clock = std::make_shared<RealClock>();
  return clock;
}

}  // namespace qm
