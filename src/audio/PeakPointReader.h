#pragma once
#include <array>
#include <cstdint>
#include <vector>

namespace qm {

class cAudioFile;

// The first frame of each block of an open audio file, as 16-bit values: just what reading every block by
// ReadSamples and keeping its first frame gives, without turning all the others into 16-bit values. Reads on
// from where the file stands, which must be its start. One thread at a time; the file stays the caller's.
class PeakPointReader {
 public:
  PeakPointReader(cAudioFile& audio, std::int32_t interval);

  // Goes on by one block of at most `count` frames (1 to the interval); less than the interval only for the
  // last. How many frames the block has; 0 at the end, and when the audio cannot be read further.
  std::int32_t Next(std::int32_t count);

  // The first two channels of the block's first frame; the second is 0 for mono.
  const std::array<std::int16_t, 2>& Point() const { return m_point; }

 private:
  std::int32_t NextStored(std::int32_t count);
  std::int32_t NextDecoded(std::int32_t count);
  void Refill();
  void TakePoint(const float* frame);

  cAudioFile& m_audio;
  std::int32_t m_interval;
  std::size_t m_channels;
  bool m_stored;
  std::int64_t m_position = 0;
  std::vector<float> m_buffer;
  std::size_t m_filled = 0, m_taken = 0;  // frames of the buffer
  std::array<std::int16_t, 2> m_point{};
};

}  // namespace qm
