#include "item/RiffTags.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "item/RiffSource.h"
#include "item/RiffTagNames.h"
#include "item/RiffWalk.h"
#include "item/cRiffReader.h"
#include "kits/common/EightBitText.h"
#include "kits/common/Utf8.h"

namespace qm {
namespace {

constexpr std::size_t kMostTags = 4096;
constexpr std::int64_t kMostTextBytes = 16 << 20;
constexpr std::int64_t kTypeBytes = 4;
constexpr std::int64_t kId3HeadBytes = 10;
constexpr std::int64_t kFrameHeadBytes = 10;
constexpr std::int64_t kMostBytesWithoutFrames = 100;
constexpr char32_t kCharacterTooLarge = 0x8000;

std::int64_t TextRoom(const std::vector<tyRiffChunkTag>& tags) {
  std::int64_t room = kMostTextBytes;
  for (const tyRiffChunkTag& tag : tags) room -= static_cast<std::int64_t>(tag.Data.size());
  return std::max<std::int64_t>(room, 0);
}

class Tags {
 public:
  Tags(const char* parent, std::vector<tyRiffChunkTag>& tags)
      : m_parent(parent), m_tags(tags), m_room(TextRoom(tags)) {}

  bool Full() const { return m_tags.size() >= kMostTags; }
  void Add(std::string id, std::string text) {
    std::string name(ListTagName(id));
    m_room -= static_cast<std::int64_t>(text.size());
    m_tags.push_back({m_parent, std::move(id), std::move(name), std::move(text)});
  }
  std::size_t Most(std::int64_t bytes) const {
    return static_cast<std::size_t>(std::clamp<std::int64_t>(bytes, 0, std::max<std::int64_t>(m_room, 0)));
  }

 private:
  const char* m_parent;
  std::vector<tyRiffChunkTag>& m_tags;
  std::int64_t m_room;
};

// Four bytes of seven bits; a byte of eight counts as it is.
std::int64_t FrameBytes(std::string_view bytes) {
  std::int64_t size = 0;
  for (const char c : bytes.substr(0, 4)) size = size * 128 + static_cast<unsigned char>(c);
  return size;
}

// Pairs of bytes behind a mark. False at a character that is too large.
bool TextFromPairs(std::string_view pairs, bool highFirst, std::string& text) {
  for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
    const auto first = static_cast<unsigned char>(pairs[i]),
               second = static_cast<unsigned char>(pairs[i + 1]);
    const char32_t character = highFirst ? first * 256u + second : second * 256u + first;
    if (character >= kCharacterTooLarge) return false;
    AppendCharacter(text, character);
  }
  return true;
}

bool FrameText(std::string_view bytes, std::string& text) {
  constexpr std::size_t kMarkEnd = 3;
  if (bytes.empty()) return true;
  if (bytes[0] == 0) {
    text = TextFromEightBit(bytes.substr(1));
    return true;
  }
  if (bytes.size() < kMarkEnd) return true;
  return TextFromPairs(bytes.substr(kMarkEnd), static_cast<unsigned char>(bytes[2]) == 0xFE, text);
}

}  // namespace

void ReadListInfo(const RiffSource& file, const RiffChunk& chunk, std::vector<tyRiffChunkTag>& tags) {
  if (chunk.type != "INFO") return;
  Tags found("LIST", tags);
  const std::int64_t end = chunk.start + chunk.length;
  std::int64_t position = chunk.start + kTypeBytes;
  RiffHead head;
  while (!found.Full() && ReadRiffHead(file, position, end, head)) {
    const std::int64_t start = position + kRiffHeadBytes;
    const std::int64_t length = std::min<std::int64_t>(head.length, end - start);
    const std::string bytes = file.Read(start, found.Most(length));
    found.Add(head.id, TextFromEightBit(std::string_view(bytes).substr(0, bytes.find('\0'))));
    position = NextRiffChunk(file, start + length, length, end);
  }
}

bool ReadId3Frames(const RiffSource& file, const RiffChunk& chunk, std::vector<tyRiffChunkTag>& tags) {
  if (chunk.length <= kMostBytesWithoutFrames) return true;
  Tags found("id3 ", tags);
  const std::int64_t end = chunk.start + chunk.length;
  std::int64_t position = chunk.start + kId3HeadBytes;
  while (!found.Full() && position + kFrameHeadBytes <= end) {
    const std::string head = file.Read(position, kFrameHeadBytes);
    if (head.size() < kFrameHeadBytes || head.starts_with(std::string_view("\0\0\0\0", 4))) break;
    const std::int64_t start = position + kFrameHeadBytes;
    const std::int64_t length = std::min(FrameBytes(std::string_view(head).substr(4)), end - start);
    std::string text;
    if (head[0] == 'T' && !FrameText(file.Read(start, found.Most(length)), text)) return false;
    found.Add(head.substr(0, 4), std::move(text));
    position = start + length;
  }
  return true;
}

}  // namespace qm
