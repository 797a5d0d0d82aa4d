#include "kits/sound/SoundSystem.h"

namespace qm {

std::uint32_t SuitableFormatBit(std::int32_t sampleRate, std::int32_t channels) {
  struct Row {
    std::int32_t sampleRate;
    std::uint32_t mono, stereo;
  };
  static constexpr Row kRows[] = {{11025, 4, 8}, {22050, 64, 128}, {44100, 0x400, 0x800}};
  for (const Row& row : kRows)
    if (row.sampleRate == sampleRate) return channels == 1 ? row.mono : channels == 2 ? row.stereo : 0;
  return 0;
}

}  // namespace qm
