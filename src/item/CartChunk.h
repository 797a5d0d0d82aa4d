#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

#include "item/ItemVocabulary.h"

// The "cart" chunk (AES46): docs/wav-metadata.md.
namespace qm {

class cHDItem;

inline constexpr std::size_t kCartBytes = 2048;  // behind which the tag text stands
inline constexpr std::size_t kMostCartText = 32000;
inline constexpr std::size_t kNewCartText = 10240;  // room in a new chunk

struct tyCartChunk {
  std::string fixed;  // kCartBytes at most
  std::string text;   // tag text, 8-bit
};

// Whether the version says that the chunk was ever filled.
bool IsFilled(const tyCartChunk& cart);

// With llfAutoDetect, flags become those of the conventions that the file follows.
void ReadCart(cHDItem& item, const tyCartChunk& cart, enHDFileFlags& flags);

// What is no item's stays as it is in the fixed part there was ("" for none). Text is as long as it is.
tyCartChunk CartOf(const cHDItem& item, enHDFileFlags flags, std::string fixedBefore);

}  // namespace qm
