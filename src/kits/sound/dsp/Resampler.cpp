#include "kits/sound/dsp/Resampler.h"

#include <soxr.h>

namespace qm {

struct Resampler::State {
  soxr_t soxr = nullptr;
  ~State() { soxr_delete(soxr); }
};

Resampler::Resampler(double ratio, std::size_t channels) : m_state(std::make_unique<State>()) {
  const soxr_io_spec_t io = soxr_io_spec(SOXR_FLOAT32_I, SOXR_FLOAT32_I);
  const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_HQ, 0);
  const soxr_runtime_spec_t runtime = soxr_runtime_spec(1);
  m_state->soxr = soxr_create(1.0, ratio, static_cast<unsigned>(channels), nullptr, &io, &quality, &runtime);
}

Resampler::~Resampler() = default;

Resampler::Moved Resampler::Process(const float* in, std::size_t inFrames, float* out,
                                    std::size_t outFrames) {
  Moved moved;
  if (!m_state->soxr) return moved;
  soxr_process(m_state->soxr, inFrames ? in : nullptr, inFrames, &moved.consumed, out, outFrames,
               &moved.produced);
  return moved;
}

}  // namespace qm
