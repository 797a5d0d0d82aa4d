#pragma once
#include <chrono>
#include <functional>

namespace qm {

// Runs `work` on a thread of its own and waits for it. False when it has not ended within the limit: it then
// goes on by itself, so it must own all that it touches. For calls into a sound server that may be stuck.
bool RunWithin(std::chrono::milliseconds limit, std::function<void()> work);

}  // namespace qm
