#include "item/RiffChunkWriter.h"

#include <algorithm>

#include "item/BextChunk.h"
#include "item/CartChunk.h"
#include "item/RiffSource.h"
#include "item/RiffWalk.h"
#include "kits/common/LittleEndian.h"
#include "kits/common/Text.h"

namespace qm {
namespace {

constexpr std::int64_t kMostShortLength = 0xFFFFFFFE;  // the largest number stands for "elsewhere"
constexpr std::int64_t kFormLengthAt = 4;

std::string Number(std::int64_t value, bool isLong) {
  std::string bytes;
  if (isLong)
    AppendLittleEndian<std::uint64_t>(bytes, static_cast<std::uint64_t>(value));
  else
    AppendLittleEndian<std::uint32_t>(bytes, static_cast<std::uint32_t>(value));
  return bytes;
}

std::string Filled(std::string_view text, std::size_t room) {
  std::string filled(text.substr(0, room));
  filled.resize(room, ' ');
  return filled;
}

// New chunks as they are written, which an interrupted call may have begun behind the form.
struct OurChunk {
  std::string_view id;
  std::int64_t length;
};
constexpr OurChunk kOurChunks[] = {{"cart", kCartBytes + kNewCartText}, {"bext", kBextBytes}};

bool IsHeadOfOurs(std::string_view bytes) {
  return std::any_of(std::begin(kOurChunks), std::end(kOurChunks), [&](const OurChunk& ours) {
    return (std::string(ours.id) + Number(ours.length, false)).starts_with(bytes);
  });
}

// Never completed, and so never taken into the form.
bool IsLeftOver(const RiffForm& form, const RiffChunk& chunk) {
  if (chunk.Head() < form.statedEnd || chunk.stated <= chunk.length) return false;
  return std::any_of(std::begin(kOurChunks), std::end(kOurChunks), [&](const OurChunk& ours) {
    return chunk.id == ours.id && chunk.stated == ours.length;
  });
}

class Writing {
 public:
  Writing(RiffTarget& file, const RiffChunkContent& content, RiffForm& form)
      : m_file(file), m_content(content), m_form(form) {}

  bool Run() {
    const RiffChunk* there = FindRiffChunk(m_form, m_content.id);
    return there != nullptr && !IsLeftOver(m_form, *there) ? Overwrite(*there) : Append();
  }

 private:
  bool Overwrite(const RiffChunk& chunk) {
    // Complete, but behind the form: an earlier call got as far as that.
    const bool behind = chunk.Head() >= m_form.statedEnd;
    if (behind && FirstWrong() <= &chunk) return false;
    const auto length = static_cast<std::size_t>(chunk.length);
    std::string bytes(m_content.fixed.substr(0, length));
    if (m_content.newTextRoom > 0 && length > bytes.size())
      bytes += Filled(m_content.text, length - bytes.size());
    if (!m_file.WriteAt(chunk.start, bytes) || !m_file.Flush()) return false;
    return !behind || TakeIn(std::min(chunk.End() + chunk.length % 2, m_file.Size()));
  }

  // The first chunk whose length lies, or behind the last; what follows it would be its own if the form
  // reached as far.
  const RiffChunk* FirstWrong() const {
    const RiffChunk* const end = m_form.chunks.data() + m_form.chunks.size();
    return std::find_if(static_cast<const RiffChunk*>(m_form.chunks.data()), end,
                        [](const RiffChunk& chunk) { return chunk.stated != chunk.length; });
  }

  std::size_t NewLength() const { return m_content.fixed.size() + m_content.newTextRoom; }

  std::string NewChunk() const {
    std::string bytes(m_content.id);
    bytes += Number(static_cast<std::int64_t>(NewLength()), false);
    bytes += m_content.fixed;
    bytes += Filled(m_content.text, m_content.newTextRoom);
    return bytes;
  }

