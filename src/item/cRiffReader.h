#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace qm {

class RiffSource;

// One chunk of a RIFF file's top level.
struct tyRIFFChunk {
  std::string Name;              // four characters
  std::string Type;              // of a LIST: four characters
  std::int32_t StartOfData = 0;  // offset in the file; 2147483647 for any beyond
  std::int32_t Length = 0;       // bytes that the file holds, likewise
};

// One text of a LIST INFO or "id3 " chunk.
struct tyRiffChunkTag {
  std::string ParentTag;     // "LIST" or "id3 "
  std::string TagName;       // four characters
  std::string FriendlyName;  // "" for a name that is not known
  std::string Data;
};

// The top-level chunks of a RIFF WAVE file and the texts of its LIST INFO and "id3 " chunks. Reads only, and
// holds no file open between calls. Host thread.
//
// Texts with a byte order mark are formed as they always were: FF FE puts the high byte first, any other mark
// the low one, and a text in UTF-8 is taken for 16-bit characters.
class cRiffReader {
 public:
  // Replaces both lists. False, with both empty, when the file is missing, cannot be opened or is not RIFF
  // WAVE; and, with what was read until then kept, at a 16-bit character from 0x8000 on. A form whose length
  // is stated as 0 has no chunks.
  bool LoadFromFile(const std::string& Filename, bool ReadLIST, bool ReadID3);
  // The same of a file that is open already.
  bool LoadFromSource(const RiffSource& file, bool ReadLIST, bool ReadID3);

  // Indices from 1; any other gives empty fields. In the order of the file; at most 4096 of each.
  std::int16_t NumberRIFFChunks() const { return static_cast<std::int16_t>(m_chunks.size()); }
  tyRIFFChunk RIFFChunk(std::int32_t index) const;
  std::int32_t NumberRIFFChunkTags() const { return static_cast<std::int32_t>(m_tags.size()); }
  tyRiffChunkTag RIFFChunkTag(std::int32_t index) const;

 private:
  std::vector<tyRIFFChunk> m_chunks;
  std::vector<tyRiffChunkTag> m_tags;
};

}  // namespace qm
