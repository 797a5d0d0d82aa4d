#pragma once
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace qm {

class FrameConverter;
class StoredFrames;
struct CopySource;
struct CopyStretch;

// A stretch of a source, block by block, in the rate and channels of a destination. Blocks are asked for in
// frames of the source; together they are exactly as long as the stretch, rounded to frames of the
// destination.
class CopyBlocks {
 public:
  CopyBlocks(CopySource& source, const CopyStretch& stretch, std::int32_t destRate,
             std::int32_t destChannels);
  ~CopyBlocks();

  // To the start of the stretch.
  bool Rewind();
  std::int64_t Position() const { return m_position; }  // frames of the source from the stretch's start
  // Whether there is more: not at the end, and the source has not broken off.
  bool More() const;
  // True for a source that could not be read to the end of the stretch.
  bool BrokenOff() const { return m_brokenOff; }

  // Reads the next block of so many frames of the source. False when nothing could be read.
  bool Read(std::int64_t sourceFrames);
  std::span<float> Block() { return m_block; }
  // The next block instead as the bytes of a WAV file's frames; `stored` is the source's. In 64-bit float
  // what is no number becomes 0, and infinite values full scale.
  bool ReadStored(const StoredFrames& stored, std::int64_t sourceFrames);
  std::span<const std::uint8_t> StoredBlock() const { return m_storedBlock; }
  // How many frames of the source give at least so many of the destination.
  std::int64_t SourceFramesFor(std::int64_t destFrames) const;

 private:
  std::size_t ReadSource(float* interleaved, std::size_t frames);
  std::int64_t DestFrames(std::int64_t sourceFrames) const;

  CopySource& m_source;
  const CopyStretch& m_stretch;
  const std::int32_t m_destRate, m_destChannels;
  std::unique_ptr<FrameConverter> m_converter;
  std::int64_t m_position = 0, m_left = 0;  // m_left: not yet read from the file
  bool m_brokenOff = false;
  std::vector<float> m_block;
  std::vector<std::uint8_t> m_storedBlock;
};

}  // namespace qm
