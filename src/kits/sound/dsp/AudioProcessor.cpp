#include "kits/sound/dsp/AudioProcessor.h"

#include <algorithm>
#include <cmath>

namespace qm {

namespace {
constexpr float kRange = 65536.0f;
}

float LevelOfPercent(double percent) {
  return static_cast<float>(percent / 100);
}

std::size_t FramesBelowLevel(std::span<const float> block, std::size_t channels, float level) {
  const auto above = std::ranges::find_if(block, [level](float value) { return std::fabs(value) > level; });
  return static_cast<std::size_t>(above - block.begin()) / channels;
}

void ApplyGain(std::span<float> block, double percent) {
  if (percent == 100) return;
  const double gain = percent / 100;
  for (float& value : block) value = static_cast<float>(value * gain);
}

void MixInto(std::span<float> block, std::span<const float> other, double volumePercent) {
  const double volume = volumePercent / 100;
  const std::size_t samples = std::min(block.size(), other.size());
  for (std::size_t i = 0; i < samples; ++i)
    block[i] = static_cast<float>((static_cast<double>(block[i]) + static_cast<double>(other[i])) * volume);
}

void LimitRange(std::span<float> block) {
  for (float& value : block) {
    float limited = value == value ? value : 0.0f;
    limited = limited < kRange ? limited : kRange;
    value = limited > -kRange ? limited : -kRange;
  }
}

}  // namespace qm
