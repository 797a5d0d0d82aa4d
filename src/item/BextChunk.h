#pragma once
#include <cstddef>
#include <string>
#include <string_view>

#include "item/ItemVocabulary.h"

// The "bext" chunk of a Broadcast Wave file: docs/wav-metadata.md.
namespace qm {

class cHDItem;

inline constexpr std::size_t kBextBytes = 602;  // behind which the coding history stands
inline constexpr std::size_t kMostCodingHistory = 32000;

// The chunk's data, as much as there is of it.
void ReadBextHistory(cHDItem& item, std::string_view chunk);
void ReadBext(cHDItem& item, std::string_view chunk, enHDFileFlags flags);

// The fixed part; fields that are no item's stay as they are in the one there was ("" for none).
std::string BextOf(const cHDItem& item, enHDFileFlags flags, std::string before);

}  // namespace qm
