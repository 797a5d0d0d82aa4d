#include <algorithm>
#include <exception>

#include "item/cHDItem.h"
#include "item/cHDItemMark.h"
#include "kits/common/EightBitText.h"
#include "kits/common/Files.h"
#include "kits/common/LittleEndian.h"
#include "kits/common/Text.h"

// Marker files: docs/wav-metadata.md.
namespace qm {
namespace {

constexpr std::size_t kRecordBytes = 256;
constexpr std::size_t kMostMarkers = 32767;
constexpr std::size_t kTitleBytes = 128;
constexpr std::size_t kGuid = 220, kGuidBytes = 36;  // without its braces

struct Number {
  std::size_t offset;
  std::int32_t (cHDItemMark::*get)() const;
  void (cHDItemMark::*set)(std::int32_t);
};
constexpr Number kNumbers[] = {
    {128, &cHDItemMark::StartSample, &cHDItemMark::SetStartSample},
    {132, &cHDItemMark::Duration, &cHDItemMark::SetDuration},
    {136, &cHDItemMark::MarkerType, &cHDItemMark::SetMarkerType},
    {140, &cHDItemMark::flags, &cHDItemMark::Setflags},
};

void CompleteName(std::string& name) {
  if (!EqualIgnoringCase(std::string_view(name).substr(name.size() - std::min<std::size_t>(name.size(), 3)),
                         "pmk"))
    name += ".pmk";
}

std::string Text(std::string_view bytes) {
  return TextFromEightBit(Trim(bytes.substr(0, bytes.find('\0'))));
}

bool IsIdentity(std::string_view text) {
  return text.size() == kGuidBytes &&
         text.find_first_not_of("0123456789ABCDEFabcdef-") == std::string_view::npos;
}

std::shared_ptr<cHDItemMark> MarkOf(std::string_view record) {
  auto mark = std::make_shared<cHDItemMark>();
  mark->SetTitle(Text(record.substr(0, kTitleBytes)));
  for (const Number& number : kNumbers)
    ((*mark).*number.set)(ReadLittleEndian<std::int32_t>(record, number.offset));
  const std::string guid = Text(record.substr(kGuid, kGuidBytes));
  if (!guid.empty()) mark->SetGuid(IsIdentity(guid) ? "{" + guid + "}" : guid);
  return mark;
}

std::string RecordOf(const cHDItemMark& mark) {
  std::string record = EightBitFromText(mark.Title(), kTitleBytes);
  record.resize(kTitleBytes, ' ');
  record.resize(kRecordBytes, '\0');
  for (const Number& number : kNumbers)
    StoreLittleEndian(record.data() + number.offset, (mark.*number.get)());
  std::string_view guid = mark.Guid();
  if (guid.starts_with('{') && guid.ends_with('}')) guid = guid.substr(1, guid.size() - 2);
  std::string field = EightBitFromText(guid, kGuidBytes);
  field.resize(kGuidBytes, ' ');
  return record.replace(kGuid, kGuidBytes, field);
}

}  // namespace

bool cHDItem::LoadMarkersFromFile(std::string& MarkFilename) try {
  CompleteName(MarkFilename);
  std::string bytes;
  if (FileLength(MarkFilename) <= 0 || !ReadWholeFile(MarkFilename, bytes)) return false;
  ClearMarkers();
  const std::size_t records = std::min(bytes.size() / kRecordBytes, kMostMarkers);
  for (std::size_t i = 0; i < records; ++i)
    AddMarker(MarkOf(std::string_view(bytes).substr(i * kRecordBytes, kRecordBytes)));
  return true;
} catch (const std::exception&) {
  return false;
}

bool cHDItem::SaveMarkersToFile(std::string& MarkFilename) const try {
  CompleteName(MarkFilename);
  std::string bytes;
  for (const auto& mark : m_markers) bytes += RecordOf(*mark);
  if (!bytes.empty()) return WriteFileAtomically(MarkFilename, bytes);
  DeleteFile(MarkFilename);
  return false;
} catch (const std::exception&) {
  return false;
}

}  // namespace qm
