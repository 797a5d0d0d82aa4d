#include "cli/AudioFolders.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "audio/AudioFileTypes.h"
#include "kits/sound/cAudioFormat.h"

namespace qm::cli {

namespace fs = std::filesystem;

void ForEachAudioFile(const std::string& folder, const std::function<void(const std::string&)>& found,
                      const std::function<void(const std::string&)>& failed) {
  std::error_code error;
  std::vector<fs::path> entries;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
    entries.push_back(entry->path());
  if (error) failed("cannot read the folder '" + folder + "': " + error.message());
  std::sort(entries.begin(), entries.end());
  for (const fs::path& entry : entries) {
    std::error_code ignored;
    if (fs::is_directory(fs::symlink_status(entry, ignored)))
      ForEachAudioFile(entry.string(), found, failed);
    else if (GetTypeForFile(entry.string()) != aftOther && !fs::is_directory(entry, ignored))
      found(entry.string());
  }
}

}  // namespace qm::cli
