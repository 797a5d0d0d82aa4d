#include "audio/RetainedAudio.h"

#include <algorithm>

#include "kits/sound/dsp/AudioProcessor.h"

namespace qm {

void RetainedAudio::MixUnder(std::span<float> block, double volumePercent) {
  MixInto(block, Samples(), volumePercent);
  m_used += std::min(block.size(), Samples().size());
  if (Samples().empty()) Clear();
}

void RetainedAudio::Prepend(std::vector<float> samples) {
  const auto rest = Samples();
  samples.insert(samples.end(), rest.begin(), rest.end());
  m_samples = std::move(samples);
  m_used = 0;
}

void RetainedAudio::Clear() {
  m_samples = {};
  m_used = 0;
}

}  // namespace qm
