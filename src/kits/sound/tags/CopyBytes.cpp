#include "kits/sound/tags/CopyBytes.h"

#include <vector>

#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/AudioFileTarget.h"

namespace qm {

bool CopyBytes(AudioFileBytes& source, std::int64_t from, AudioFileTarget& target, std::int64_t to) {
  std::vector<std::uint8_t> part(1 << 20);
  while (from < source.Size()) {
    const std::size_t got = source.ReadAt(from, part.data(), part.size());
    if (got == 0 || !target.WriteAt(to, part.data(), got)) return false;
    from += static_cast<std::int64_t>(got);
    to += static_cast<std::int64_t>(got);
  }
  return true;
}

}  // namespace qm
