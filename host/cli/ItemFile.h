#pragma once
#include <cstdint>
#include <memory>
#include <string>

namespace qm {
class cHDItem;
}

namespace qm::cli {

// An audio file as an item, and what the item does not tell of it.
struct ItemFile {
  std::shared_ptr<cHDItem> item;
  std::int64_t frames = 0;
  double milliseconds = 0;
};

// The item of a file as it is before anything is known of it: referred to by its path, titled by its base
// name, played from its first frame to its last, with no marks of its own. False, with one line in errorText,
// for a file that cannot be read as audio.
bool LoadItemFile(const std::string& path, ItemFile& file, std::string& errorText);

}  // namespace qm::cli
