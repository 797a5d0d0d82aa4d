#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace qm {

class Resampler;

// Turns frames of one rate and channel count into another, a piece at a time, reading its source only as far
// as each piece needs. Frame n of the result stands at n / destination rate seconds of the source. With equal
// rates and counts the samples pass unchanged, bit for bit. One thread at a time.
//
// One channel goes to both of two; two become one as their mean. Of more than two the first two are left and
// right, the third goes to both, the fourth (low effects) to none, and the rest to either side in turn, in
// shares that cannot exceed full scale.
class FrameConverter {
 public:
  // Up to that many interleaved frames; fewer only at the source's end.
  using Source = std::function<std::size_t(float* interleaved, std::size_t frames)>;

  FrameConverter(Source source, std::int32_t sourceRate, std::int32_t sourceChannels, std::int32_t destRate,
                 std::int32_t destChannels);
  ~FrameConverter();

  // Up to `frames` frames; fewer only when the source has ended and all of it has come out.
  std::size_t Read(float* interleaved, std::size_t frames);

 private:
  std::size_t ReadResampled(float* interleaved, std::size_t frames);
  std::size_t ReadMixed(float* interleaved, std::size_t frames, std::size_t channels);

  Source m_source;
  std::size_t m_sourceChannels, m_destChannels, m_innerChannels;  // inner: while resampling
  std::vector<float> m_shares;                                    // [inner channel][source channel]
  std::unique_ptr<Resampler> m_resampler;
  std::vector<float> m_read, m_waiting;  // from the source; for the resampler
  std::size_t m_taken = 0, m_waitingFrames = 0;
  bool m_ended = false;
};

}  // namespace qm
