#pragma once
#include <memory>

#include "kits/sound/AudioFilePackets.h"

namespace qm {

// Vorbis audio in an Ogg file. Null, and the error, when there is none.
std::unique_ptr<AudioPacketSource> MakeOggSource(std::shared_ptr<AudioFileBytes> bytes,
                                                 AudioFileError& error);

}  // namespace qm
