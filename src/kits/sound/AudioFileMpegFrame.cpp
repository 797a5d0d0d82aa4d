#include "kits/sound/AudioFileMpegFrame.h"

#include <cstring>

#include "kits/common/LittleEndian.h"
#include "kits/sound/AudioFileBytes.h"

namespace qm {

namespace {

enum Version { version25 = 0, versionReserved = 1, version2 = 2, version1 = 3 };

constexpr std::int16_t kLayer2Rates[2][16] = {
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160, 0},
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384, 0},
};
constexpr std::int16_t kLayer3Rates[2][16] = {
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160, 0},
    {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 0},
};
constexpr std::int32_t kSampleRates[4] = {44100, 48000, 32000, 0};

// Sync, version, layer and sample rate.
constexpr std::uint32_t kKindMask = 0xFFFE0C00;

}  // namespace

bool ParseMpegFrameHeader(const std::uint8_t* bytes, MpegFrameHeader& header) {
  const std::uint32_t bits = BigEndian32(bytes);
  const std::uint32_t version = bits >> 19 & 3, layerBits = bits >> 17 & 3;
  const std::uint32_t rateIndex = bits >> 12 & 15, frequencyIndex = bits >> 10 & 3;
  if ((bits & 0xFFE00000) != 0xFFE00000 || version == versionReserved) return false;
  if (layerBits != 1 && layerBits != 2) return false;
  const bool full = version == version1;
  header.layer = 4 - static_cast<std::int32_t>(layerBits);
  const std::int32_t kilobits =
      header.layer == 2 ? kLayer2Rates[full][rateIndex] : kLayer3Rates[full][rateIndex];
  header.sampleRate = kSampleRates[frequencyIndex] >> (version == version1 ? 0 : version == version2 ? 1 : 2);
  if (kilobits == 0 || header.sampleRate == 0) return false;
  header.bitRate = kilobits * 1000;
  header.channels = (bits >> 6 & 3) == 3 ? 1 : 2;
  header.frames = header.layer == 2 || full ? 1152 : 576;
  header.bytes =
      header.frames / 8 * header.bitRate / header.sampleRate + static_cast<std::int32_t>(bits >> 9 & 1);
  header.sideBytes = header.channels == 1 ? (full ? 17 : 9) : (full ? 32 : 17);
  header.kind = bits & kKindMask;
  return true;
}

// Leaves the header alone when there is none of the kind.
bool MpegFrameWalker::HeaderAt(std::int64_t position, MpegFrameHeader& header) {
  if (position + 4 > m_end) return false;
  const std::uint8_t* bytes = m_bytes.View(position, 4);
  MpegFrameHeader found;
  if (bytes == nullptr || !ParseMpegFrameHeader(bytes, found) || (m_kind != 0 && found.kind != m_kind))
    return false;
  header = found;
  return true;
}

int MpegFrameWalker::Chain(std::int64_t position, int most) {
  const std::uint32_t kind = m_kind;
  int count = 0;
  for (MpegFrameHeader header; count < most && position < m_end; position += header.bytes, ++count) {
    if (!HeaderAt(position, header)) {
      count = 0;
      break;
    }
    m_kind = header.kind;
  }
  m_kind = kind;
  return count;
}

bool MpegFrameWalker::Find(std::int64_t& position, MpegFrameHeader& header, std::int64_t& junk) {
  junk = 0;
  if (HeaderAt(position, header)) return position + header.bytes <= m_end;
  while (position + 4 <= m_end) {
    const std::uint8_t* byte = m_bytes.View(position, 1);
    if (byte == nullptr) return false;
    if (*byte == 0xFF) {
      if (HeaderAt(position, header) && position + header.bytes <= m_end && Chain(position, 3) > 0)
        return true;
    } else if (std::int64_t tag = TagBytes(position)) {
      position += tag;
      if (HeaderAt(position, header)) return position + header.bytes <= m_end;
      continue;
    }
    ++position;
    ++junk;
  }
  return false;
}

std::int64_t MpegFrameWalker::TagBytes(std::int64_t position) {
  const std::uint8_t* head = m_bytes.View(position, 10);
  if (head == nullptr) return 0;
  if (std::memcmp(head, "ID3", 3) == 0 && head[3] < 0xFF &&
      ((head[6] | head[7] | head[8] | head[9]) & 0x80) == 0) {
    std::int64_t size = head[6] << 21 | head[7] << 14 | head[8] << 7 | head[9];
    return size + 10 + (head[5] & 0x10 ? 10 : 0);
  }
  if (std::memcmp(head, "TAG", 3) == 0) return 128;
  if (std::memcmp(head, "APETAGEX", 8) == 0) {
    const std::uint8_t* ape = m_bytes.View(position, 32);
    if (ape != nullptr)
      return static_cast<std::int64_t>(LoadLittleEndian<std::uint32_t>(ape + 12)) + (ape[23] & 0x20 ? 32 : 0);
  }
  return 0;
}

}  // namespace qm
