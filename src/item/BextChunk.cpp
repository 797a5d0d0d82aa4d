#include "item/BextChunk.h"

#include "item/ChunkFields.h"
#include "item/ItemFlags.h"
#include "item/cHDItem.h"
#include "kits/common/Text.h"

namespace qm {
namespace {

constexpr std::size_t kDescription = 0, kDescriptionBytes = 256;
constexpr std::size_t kIdentifier = 348, kIdentifierBytes = 64;

constexpr ChunkField kFields[] = {
    {256, 32, eifOriginator, 1, cffText},      {288, 32, eifOriginatorReference, 1, cffText},
    {320, 10, eifOriginationDate, 1, cffDate}, {330, 8, eifOriginationTime, 1, cffTime},
    {346, 2, eifVersion, 1, cffWhole16},
};

}  // namespace

void ReadBextHistory(cHDItem& item, const tyBextChunk& bext) {
  item.SetCodingHistory(ChunkText(bext.history, 0, kMostCodingHistory));
}

void ReadBext(cHDItem& item, const tyBextChunk& bext, enHDFileFlags flags) {
  const std::string description = ChunkText(bext.fixed, kDescription, kDescriptionBytes);
  if ((flags & llfQuillmere) != 0)
    item.SetItemTitle(description);
  else if (item.ItemTitle().empty())
    item.SetItemDescription(1, description);
  ReadChunkFields(item, kFields, bext.fixed);
}

tyBextChunk BextOf(const cHDItem& item, enHDFileFlags flags, std::string fixedBefore) {
  tyBextChunk bext{std::move(fixedBefore), ""};
  std::string& chunk = bext.fixed;
  chunk.resize(kBextBytes, '\0');
  const std::string_view title = Trim(item.ItemTitle());
  const bool titled = HasFlags(flags, llfQuillmere) && !title.empty();
  PutChunkText(chunk, kDescription, kDescriptionBytes, titled ? title : item.ItemDescription(1), '\0');
  chunk.replace(kIdentifier, kIdentifierBytes, kIdentifierBytes, '\0');
  WriteChunkFields(item, kFields, chunk, '\0');
  return bext;
}

}  // namespace qm
