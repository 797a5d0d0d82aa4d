#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Walking the chunks of a RIFF, RF64 or BW64 file of type WAVE. Lengths that lie are brought back to what the
// file holds; a walk never leaves the file and ends at 4096 chunks.
namespace qm {

class RiffSource;

inline constexpr std::size_t kMostRiffChunks = 4096;
inline constexpr std::int64_t kRiffHeadBytes = 8;  // of a chunk: id and length

struct RiffChunk {
  std::string id;           // four characters, in the case of the file
  std::string type;         // of a LIST: four characters
  std::int64_t start = 0;   // offset of the data
  std::int64_t length = 0;  // bytes of it that are there
  std::int64_t stated = 0;  // as its head says, or for it the ds64 chunk

  std::int64_t Head() const { return start - kRiffHeadBytes; }
  std::int64_t End() const { return start + length; }
};

struct RiffForm {
  std::uint32_t statedLength = 0;  // as it stands behind the form's id
  bool isLong = false;             // RF64 or BW64: lengths of form and data stand in the ds64 chunk
  std::int64_t longLengths = 0;    // offset of those, 0 where there is no such chunk
  std::int64_t statedEnd = 0;      // where the form ends by its own account, the file's end at most
  std::vector<RiffChunk> chunks;
  std::int64_t end = 0;  // where a next chunk would stand: behind the last and its pad byte
};

// Up to the form's end, or on through chunks that follow behind it.
enum enRiffExtent : std::int32_t { rxForm = 0, rxFile = 1 };

// False for a file that is no such form. A form whose length cannot be (0, the largest number, one that ends
// within its own audio) reaches to the file's end.
bool WalkRiff(const RiffSource& file, enRiffExtent extent, RiffForm& form);

// The first chunk of that name, ignoring case; null for none.
const RiffChunk* FindRiffChunk(const RiffForm& form, std::string_view id);

// Id and stated length of a chunk whose head lies in front of limit. False when none stands there.
struct RiffHead {
  std::string id;
  std::uint32_t length = 0;
};
bool ReadRiffHead(const RiffSource& file, std::int64_t position, std::int64_t limit, RiffHead& head);

// Where the chunk behind one that ends at `end` begins: behind a pad byte if its length is odd, unless the
// writer forgot it.
std::int64_t NextRiffChunk(const RiffSource& file, std::int64_t end, std::int64_t length, std::int64_t limit);

}  // namespace qm
