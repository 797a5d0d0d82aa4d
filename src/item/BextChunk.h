#pragma once
#include <cstddef>
#include <string>

#include "item/ItemVocabulary.h"

// The "bext" chunk of a Broadcast Wave file: docs/wav-metadata.md.
namespace qm {

class cHDItem;

inline constexpr std::size_t kBextBytes = 602;  // behind which the coding history stands
inline constexpr std::size_t kMostCodingHistory = 32000;

struct tyBextChunk {
  std::string fixed;    // kBextBytes at most
  std::string history;  // coding history, 8-bit
};

void ReadBextHistory(cHDItem& item, const tyBextChunk& bext);
void ReadBext(cHDItem& item, const tyBextChunk& bext, enHDFileFlags flags);

// What is no item's stays as it is in the fixed part there was ("" for none). Without a history, which is
// never written.
tyBextChunk BextOf(const cHDItem& item, enHDFileFlags flags, std::string fixedBefore);

}  // namespace qm
