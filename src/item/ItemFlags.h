#pragma once
#include <cstdint>

#include "item/ItemVocabulary.h"

namespace qm {

inline constexpr std::int32_t kRcsConventions = 0x800;  // the part of llfRCS that is no carrier

// All bits of `wanted` are set.
constexpr bool HasFlags(std::int32_t flags, std::int32_t wanted) {
  return (flags & wanted) == wanted;
}

// Whether a carrier is read.
constexpr bool ReadsCarrier(std::int32_t flags, enHDFileFlags carrier) {
  return flags == llfAutoDetect || (flags & carrier) != 0;
}

}  // namespace qm
