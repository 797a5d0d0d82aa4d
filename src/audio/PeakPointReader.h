#pragma once
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace qm {

class cAudioFile;
class StoredFrames;

// The first frame of each block of an open audio file, as 16-bit values: just what reading every block by
// ReadSamples and keeping its first frame gives, at the cost of reading or decoding alone. One thread at a
// time.
class PeakPointReader {
 public:
  // The file, opened from that path and standing at its start, stays the caller's.
  PeakPointReader(cAudioFile& audio, const std::string& path, std::int32_t interval);
  ~PeakPointReader();

  // Goes on by one block of at most `count` frames (1 to the interval); less than the interval only for the
  // last. How many frames the block has; 0 at the end, and when the audio cannot be read further.
  std::int32_t Next(std::int32_t count);

  // The first frame of the block, as many values as the audio has channels. Until the next call.
  const std::int16_t* Point() const { return m_points.data() + (m_next - 1) * m_channels; }

 private:
  std::size_t ReadStored();
  std::size_t ReadDecoded();
  void Refill();

  cAudioFile& m_audio;
  std::size_t m_interval;
  std::size_t m_channels;
  std::unique_ptr<StoredFrames> m_stored;  // null for audio that must be decoded
  std::int64_t m_position = 0;             // frames read

  std::vector<std::uint8_t> m_bytes, m_firstBytes;  // stored: what was read, first frames of blocks
  std::vector<float> m_frames, m_firstFrames;       // decoded: the same
  std::vector<std::int16_t> m_points;
  std::size_t m_left = 0;  // frames read that no block has taken yet
  std::size_t m_next = 0;  // number of the next point
};

}  // namespace qm
