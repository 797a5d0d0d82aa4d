#pragma once
#include <memory>

#include "kits/sound/AudioFilePackets.h"

namespace qm {

// Windows Media audio in an ASF file. Null, and the error, when there is none of versions 1 and 2.
std::unique_ptr<AudioPacketSource> MakeWmaSource(std::shared_ptr<AudioFileBytes> bytes,
                                                 AudioFileError& error);

}  // namespace qm
