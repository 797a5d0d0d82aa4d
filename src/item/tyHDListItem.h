#pragma once
#include <cstdint>
#include <memory>
#include <string>

namespace qm {

class cHDItem;
class cPeakFile;

// How an entry of a list is played. Bits; an entry with both hlitFull and hlitHook counts as full.
enum enListItemType : std::int32_t {
  hlitFull = 1,
  hlitHook = 2,       // its hook only
  hlitSeparator = 4,  // stands between others and is counted by itself
};

// An entry of a list of items. Lengths are seconds on the air, time stretch included.
struct tyHDListItem {
  std::shared_ptr<cHDItem> HDItem;      // shared with whoever added it
  std::shared_ptr<cPeakFile> PeakFile;  // its points, where they were asked for and could be read
  enListItemType ItemType = hlitFull;
  float ImpactLength = 0;  // from its start until the next may start
  float ExtroLength = 0;   // it goes on under the next
  std::int32_t Tag = 0;    // the caller's own
  double LogReference = 0;
  std::string SchedulerReference;

  bool IsFull() const { return (ItemType & hlitFull) != 0; }
  bool IsHook() const { return !IsFull() && (ItemType & hlitHook) != 0; }
};

// How much longer than its audio the item is on the air: its TimeStretchRatio, 1 for none.
float StretchFactor(const cHDItem& item);

}  // namespace qm
