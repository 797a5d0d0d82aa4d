#include "kits/sound/AudioFileMpegStream.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "kits/common/LittleEndian.h"
#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/AudioFileMpegFrame.h"

namespace qm {

namespace {

constexpr std::int64_t kMostJunkAhead = 1 << 20;

}  // namespace

MpegStreamTag ReadMpegStreamTag(const std::vector<std::uint8_t>& frame, const MpegFrameHeader& header) {
  MpegStreamTag tag;
  if (header.layer != 3) return tag;
  const std::size_t vbri = 4 + 32;
  if (frame.size() >= vbri + 18 && std::memcmp(&frame[vbri], "VBRI", 4) == 0) {
    tag.present = true;
    tag.frames = BigEndian32(&frame[vbri + 14]);
    return tag;
  }
  std::size_t at = 4 + static_cast<std::size_t>(header.sideBytes);
  if (frame.size() < at + 8) return tag;
  if (std::memcmp(&frame[at], "Xing", 4) != 0 && std::memcmp(&frame[at], "Info", 4) != 0) return tag;
  tag.present = true;
  tag.constantRate = frame[at] == 'I';
  const std::uint32_t flags = BigEndian32(&frame[at + 4]);
  at += 8;
  if (flags & 1 && frame.size() >= at + 4) tag.frames = BigEndian32(&frame[at]);
  if ((flags & 3) == 3 && frame.size() >= at + 8) tag.bytes = BigEndian32(&frame[at + 4]);
  at += (flags & 1 ? 4 : 0) + (flags & 2 ? 4 : 0) + (flags & 4 ? 100 : 0) + (flags & 8 ? 4 : 0);
  if (frame.size() < at + 24) return tag;
  const char* encoder = reinterpret_cast<const char*>(&frame[at]);
  if (std::strncmp(encoder, "LAME", 4) == 0 || std::strncmp(encoder, "Lavf", 4) == 0 ||
      std::strncmp(encoder, "Lavc", 4) == 0) {
    tag.gapless = true;
    tag.delay = frame[at + 21] << 4 | frame[at + 22] >> 4;
    tag.padding = (frame[at + 22] & 15) << 8 | frame[at + 23];
  }
  return tag;
}

std::int64_t MpegEndWithoutTags(AudioFileBytes& bytes, std::int64_t start, std::int64_t end) {
  for (int i = 0; i < 8; ++i) {
    std::int64_t tag = 0;
    const std::uint8_t* tail = end - start >= 128 ? bytes.View(end - 128, 128) : nullptr;
    if (tail == nullptr) return end;
    if (std::memcmp(tail, "TAG", 3) == 0) tag = 128;
    const std::uint8_t* ape = tail + 96;
    if (std::memcmp(ape, "APETAGEX", 8) == 0)
      tag = static_cast<std::int64_t>(LoadLittleEndian<std::uint32_t>(ape + 12)) + (ape[23] & 0x80 ? 32 : 0);
    if (std::memcmp(tail + 119, "LYRICS200", 9) == 0)
      tag = 15 + std::atoi(std::string(tail + 113, tail + 119).c_str());
    if (tag <= 0 || tag > end - start) return end;
    end -= tag;
  }
  return end;
}

bool FindFirstMpegFrame(AudioFileBytes& bytes, std::int64_t& start, std::int64_t end,
                        MpegFrameHeader& header) {
  MpegFrameWalker walker(bytes, end, 0);
  while (std::int64_t tag = walker.TagBytes(start)) start += tag;
  const std::int64_t first = start, last = std::min(end, start + kMostJunkAhead);
  for (; start + 4 <= last; ++start) {
    const std::uint8_t* sync = bytes.View(start, 4);
    if (sync == nullptr) return false;
    if (sync[0] != 0xFF || !ParseMpegFrameHeader(sync, header)) continue;
    int chain = walker.Chain(start, 4);
    if (chain >= 2 || (chain == 1 && start == first && start + header.bytes <= end)) return true;
  }
  return false;
}

}  // namespace qm
