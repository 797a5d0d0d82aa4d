#pragma once
#include <cstddef>
#include <span>
#include <vector>

namespace qm {

// The end of one source that is held back to be mixed under the start of the next; interleaved in the
// destination's channels, full scale 1.
class RetainedAudio {
 public:
  std::size_t RetainedFrames(std::size_t channels) const { return Samples().size() / channels; }
  std::span<const float> Samples() const { return std::span(m_samples).subspan(m_used); }

  // Mixes what is held back into the block from its first sample on, both at that volume in per cent, and
  // lets go of as much. What of the block lies behind the end stays as it is.
  void MixUnder(std::span<float> block, double volumePercent);
  // Holds this back too, ahead of what a short source has left.
  void Prepend(std::vector<float> samples);
  void Clear();

 private:
  std::vector<float> m_samples;
  std::size_t m_used = 0;
};

}  // namespace qm
