#include "item/RiffWalk.h"

#include <algorithm>
#include <limits>

#include "item/RiffSource.h"
#include "kits/common/LittleEndian.h"
#include "kits/common/Text.h"

namespace qm {
namespace {

constexpr std::int64_t kFormHead = 12;  // id, length, type
constexpr std::uint32_t kLengthElsewhere = 0xFFFFFFFF;

bool LooksLikeId(std::string_view id) {
  return std::all_of(id.begin(), id.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

// Of 64 bits without a sign; beyond what an offset can be it is none.
std::int64_t LongLength(std::string_view bytes, std::size_t position) {
  const auto length = ReadLittleEndian<std::uint64_t>(bytes, position);
  constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max() / 2;
  return length > most ? 0 : static_cast<std::int64_t>(length);
}

class Walk {
 public:
  Walk(const RiffSource& file, enRiffExtent extent, RiffForm& form)
      : m_file(file), m_extent(extent), m_form(form), m_size(file.Size()) {}

  bool Run() {
    if (!ReadFormHead()) return false;
    std::int64_t position = kFormHead;
    RiffHead head;
    while (m_form.chunks.size() < kMostRiffChunks && ReadRiffHead(m_file, position, LimitAt(position), head))
      position = Add(position, head);
    m_form.end = position;
    return true;
  }

 private:
  std::int64_t Extent() const { return m_extent == rxFile ? m_size : m_form.statedEnd; }
  // A chunk of the form ends with it.
  std::int64_t LimitAt(std::int64_t position) const {
    return position < m_form.statedEnd ? m_form.statedEnd : Extent();
  }

  bool ReadFormHead() {
    const std::string head = m_file.Read(0, kFormHead);
    if (head.size() < kFormHead || head.substr(8) != "WAVE") return false;
    const std::string id = head.substr(0, 4);
    m_form = {};
    m_form.isLong = id == "RF64" || id == "BW64";
    if (!m_form.isLong && id != "RIFF") return false;
    m_form.statedLength = ReadLittleEndian<std::uint32_t>(head, 4);
    const bool elsewhere = m_form.isLong || m_form.statedLength == kLengthElsewhere;
    SetFormLength(elsewhere ? 0 : m_form.statedLength);
    return true;
  }

  void SetFormLength(std::int64_t length) {
    m_form.statedEnd = length == 0 ? m_size : std::min(length + kRiffHeadBytes, m_size);
  }

  void ReadLongLengths(std::int64_t start, std::uint32_t length) {
    const std::string lengths = m_file.Read(start, 16);
    if (!m_form.isLong || m_form.longLengths != 0 || length < 16 || lengths.size() < 16) return;
    m_form.longLengths = start;
    SetFormLength(LongLength(lengths, 0));
    m_longData = LongLength(lengths, 8);
  }

  // A writer into a pipe cannot go back and fill in the length: it leaves 0, the largest number or a guess.
  std::int64_t DataLength(std::int64_t start, std::int64_t stated) const {
    return stated == 0 && !ChunksToTheEnd(start) ? m_size - start : stated;
  }

  bool ChunksToTheEnd(std::int64_t position) const {
    RiffHead head;
    for (std::size_t i = 0; i < kMostRiffChunks && position < m_size; ++i) {
      if (!ReadRiffHead(m_file, position, m_size, head)) return false;
      position += kRiffHeadBytes + std::int64_t{head.length} + head.length % 2;
    }
    return position == m_size || position == m_size + 1;
  }

  // The position behind it.
  std::int64_t Add(std::int64_t position, const RiffHead& head) {
    RiffChunk chunk{head.id, "", position + kRiffHeadBytes, head.length, head.length};
    // The first is the form's audio, and the one that lengths elsewhere speak of.
    if (EqualIgnoringCase(chunk.id, "data") && FindRiffChunk(m_form, "data") == nullptr) {
      const bool elsewhere = head.length == kLengthElsewhere || head.length == 0;
      if (elsewhere && m_longData > 0) chunk.stated = m_longData;
      chunk.length = DataLength(chunk.start, chunk.stated);
      // A form that ends within its audio was never completed.
      if (chunk.End() > m_form.statedEnd) m_form.statedEnd = m_size;
    }
    chunk.length = std::min(chunk.length, LimitAt(position) - chunk.start);
    if (EqualIgnoringCase(chunk.id, "LIST") && chunk.length >= 4) chunk.type = m_file.Read(chunk.start, 4);
    if (EqualIgnoringCase(chunk.id, "ds64")) ReadLongLengths(chunk.start, head.length);
    const std::int64_t next = NextRiffChunk(m_file, chunk.End(), chunk.length, Extent());
    m_form.chunks.push_back(std::move(chunk));
    return next;
  }

  const RiffSource& m_file;
  const enRiffExtent m_extent;
  RiffForm& m_form;
  const std::int64_t m_size;
  std::int64_t m_longData = 0;
};

}  // namespace

bool ReadRiffHead(const RiffSource& file, std::int64_t position, std::int64_t limit, RiffHead& head) {
  if (position < 0 || position > limit - kRiffHeadBytes) return false;
  char bytes[kRiffHeadBytes];
  if (file.ReadAt(position, bytes, sizeof bytes) < sizeof bytes) return false;
  head.id.assign(bytes, 4);
  head.length = LoadLittleEndian<std::uint32_t>(bytes + 4);
  return LooksLikeId(head.id);
}

std::int64_t NextRiffChunk(const RiffSource& file, std::int64_t end, std::int64_t length,
                           std::int64_t limit) {
  if (length % 2 == 0) return end;
  const auto fits = [&](std::int64_t position) {
    RiffHead head;
    return ReadRiffHead(file, position, limit, head) &&
           position + kRiffHeadBytes + std::int64_t{head.length} <= limit;
  };
  return fits(end) && !fits(end + 1) ? end : end + 1;
}

bool WalkRiff(const RiffSource& file, enRiffExtent extent, RiffForm& form) {
  return Walk(file, extent, form).Run();
}

const RiffChunk* FindRiffChunk(const RiffForm& form, std::string_view id) {
  const auto found = std::find_if(form.chunks.begin(), form.chunks.end(),
                                  [&](const RiffChunk& chunk) { return EqualIgnoringCase(chunk.id, id); });
  return found == form.chunks.end() ? nullptr : &*found;
}

}  // namespace qm
