#include <algorithm>
#include <limits>

#include "audio/WaveFormat.h"
#include "item/BextChunk.h"
#include "item/CartChunk.h"
#include "item/ItemFields.h"
#include "item/ItemFlags.h"
#include "item/ItemMetadata.h"
#include "item/RcsMedia.h"
#include "item/RiffSource.h"
#include "item/RiffWalk.h"
#include "item/WaveFacts.h"
#include "item/cHDItem.h"
#include "item/cRiffReader.h"
#include "kits/common/Numbers.h"
#include "kits/sound/cAudioFormat.h"

namespace qm {
namespace {

void ReadFormat(cHDItem& item, const WaveFacts& facts) {
  const tyWaveFormat& wave = facts.format;
  cAudioFormat format;
  format.SetFormatType(aftWAV);
  format.SetSampleRate(static_cast<std::int32_t>(
      std::min<std::uint32_t>(wave.SamplesPerSecond, std::numeric_limits<std::int32_t>::max())));
  format.SetChannels(wave.Channels);
  format.SetBitsPerSample(wave.BitsPerSample);
  format.SetWAVFormatTag(wave.FormatTag);
  item.SetTotalLength(facts.Seconds());
  item.ReplaceAudioFormat(format);
}

struct TagTarget {
  std::string_view names[2];
  enItemField field;
  std::int32_t index;
};
constexpr TagTarget kTagTargets[] = {
    {{"INAM", "TIT2"}, eifItemTitle, 1},    {{"IART", "TPE1"}, eifArtistName, 1},
    {{"TPE2", "TPE2"}, eifArtistName, 2},   {{"ICRD", "TYER"}, eifYear, 1},
    {{"IGNR", "TCON"}, eifCategoryInfo, 1},
};

void TakeTag(cHDItem& item, const tyRiffChunkTag& tag) {
  for (const TagTarget& target : kTagTargets) {
    if (tag.TagName != target.names[0] && tag.TagName != target.names[1]) continue;
    const ItemField& field = ItemFields()[static_cast<std::size_t>(target.field)];
    // Many end a frame's text with a zero character, which is no part of it.
    if (field.IsText())
      field.setText(item, target.index, tag.Data.substr(0, tag.Data.find_last_not_of('\0') + 1));
    else
      field.setNumber(item, target.index, ParseNumber(tag.Data));
  }
}

// Those of "id3 " replace those of LIST.
void ReadTags(cHDItem& item, const RiffSource& file, std::int32_t flags) {
  const bool list = ReadsCarrier(flags, llfListInfoChunk), id3 = ReadsCarrier(flags, llfID3Chunk);
  if (!list && !id3) return;
  cRiffReader reader;
  reader.LoadFromSource(file, list, id3);
  for (const char* parent : {"LIST", "id3 "})
    for (std::int32_t index = 1; index <= reader.NumberRIFFChunkTags(); ++index)
      if (const tyRiffChunkTag tag = reader.RIFFChunkTag(index); tag.ParentTag == parent) TakeTag(item, tag);
}

// The fixed part of a chunk's data and what follows.
template <class Chunk>
Chunk ReadChunk(const RiffSource& file, const RiffChunk* place, std::size_t fixedBytes,
                std::size_t mostText) {
  if (place == nullptr) return {};
  const auto bytes = static_cast<std::size_t>(place->length);
  Chunk chunk{file.Read(place->start, std::min(bytes, fixedBytes)), ""};
  if (bytes <= fixedBytes) return chunk;
  auto& [fixed, text] = chunk;
  text =
      file.Read(place->start + static_cast<std::int64_t>(fixedBytes), std::min(bytes - fixedBytes, mostText));
  text.resize(std::min(text.find('\0'), text.size()));
  return chunk;
}

}  // namespace

bool LoadItemWave(cHDItem& item, const RiffSource& file, enHDFileFlags flags) {
  RiffForm form;
  if (!WalkRiff(file, rxForm, form)) return false;
  if (const auto facts = FindWaveFacts(file, form)) ReadFormat(item, *facts);
  const RiffChunk* cart = ReadsCarrier(flags, llfCartChunk) ? FindRiffChunk(form, "cart") : nullptr;
  const RiffChunk* bext = ReadsCarrier(flags, llfBext) ? FindRiffChunk(form, "bext") : nullptr;
  const auto bextChunk = ReadChunk<tyBextChunk>(file, bext, kBextBytes, kMostCodingHistory);
  const auto cartChunk = ReadChunk<tyCartChunk>(file, cart, kCartBytes, kMostCartText);
  if (bext) ReadBextHistory(item, bextChunk);
  ReadTags(item, file, flags);
  if (IsFilled(cartChunk)) ReadCart(item, cartChunk, flags);
  if (bext && !cart) ReadBext(item, bextChunk, flags);
  if (HasFlags(flags, kRcsConventions)) ReadRcsMedia(item, cartChunk.text);
  return true;
}

}  // namespace qm
