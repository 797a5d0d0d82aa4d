#include "kits/sound/dsp/Stretcher.h"

#include <rubberband/RubberBandStretcher.h>

#include <algorithm>
#include <array>
#include <vector>

namespace qm {

using RubberBand::RubberBandStretcher;

namespace {
constexpr std::size_t kBlock = 512;  // frames handed over at once
}

struct Stretcher::State {
  State(double ratio, std::size_t sampleRate, std::size_t channelCount)
      : channels(channelCount),
        planes(channelCount * kBlock),
        stretcher(sampleRate, channelCount,
                  RubberBandStretcher::OptionProcessRealTime | RubberBandStretcher::OptionEngineFaster |
                      RubberBandStretcher::OptionThreadingNever | RubberBandStretcher::OptionChannelsTogether,
                  ratio, 1.0) {
    for (std::size_t c = 0; c < channels; ++c) plane.push_back(planes.data() + c * kBlock);
    stretcher.setMaxProcessSize(kBlock);
    leadIn = stretcher.getStartDelay();
    std::fill(planes.begin(), planes.end(), 0.f);
    for (std::size_t pad = stretcher.getPreferredStartPad(); pad > 0;) {
      const std::size_t n = std::min(pad, kBlock);
      stretcher.process(plane.data(), n, false);
      pad -= n;
    }
  }

  const std::size_t channels;
  std::vector<float> planes;
  std::vector<float*> plane;
  RubberBandStretcher stretcher;
  std::size_t leadIn = 0;  // frames still to be dropped from the output
  bool ended = false;
};

Stretcher::Stretcher(double ratio, std::size_t sampleRate, std::size_t channels)
    : m_state(std::make_unique<State>(ratio, sampleRate, channels)) {}

Stretcher::~Stretcher() = default;

void Stretcher::Put(const float* interleaved, std::size_t frames, bool last) {
  State& s = *m_state;
  if (s.ended) return;
  s.ended = last;
  do {
    const std::size_t n = std::min(frames, kBlock);
    for (std::size_t i = 0; i < n; ++i)
      for (std::size_t c = 0; c < s.channels; ++c) s.plane[c][i] = interleaved[i * s.channels + c];
    interleaved += n * s.channels;
    frames -= n;
    if (n > 0 || last) s.stretcher.process(s.plane.data(), n, last && frames == 0);
  } while (frames > 0);
}

std::size_t Stretcher::Take(float* interleaved, std::size_t frames) {
  State& s = *m_state;
  std::size_t taken = 0;
  while (taken < frames) {
    const int ready = s.stretcher.available();
    if (ready <= 0) break;
    const std::size_t wanted = s.leadIn > 0 ? s.leadIn : frames - taken;
    const std::size_t n =
        s.stretcher.retrieve(s.plane.data(), std::min({wanted, kBlock, static_cast<std::size_t>(ready)}));
    if (n == 0) break;
    if (s.leadIn > 0) {
      s.leadIn -= n;
      continue;
    }
    for (std::size_t i = 0; i < n; ++i)
      for (std::size_t c = 0; c < s.channels; ++c) interleaved[(taken + i) * s.channels + c] = s.plane[c][i];
    taken += n;
  }
  return taken;
}

}  // namespace qm
