#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "item/RiffWalk.h"
#include "item/cRiffReader.h"

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

// The item as its file tells it, referred to by its path; titled by its base name and played from its first
// frame to its last where the file says nothing else. False, with one line in errorText, for a file that
// cannot be read as audio.
bool LoadItemFile(const std::string& path, ItemFile& file, std::string& errorText);

// A file to be told about, with what else it holds.
struct ItemFileContents {
  ItemFile file;
  std::vector<RiffChunk> chunks;  // of a WAV file
  // Its texts; of other files what their tags say, by friendly names, or their attributes by their own.
  std::vector<tyRiffChunkTag> tags;
};

// The same without opening the audio where the file's chunks say enough. The item has the markers of the
// marker file beside it, "NAME.EXT.pmk".
bool LoadItemFileContents(const std::string& path, ItemFileContents& contents, std::string& errorText);

}  // namespace qm::cli
