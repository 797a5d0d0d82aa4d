#pragma once
#include <cstdint>
#include <vector>

namespace qm {

class AudioFileBytes;
struct MpegFrameHeader;

// From the encoder's delay to the whole of encoder and decoder: the decoder's own 528 and the sample at 0.
inline constexpr std::int64_t kMpegDecoderDelay = 529;

// What an encoder says about its stream in a first frame without audio.
struct MpegStreamTag {
  bool present = false;
  bool constantRate = false;
  std::int64_t frames = 0;  // 0 when not stated
  std::int64_t bytes = 0;   // likewise; of the whole stream, this frame included
  std::int64_t delay = 0, padding = 0;
  bool gapless = false;
};
MpegStreamTag ReadMpegStreamTag(const std::vector<std::uint8_t>& frame, const MpegFrameHeader& header);

// The end of the audio with the tags behind it taken off: ID3v1, APE, Lyrics3.
std::int64_t MpegEndWithoutTags(AudioFileBytes& bytes, std::int64_t start, std::int64_t end);

// The first frame, found by what stands behind it: four bytes alone prove little.
bool FindFirstMpegFrame(AudioFileBytes& bytes, std::int64_t& start, std::int64_t end,
                        MpegFrameHeader& header);

}  // namespace qm
