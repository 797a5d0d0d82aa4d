#pragma once
#include <memory>

#include "kits/sound/AudioFilePackets.h"

namespace qm {

struct WaveHeader;

// WAV format tags of the two common adaptive codings.
enum : std::int32_t { wftMicrosoftADPCM = 2, wftImaADPCM = 0x11 };

// The blocks of a WAV file with one of those tags; null when its header makes no sense.
std::unique_ptr<AudioPacketSource> MakeAdpcmSource(std::shared_ptr<AudioFileBytes> bytes,
                                                   const WaveHeader& header);

}  // namespace qm
