#pragma once
#include <cstdint>
#include <optional>

#include "audio/WaveFormat.h"

namespace qm {

class RiffSource;
struct RiffForm;

// What the chunks of a WAV file tell of its audio, without looking at it.
struct WaveFacts {
  tyWaveFormat format;
  std::int64_t dataBytes = 0;  // those that the file holds

  std::int64_t Frames() const { return format.BlockAlign == 0 ? 0 : dataBytes / format.BlockAlign; }
  // By the average of bytes per second; 0 when there is none.
  float Seconds() const;
};

// Nothing without a format chunk.
std::optional<WaveFacts> FindWaveFacts(const RiffSource& file, const RiffForm& form);

}  // namespace qm
