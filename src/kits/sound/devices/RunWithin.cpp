#include "kits/sound/devices/RunWithin.h"

#include <future>
#include <memory>
#include <system_error>
#include <thread>

namespace qm {

bool RunWithin(std::chrono::milliseconds limit, std::function<void()> work) {
  auto done = std::make_shared<std::promise<void>>();
  std::future<void> ended = done->get_future();
  try {
    std::thread([done, work = std::move(work)]() mutable {
      try {
        work();
      } catch (...) {
        // What the work has to tell, it tells through what it owns.
      }
      work = nullptr;
      done->set_value();
    }).detach();
  } catch (const std::system_error&) {
    return false;
  }
  return ended.wait_for(limit) == std::future_status::ready;
}

}  // namespace qm
