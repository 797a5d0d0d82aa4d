#pragma once
#include <functional>
#include <string>

namespace qm::cli {

// Calls `found` for every file in a folder and below it whose extension is that of an audio type, in the
// order of their names, and `failed` with one line for a folder that cannot be read. Folders behind links are
// left out.
void ForEachAudioFile(const std::string& folder, const std::function<void(const std::string&)>& found,
                      const std::function<void(const std::string&)>& failed);

}  // namespace qm::cli
