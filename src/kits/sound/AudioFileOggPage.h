#pragma once
#include <cstdint>
#include <vector>

namespace qm {

class AudioFileBytes;

// A page of an Ogg stream (RFC 3533). The pointers stay good until the bytes are read again.
struct OggPage {
  std::int64_t position = 0, end = 0;  // in the file
  bool continued = false;              // begins with the rest of a packet
  bool first = false;                  // of its logical stream
  std::int64_t granule = -1;  // frames up to the end of the last packet that ends here; -1 when none does
  std::uint32_t serial = 0, sequence = 0;
  const std::uint8_t* segments = nullptr;
  int segmentCount = 0;
  const std::uint8_t* body = nullptr;
};

// The first intact page at or behind the position; false when there is no more.
bool FindOggPage(AudioFileBytes& bytes, std::int64_t position, OggPage& page);

// Puts the packets of one logical stream together from its pages.
class OggPackets {
 public:
  // Forgets a packet begun.
  void Reset();
  // Calls take(data, size) for each packet that ends in the page. A packet whose beginning or middle is
  // missing is left out; of one too large to be audio the size is 0. False when pages ahead of this one are
  // missing.
  template <class Take>
  bool Add(const OggPage& page, Take take);

 private:
  static constexpr std::size_t kMostBytes = 1 << 20;
  std::vector<std::uint8_t> m_packet;
  bool m_begun = false;  // m_packet holds the beginning of one
  bool m_tooLarge = false;
  std::uint32_t m_nextSequence = 0;
};

inline void OggPackets::Reset() {
  m_begun = m_tooLarge = false;
  m_packet.clear();
}

template <class Take>
bool OggPackets::Add(const OggPage& page, Take take) {
  const bool follows = page.sequence == m_nextSequence;
  if (m_begun && (!page.continued || !follows)) Reset();
  m_nextSequence = page.sequence + 1;
  bool inPacket = m_begun || !page.continued;
  const std::uint8_t* data = page.body;
  for (int i = 0; i < page.segmentCount; ++i) {
    const std::uint8_t size = page.segments[i];
    if (m_packet.size() + size > kMostBytes) m_tooLarge = true;
    if (inPacket && !m_tooLarge) m_packet.insert(m_packet.end(), data, data + size);
    m_begun = inPacket;
    data += size;
    if (size == 255) continue;
    if (inPacket) take(m_packet.data(), m_tooLarge ? 0 : m_packet.size());
    Reset();
    inPacket = true;
  }
  return follows;
}

}  // namespace qm
