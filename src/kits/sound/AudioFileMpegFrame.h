#pragma once
#include <cstdint>

namespace qm {

class AudioFileBytes;

inline std::uint32_t BigEndian32(const std::uint8_t* p) {
  return static_cast<std::uint32_t>(p[0]) << 24 | static_cast<std::uint32_t>(p[1]) << 16 |
         static_cast<std::uint32_t>(p[2]) << 8 | p[3];
}

// Header of a frame of MPEG 1, 2 or 2.5 audio, layers 2 and 3 (ISO 11172-3, 13818-3).
struct MpegFrameHeader {
  std::int32_t layer = 0;
  std::int32_t sampleRate = 0;
  std::int32_t channels = 0;
  std::int32_t bitRate = 0;    // bits per second
  std::int32_t bytes = 0;      // of the whole frame
  std::int32_t frames = 0;     // samples per channel in it
  std::int32_t sideBytes = 0;  // side information of layer 3
  std::uint32_t kind = 0;      // the header's bits that do not change within a stream
};

// False when the four bytes are no such header, or one whose frame has no stated size.
bool ParseMpegFrameHeader(const std::uint8_t* bytes, MpegFrameHeader& header);

// Walks the frames of a run of MPEG audio from any frame's start, the same way each time.
class MpegFrameWalker {
 public:
  // Frames of another kind than `kind` are no frames; 0 takes any.
  MpegFrameWalker(AudioFileBytes& bytes, std::int64_t end, std::uint32_t kind)
      : m_bytes(bytes), m_end(end), m_kind(kind) {}

  // The frame at the position, or the next one behind it that others follow; junk receives the bytes passed
  // over that are no tag. False when the run holds no further whole frame.
  bool Find(std::int64_t& position, MpegFrameHeader& header, std::int64_t& junk);

  // How many frames stand end to end from the position, up to `most`; 0 when they break off before the end of
  // the run. The last may be cut by it.
  int Chain(std::int64_t position, int most);

  // Length of a tag (ID3v2, ID3v1, APE) at the position, 0 when none begins there.
  std::int64_t TagBytes(std::int64_t position);

 private:
  bool HeaderAt(std::int64_t position, MpegFrameHeader& header);

  AudioFileBytes& m_bytes;
  std::int64_t m_end;
  std::uint32_t m_kind;
};

}  // namespace qm
