#pragma once
#include "audio/CopyErrors.h"

namespace qm {

class cAudioFormat;

// Whether a destination can have the format: its type is set, and rate and channels are ones that copies are
// made in.
enCopyError CheckCopyFormat(const cAudioFormat& format);

// What the format leaves open, taken from the source: everything when it has no type, rate, channels and what
// else the type needs when that is the source's own.
cAudioFormat CompleteCopyFormat(const cAudioFormat& format, const cAudioFormat& source);

}  // namespace qm
