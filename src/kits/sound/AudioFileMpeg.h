#pragma once
#include <cstdint>
#include <memory>

#include "kits/sound/AudioFilePackets.h"

namespace qm {

// MPEG layer 2 or 3 audio in the bytes from start to end, tags around it left out. The bytes outlive the
// source. Null when there is none.
std::unique_ptr<AudioPacketSource> MakeMpegSource(std::shared_ptr<AudioFileBytes> bytes, std::int64_t start,
                                                  std::int64_t end);

}  // namespace qm
