#pragma once
#include <cstdint>
#include <optional>
#include <string>

#include "kits/sound/cAudioFormat.h"

namespace qm {

class AudioFileBytes;

struct SoundFacts {
  cAudioFormat format;
  std::int64_t frames = 0;
  std::int32_t channelMode = 0;  // of an MPEG header
};

// A window for looks at a few places.
inline constexpr std::size_t kGlanceBytes = 1 << 12;

// Of any file that can be read as audio, with the exact length: the open bytes of the file at the path. MPEG
// files are looked at in a few places where that tells the length, and walked from end to end where it does
// not.
std::optional<SoundFacts> ReadSoundFacts(AudioFileBytes& bytes, const std::string& path);

// By those few places alone; none when they do not tell, or hold no MPEG audio.
std::optional<SoundFacts> GlanceAtMpeg(AudioFileBytes& bytes);

}  // namespace qm