  // Whether a new chunk may take the place of what stands between the last chunk and the file's end.
  bool IsFree(std::int64_t position) const {
    const std::int64_t bytes = std::max<std::int64_t>(m_file.Size() - position, 0);
    if (bytes < kRiffHeadBytes && IsHeadOfOurs(m_file.Read(position, static_cast<std::size_t>(bytes))))
      return true;
    constexpr std::size_t kBlock = 1 << 16;
    for (std::int64_t at = position; at < m_file.Size(); at += kBlock) {
      const std::string block = m_file.Read(at, kBlock);
      if (block.empty() || block.find_first_not_of('\0') != std::string::npos) return false;
    }
    return true;
  }

  bool Append() {
    if (m_form.chunks.size() >= kMostRiffChunks) return false;
    std::int64_t place = m_form.end;
    if (!m_form.chunks.empty() && IsLeftOver(m_form, m_form.chunks.back())) {
      place = m_form.chunks.back().Head();
      m_form.chunks.pop_back();
    } else if (!IsFree(place)) {
      return false;
    }
    std::string bytes = NewChunk();
    const std::int64_t end = place + static_cast<std::int64_t>(bytes.size());
    if (!CanSay(end) || !CompleteLengths(place)) return false;
    // The last chunk's pad byte may be missing.
    const std::int64_t at = std::min(place, m_file.Size());
    bytes.insert(0, static_cast<std::size_t>(place - at), '\0');
    return m_file.WriteAt(at, bytes) && m_file.Flush() && TakeIn(end);
  }

  bool CanSay(std::int64_t end) const {
    return m_form.isLong ? m_form.longLengths != 0 : end - kRiffHeadBytes <= kMostShortLength;
  }

  // The last chunk would swallow a new one if its length were left at more than is there.
  bool CompleteLengths(std::int64_t end) {
    const std::size_t right = static_cast<std::size_t>(FirstWrong() - m_form.chunks.data());
    if (right == m_form.chunks.size()) return true;
    if (right + 1 < m_form.chunks.size()) return false;
    const RiffChunk& last = m_form.chunks.back();
    if (last.Head() >= m_form.statedEnd) return false;  // no chunk of the form's, nor one of ours
    const auto field = ReadLittleEndian<std::uint32_t>(m_file.Read(last.Head() + 4, 4), 0);
    const bool elsewhere = m_form.longLengths != 0 && FindRiffChunk(m_form, "data") == &last &&
                           (field == 0 || field > kMostShortLength);
    if (!elsewhere && last.length > kMostShortLength) return false;
    const std::int64_t at = elsewhere ? m_form.longLengths + kRiffHeadBytes : last.Head() + 4;
    if (!m_file.WriteAt(at, Number(last.length, elsewhere)) || !m_file.Flush()) return false;
    return TakeIn(std::min(end, m_file.Size()));
  }

  // Lets the form end there, unless it truly reaches as far already.
  bool TakeIn(std::int64_t end) {
    const std::int64_t at = m_form.isLong ? m_form.longLengths : kFormLengthAt;
    const std::string now = m_file.Read(at, m_form.isLong ? 8 : 4);
    if (at == 0) return false;
    const std::uint64_t length =
        m_form.isLong ? ReadLittleEndian<std::uint64_t>(now, 0) : ReadLittleEndian<std::uint32_t>(now, 0);
    if (length >= static_cast<std::uint64_t>(end - kRiffHeadBytes) &&
        length <= static_cast<std::uint64_t>(m_file.Size() - kRiffHeadBytes))
      return true;
    return m_file.WriteAt(at, Number(end - kRiffHeadBytes, m_form.isLong)) && m_file.Flush();
  }

  RiffTarget& m_file;
  const RiffChunkContent& m_content;
  RiffForm& m_form;
};

}  // namespace

bool WriteRiffChunk(RiffTarget& file, const RiffChunkContent& content) {
  RiffForm form;
  return WalkRiff(file, rxFile, form) && Writing(file, content, form).Run();
}

std::string ReadRiffChunk(const RiffTarget& file, std::string_view id, std::size_t bytes) {
  RiffForm form;
  if (!WalkRiff(file, rxFile, form)) return {};
  const RiffChunk* chunk = FindRiffChunk(form, id);
  if (chunk == nullptr) return {};
  return file.Read(chunk->start, std::min(bytes, static_cast<std::size_t>(chunk->length)));
}

}  // namespace qm
