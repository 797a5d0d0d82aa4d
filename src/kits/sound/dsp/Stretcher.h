#pragma once
#include <cstddef>
#include <memory>

namespace qm {

// Makes interleaved float frames last longer or shorter at the same pitch (Rubber Band). Output is aligned
// with the input: what leads in is taken off. One thread at a time; far too slow and too variable for the
// audio thread.
class Stretcher {
 public:
  Stretcher(double ratio, std::size_t sampleRate,
            std::size_t channels);  // ratio: output length per input length
  ~Stretcher();

  // Takes frames; with `last` the input ends with them (frames may then be 0). Calls behind the last are
  // ignored.
  void Put(const float* interleaved, std::size_t frames, bool last);

  // Gives up to `frames` frames; 0 when more input is needed, or when all has come out after the last.
  std::size_t Take(float* interleaved, std::size_t frames);

 private:
  struct State;
  std::unique_ptr<State> m_state;
};

}  // namespace qm
