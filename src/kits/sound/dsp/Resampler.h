#pragma once
#include <cstddef>
#include <memory>

namespace qm {

// Changes the rate of interleaved float frames by a fixed ratio, at high quality (libsoxr HQ: residual below
// -130 dB). Output frame n stands at input time n / ratio: delay is taken off. One thread at a time.
class Resampler {
 public:
  Resampler(double ratio, std::size_t channels);  // ratio: output frames per input frame
  ~Resampler();

  struct Moved {
    std::size_t consumed = 0;
    std::size_t produced = 0;
  };
  // Takes up to `inFrames` and gives up to `outFrames`. With inFrames 0 the input has ended: what is inside
  // comes out over the calls that follow, until nothing is produced.
  Moved Process(const float* in, std::size_t inFrames, float* out, std::size_t outFrames);

 private:
  struct State;
  std::unique_ptr<State> m_state;
};

}  // namespace qm
