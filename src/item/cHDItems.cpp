#include "item/cHDItems.h"

#include <algorithm>

#include "audio/cPeakFile.h"
#include "item/cHDItem.h"
#include "kits/common/Numbers.h"
#include "kits/common/Text.h"

namespace qm {
namespace {

// False when there is nothing to play: no item, or the hook of one without.
bool Measure(tyHDListItem& entry) {
  if (!entry.HDItem) return false;
  const cHDItem& item = *entry.HDItem;
  const float factor = StretchFactor(item);
  entry.ImpactLength = entry.ExtroLength = 0;
  if (entry.IsFull()) {
    entry.ImpactLength = Greater(item.Extro(1), 0.0f) * factor;
    entry.ExtroLength = Greater(item.AudioEnd(1) - item.Extro(1), 0.0f) * factor;
  } else if (entry.IsHook()) {
    entry.ImpactLength = item.HookLength(1) * factor;
    return entry.ImpactLength > 0;
  }
  return true;
}

}  // namespace

float StretchFactor(const cHDItem& item) {
  return item.TimeStretchRatio() > 0 ? item.TimeStretchRatio() : 1;
}

cHDItems::cHDItems() : m_totalItem(std::make_shared<cHDItem>()) {
  m_totalItem->SetReference("HookList");
}

cHDItems::~cHDItems() = default;

void cHDItems::ClearItems() {
  if (m_entries.empty()) return;
  m_entries.clear();
  Recalculate();
  events.Changed();
}

bool cHDItems::AddItem(std::shared_ptr<cHDItem> HDItem, enListItemType ItemType, std::int32_t ItemTag,
                       const std::string& SchedulerReference, double LogReference) {
  return InsertItem(Count() + 1, std::move(HDItem), ItemType, ItemTag, SchedulerReference, LogReference);
}

bool cHDItems::InsertItem(std::int32_t index, std::shared_ptr<cHDItem> HDItem, enListItemType ItemType,
                          std::int32_t ItemTag, const std::string& SchedulerReference, double LogReference) {
  tyHDListItem entry{std::move(HDItem), nullptr, ItemType, 0, 0, ItemTag, LogReference, SchedulerReference};
  if (index < 1 || index > Count() + 1 || !Measure(entry)) return false;
  return Put(m_entries.insert(m_entries.begin() + (index - 1), tyHDListItem{}), std::move(entry));
}

bool cHDItems::ReplaceItem(std::int32_t index, std::shared_ptr<cHDItem> HDItem, enListItemType ItemType,
                           std::int32_t ItemTag, const std::string& SchedulerReference, double LogReference) {
  tyHDListItem entry{std::move(HDItem), nullptr, ItemType, 0, 0, ItemTag, LogReference, SchedulerReference};
  return IsIndex(index) && Measure(entry) && Put(m_entries.begin() + (index - 1), std::move(entry));
}

bool cHDItems::UpdateItemHDItem(std::int32_t index, std::shared_ptr<cHDItem> NewHDItem) {
  if (!IsIndex(index) || !NewHDItem) return false;
  const auto place = m_entries.begin() + (index - 1);
  tyHDListItem entry = *place;
  entry.HDItem = std::move(NewHDItem);
  Measure(entry);  // an item that has lost its hook stays, at no length
  return Put(place, std::move(entry));
}

bool cHDItems::Put(std::vector<tyHDListItem>::iterator place, tyHDListItem entry) {
  entry.PeakFile = ReadPeaks(*entry.HDItem);
  *place = std::move(entry);
  Recalculate();
  events.Changed();
  return true;
}

std::shared_ptr<cPeakFile> cHDItems::ReadPeaks(const cHDItem& item) const {
  if (!m_autoReadPeakFiles) return nullptr;
  auto peaks = std::make_shared<cPeakFile>();
  return peaks->ReadAudioPeakFile(item.AudioFileName(), true) == pfeOK ? peaks : nullptr;
}

bool cHDItems::RemoveItem(std::int32_t index) {
  if (!IsIndex(index)) return false;
  m_entries.erase(m_entries.begin() + (index - 1));
  Recalculate();
  events.Changed();
  return true;
}

bool cHDItems::MoveItem(std::int32_t OriginalIndex, std::int32_t DestinationIndex) {
  if (!IsIndex(OriginalIndex) || !IsIndex(DestinationIndex)) return false;
  const auto from = m_entries.begin() + (OriginalIndex - 1), to = m_entries.begin() + (DestinationIndex - 1);
  if (from < to) std::rotate(from, from + 1, to + 1);
  if (to < from) std::rotate(to, from, from + 1);
  return true;
}

void cHDItems::Recalculate() {
  m_mainLength = 0;
  m_separatorCount = m_hookCount = 0;
  for (const tyHDListItem& entry : m_entries) {
    m_mainLength += entry.ImpactLength;
    if (entry.ItemType & hlitSeparator) ++m_separatorCount;
    if (entry.ItemType & hlitHook) ++m_hookCount;
  }
  m_totalLength = m_mainLength + (m_entries.empty() ? 0 : m_entries.back().ExtroLength);
  m_totalItem->SetTotalLength(m_totalLength);
  m_totalItem->SetAudioEnd(1, m_totalLength);
  m_totalItem->SetExtro(1, m_mainLength);
}

tyHDListItem cHDItems::HDListItem(std::int32_t index) const {
  return IsIndex(index) ? m_entries[static_cast<std::size_t>(index) - 1] : tyHDListItem{};
}

std::string cHDItems::HDReference() const {
  return m_totalItem->Reference();
}

std::string cHDItems::Serialisation() const {
  std::string text;
  for (const tyHDListItem& entry : m_entries)
    text += (text.empty() ? "" : "|") + NumberText(std::int32_t{entry.ItemType}) + "|" +
            entry.HDItem->Reference();
  return text;
}

std::optional<std::int32_t> cHDItems::GetHDIndexByReference(const std::string& HDRef,
                                                            std::int32_t ItemType) const {
  for (std::int32_t index = 1; index <= Count(); ++index) {
    const tyHDListItem& entry = m_entries[static_cast<std::size_t>(index) - 1];
    if (!SameReference(entry.HDItem->Reference(), HDRef)) continue;
    if (ItemType == 0 || (entry.ItemType & ItemType) != 0) return index;
  }
  return std::nullopt;
}

void cHDItems::ClearAllTags() {
  for (tyHDListItem& entry : m_entries) entry.Tag = 0;
}

bool cHDItems::SetItemTag(std::int32_t index, std::int32_t NewValue) {
  if (!IsIndex(index)) return false;
  m_entries[static_cast<std::size_t>(index) - 1].Tag = NewValue;
  return true;
}

float cHDItems::GetTotalImpactLengthByTag(std::int32_t TagValue) const {
  float total = 0;
  for (const tyHDListItem& entry : m_entries)
    if (entry.Tag == TagValue && entry.ImpactLength > 0) total += entry.ImpactLength;
  return total;
}

}  // namespace qm
