#pragma once
#include <cstdint>

#include "audio/WaveFormat.h"

// The formats that WAV files can be written in.
namespace qm {

enum enEncoderStatus : std::int32_t {
  eesOK = 0,
  eesNotPossible = 512,  // no encoder for the tag, or not for that rate or channel count
};

// Whether there is an encoder for a format tag.
std::int32_t FindWaveEncoder(std::int32_t formatTag);

// The format in which that tag stores audio of the source's rate and channels; suggested is written on eesOK
// alone.
std::int32_t SuggestWaveFormat(const tyWaveFormat& source, std::int32_t formatTag, tyWaveFormat& suggested);

// 16-bit PCM; a rate or channel count that a format cannot hold becomes 0, which no encoder takes.
tyWaveFormat PcmFormat(std::int32_t sampleRate, std::int32_t channels);

}  // namespace qm
