#pragma once
#include <cstdint>

namespace qm {

class AudioFileBytes;
class AudioFileTarget;

// Copies everything from a position of one file on to a position of another. False when either fails.
bool CopyBytes(AudioFileBytes& source, std::int64_t from, AudioFileTarget& target, std::int64_t to);

}  // namespace qm
