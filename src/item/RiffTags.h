#pragma once
#include <vector>

namespace qm {

class RiffSource;
struct RiffChunk;
struct tyRiffChunkTag;

// Appends the texts of one chunk. Both stop at 4096 tags and 16 MiB of text in all.
void ReadListInfo(const RiffSource& file, const RiffChunk& chunk, std::vector<tyRiffChunkTag>& tags);
// False when a 16-bit character is too large, with the tags in front of it appended.
bool ReadId3Frames(const RiffSource& file, const RiffChunk& chunk, std::vector<tyRiffChunkTag>& tags);

}  // namespace qm
