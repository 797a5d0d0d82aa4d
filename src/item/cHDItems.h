#pragma once
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "item/tyHDListItem.h"
#include "kits/common/Event.h"

namespace qm {

// A running order: items with the time each takes on the air, the list's lengths, and one item that stands
// for the whole list.
//
// Host thread only. Indices count from 1; an operation on a bad index, or without an item, returns false and
// changes nothing. Items are shared: when the marks of one change, its entry's lengths do not, until
// UpdateItemHDItem. A hook entry of an item without a hook is refused.
class cHDItems {
 public:
  cHDItems();
  ~cHDItems();
  cHDItems(const cHDItems&) = delete;
  cHDItems& operator=(const cHDItems&) = delete;

  struct Events {
    Event<> Changed;  // within the change, once the totals are right
  } events;

  void ClearItems();
  bool AddItem(std::shared_ptr<cHDItem> HDItem, enListItemType ItemType = hlitFull, std::int32_t ItemTag = 0,
               const std::string& SchedulerReference = {}, double LogReference = 0);
  bool RemoveItem(std::int32_t index);
  // Index may be one behind the last entry.
  bool InsertItem(std::int32_t index, std::shared_ptr<cHDItem> HDItem, enListItemType ItemType = hlitFull,
                  std::int32_t ItemTag = 0, const std::string& SchedulerReference = {},
                  double LogReference = 0);
  // Neither raises Changed nor works out the totals anew: TotalLength may keep the extro of another last
  // entry until the next change.
  bool MoveItem(std::int32_t OriginalIndex, std::int32_t DestinationIndex);
  bool ReplaceItem(std::int32_t index, std::shared_ptr<cHDItem> HDItem, enListItemType ItemType = hlitFull,
                   std::int32_t ItemTag = 0, const std::string& SchedulerReference = {},
                   double LogReference = 0);
  // Another item in the entry, or the same one with new marks; all else of the entry stays.
  bool UpdateItemHDItem(std::int32_t index, std::shared_ptr<cHDItem> NewHDItem);

  std::int32_t Count() const { return static_cast<std::int32_t>(m_entries.size()); }
  std::int16_t SeparatorCount() const { return m_separatorCount; }
  std::int16_t HookCount() const { return m_hookCount; }
  tyHDListItem HDListItem(std::int32_t index) const;  // an entry without an item for a bad index
  float MainLength() const { return m_mainLength; }   // until something may follow the list
  float TotalLength() const { return m_totalLength; }
  // Stands for the whole list, as one item with the extro at MainLength. Reference "HookList".
  std::shared_ptr<cHDItem> TotalHDItem() const { return m_totalItem; }
  std::string HDReference() const;
  // "1|ABC123|2|XYZ": type and reference of each entry. Nothing here reads it back.
  std::string Serialisation() const;
  // Whether each change of an entry reads (and, where need be, scans) its item's peak file, which takes time.
  bool AutoReadPeakFiles() const { return m_autoReadPeakFiles; }
  void SetAutoReadPeakFiles(bool Value) { m_autoReadPeakFiles = Value; }

  // The first entry with that reference, and with any bit of ItemType where that is not 0.
  std::optional<std::int32_t> GetHDIndexByReference(const std::string& HDRef,
                                                    std::int32_t ItemType = 0) const;
  void ClearAllTags();
  bool SetItemTag(std::int32_t index, std::int32_t NewValue);
  float GetTotalImpactLengthByTag(std::int32_t TagValue) const;

 private:
  bool IsIndex(std::int32_t index) const { return index >= 1 && index <= Count(); }
  std::shared_ptr<cPeakFile> ReadPeaks(const cHDItem& item) const;
  bool Put(std::vector<tyHDListItem>::iterator place, tyHDListItem entry);
  void Recalculate();

  std::vector<tyHDListItem> m_entries;
  float m_mainLength = 0;
  float m_totalLength = 0;
  std::int16_t m_separatorCount = 0;
  std::int16_t m_hookCount = 0;
  bool m_autoReadPeakFiles = false;
  std::shared_ptr<cHDItem> m_totalItem;
};

}  // namespace qm
