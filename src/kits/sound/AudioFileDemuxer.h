#pragma once
#include <memory>

#include "kits/sound/AudioFilePackets.h"

namespace qm {

// Sources for the containers that the codec library takes apart. Null, and the error, when there is no audio
// of the right kind in them.
std::unique_ptr<AudioPacketSource> MakeOggSource(std::shared_ptr<AudioFileBytes> bytes,
                                                 AudioFileError& error);
std::unique_ptr<AudioPacketSource> MakeWmaSource(std::shared_ptr<AudioFileBytes> bytes,
                                                 AudioFileError& error);

}  // namespace qm
