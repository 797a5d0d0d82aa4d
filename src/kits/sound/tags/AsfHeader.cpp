#include "kits/sound/tags/AsfHeader.h"

#include <algorithm>

#include "kits/common/LittleEndian.h"
#include "kits/sound/AudioFileBytes.h"

namespace qm {

namespace {

constexpr std::string_view kHeader("\x30\x26\xB2\x75\x8E\x66\xCF\x11\xA6\xD9\x00\xAA\x00\x62\xCE\x6C", 16);
constexpr std::string_view kFileProperties("\xA1\xDC\xAB\x8C\x47\xA9\xCF\x11\x8E\xE4\x00\xC0\x0C\x20\x53\x65",
                                           16);
constexpr std::string_view kReserved("\x01\x02", 2);
constexpr std::size_t kIdentityBytes = 16, kObjectHead = 24, kHeaderHead = 30;
constexpr std::size_t kFileSizeAt = 16;  // in the body of the file properties
constexpr std::uint64_t kLargestHeader = 64 << 20;

std::string ObjectHead(std::string_view identity, std::size_t bodySize) {
  std::string head(identity);
  AppendLittleEndian<std::uint64_t>(head, bodySize + kObjectHead);
  return head;
}

}  // namespace

bool AsfHeader::Read(AudioFileBytes& file) {
  std::string head(kHeaderHead, '\0');
  head.resize(file.ReadAt(0, head.data(), head.size()));
  if (head.size() < kHeaderHead || !head.starts_with(kHeader)) return false;
  const auto size = ReadLittleEndian<std::uint64_t>(head, kIdentityBytes);
  if (size < kHeaderHead || size > kLargestHeader || size > static_cast<std::uint64_t>(file.Size()))
    return false;
  std::string bytes(size - kHeaderHead, '\0');
  if (file.ReadAt(kHeaderHead, bytes.data(), bytes.size()) != bytes.size()) return false;
  m_storedSize = static_cast<std::int64_t>(size);
  m_objects.clear();
  std::string_view rest = bytes;
  while (!rest.empty()) {
    const auto length = ReadLittleEndian<std::uint64_t>(rest, kIdentityBytes);
    if (length < kObjectHead || length > rest.size()) return false;
    m_objects.push_back({std::string(rest.substr(0, kIdentityBytes)),
                         std::string(rest.substr(kObjectHead, length - kObjectHead))});
    rest.remove_prefix(length);
  }
  return true;
}

std::string AsfHeader::Write(std::int64_t dataSize) const {
  std::size_t size = kHeaderHead;
  for (const AsfObject& object : m_objects) size += kObjectHead + object.body.size();
  std::string bytes = ObjectHead(kHeader, size - kObjectHead);
  AppendLittleEndian<std::uint32_t>(bytes, static_cast<std::uint32_t>(m_objects.size()));
  bytes += kReserved;
  for (const AsfObject& object : m_objects) {
    bytes += ObjectHead(object.identity, object.body.size());
    const std::size_t body = bytes.size();
    bytes += object.body;
    if (object.identity == kFileProperties && object.body.size() >= kFileSizeAt + 8)
      StoreLittleEndian<std::uint64_t>(&bytes[body + kFileSizeAt],
                                       size + static_cast<std::uint64_t>(dataSize));
  }
  return bytes;
}

const AsfObject* AsfHeader::Find(std::string_view identity) const {
  const auto found = std::find_if(m_objects.begin(), m_objects.end(),
                                  [&](const AsfObject& object) { return object.identity == identity; });
  return found == m_objects.end() ? nullptr : &*found;
}

void AsfHeader::Set(std::string_view identity, std::string body) {
  for (AsfObject& object : m_objects) {
    if (object.identity != identity) continue;
    object.body = std::move(body);
    return;
  }
  m_objects.push_back({std::string(identity), std::move(body)});
}

}  // namespace qm
