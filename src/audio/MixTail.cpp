#include "audio/MixTail.h"

#include <algorithm>

#include "kits/sound/dsp/AudioProcessor.h"

namespace qm {

void MixTail::MixUnder(std::span<float> block, double volumePercent) {
  MixInto(block, Samples(), volumePercent);
  m_used += std::min(block.size(), Samples().size());
  if (Samples().empty()) Clear();
}

void MixTail::Prepend(std::vector<float> samples) {
  const auto rest = Samples();
  samples.insert(samples.end(), rest.begin(), rest.end());
  m_samples = std::move(samples);
  m_used = 0;
}

void MixTail::Clear() {
  m_samples = {};
  m_used = 0;
}

}  // namespace qm
