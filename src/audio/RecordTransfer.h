#pragma once
#include <functional>
#include <string>

namespace qm {

// Copies a finished recording to its place, where it appears as one step and on the disk itself. `progress`
// gets per cent. False with one line in errorText leaves both files as they were.
bool TransferRecording(const std::string& from, const std::string& to,
                       const std::function<void(float percent)>& progress, std::string& errorText);

}  // namespace qm
