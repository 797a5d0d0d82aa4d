#include "item/cRiffReader.h"

#include <exception>
#include <limits>

#include "item/RiffFile.h"
#include "item/RiffTags.h"
#include "item/RiffWalk.h"
#include "kits/common/Numbers.h"
#include "kits/common/Text.h"

namespace qm {
namespace {

std::int32_t Whole32(std::int64_t value) {
  return static_cast<std::int32_t>(Limit<std::int64_t>(value, 0, std::numeric_limits<std::int32_t>::max()));
}

template <class Record>
Record RecordAt(const std::vector<Record>& records, std::int32_t index) {
  return index < 1 || index > std::ssize(records) ? Record() : records[static_cast<std::size_t>(index - 1)];
}

}  // namespace

bool cRiffReader::LoadFromFile(const std::string& Filename, bool ReadLIST, bool ReadID3) try {
  m_chunks.clear();
  m_tags.clear();
  RiffFile file;
  return file.Open(Filename, rfaRead) && LoadFromSource(file, ReadLIST, ReadID3);
} catch (const std::exception&) {
  return false;
}

bool cRiffReader::LoadFromSource(const RiffSource& file, bool ReadLIST, bool ReadID3) try {
  m_chunks.clear();
  m_tags.clear();
  RiffForm form;
  if (!WalkRiff(file, rxForm, form)) return false;
  if (form.statedLength == 0 && !form.isLong) return true;
  for (const RiffChunk& chunk : form.chunks)
    m_chunks.push_back({chunk.id, chunk.type, Whole32(chunk.start), Whole32(chunk.length)});
  for (const RiffChunk& chunk : form.chunks) {
    if (ReadLIST && EqualIgnoringCase(chunk.id, "LIST")) ReadListInfo(file, chunk, m_tags);
    if (ReadID3 && EqualIgnoringCase(chunk.id, "id3 ") && !ReadId3Frames(file, chunk, m_tags)) return false;
  }
  return true;
} catch (const std::exception&) {
  return false;
}

tyRIFFChunk cRiffReader::RIFFChunk(std::int32_t index) const {
  return RecordAt(m_chunks, index);
}

tyRiffChunkTag cRiffReader::RIFFChunkTag(std::int32_t index) const {
  return RecordAt(m_tags, index);
}

}  // namespace qm
