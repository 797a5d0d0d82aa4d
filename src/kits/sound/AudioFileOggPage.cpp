#include "kits/sound/AudioFileOggPage.h"

#include <cstring>
#include <numeric>

#include "kits/common/LittleEndian.h"
#include "kits/sound/AudioFileBytes.h"

extern "C" {
#include <libavutil/crc.h>
}

namespace qm {

namespace {

constexpr std::size_t kHeadBytes = 27;
constexpr std::size_t kChecksumAt = 22;

bool ChecksumFits(const std::uint8_t* page, std::size_t size) {
  static const AVCRC* table = av_crc_get_table(AV_CRC_32_IEEE);
  static constexpr std::uint8_t zeros[4] = {};
  std::uint32_t sum = av_crc(table, 0, page, kChecksumAt);
  sum = av_crc(table, sum, zeros, sizeof zeros);
  sum = av_crc(table, sum, page + kChecksumAt + 4, size - kChecksumAt - 4);
  // The library runs this sum with its bytes turned around.
  return __builtin_bswap32(sum) == LoadLittleEndian<std::uint32_t>(page + kChecksumAt);
}

bool PageAt(AudioFileBytes& bytes, std::int64_t position, OggPage& page) {
  const std::uint8_t* head = bytes.View(position, kHeadBytes);
  if (head == nullptr || std::memcmp(head, "OggS", 5) != 0) return false;  // the fifth byte is version 0
  const int segments = head[26];
  head = bytes.View(position, kHeadBytes + static_cast<std::size_t>(segments));
  if (head == nullptr) return false;
  const std::size_t size =
      std::accumulate(head + kHeadBytes, head + kHeadBytes + segments, kHeadBytes + segments);
  head = bytes.View(position, size);
  if (head == nullptr || !ChecksumFits(head, size)) return false;
  page.position = position;
  page.end = position + static_cast<std::int64_t>(size);
  page.continued = (head[5] & 1) != 0;
  page.first = (head[5] & 2) != 0;
  page.granule = LoadLittleEndian<std::int64_t>(head + 6);
  page.serial = LoadLittleEndian<std::uint32_t>(head + 14);
  page.sequence = LoadLittleEndian<std::uint32_t>(head + 18);
  page.segments = head + kHeadBytes;
  page.segmentCount = segments;
  page.body = head + kHeadBytes + segments;
  return true;
}

}  // namespace

bool FindOggPage(AudioFileBytes& bytes, std::int64_t position, OggPage& page) {
  for (const std::int64_t last = bytes.Size() - static_cast<std::int64_t>(kHeadBytes); position <= last;
       ++position) {
    if (PageAt(bytes, position, page)) return true;
    // On to the next byte that may begin a page.
    const std::size_t ahead = static_cast<std::size_t>(std::min<std::int64_t>(4096, bytes.Size() - position));
    const std::uint8_t* here = bytes.View(position, ahead);
    if (here == nullptr) return false;
    const void* found = ahead > 1 ? std::memchr(here + 1, 'O', ahead - 1) : nullptr;
    position += (found != nullptr ? static_cast<const std::uint8_t*>(found) - here
                                  : static_cast<std::ptrdiff_t>(ahead)) -
                1;
  }
  return false;
}

}  // namespace qm
