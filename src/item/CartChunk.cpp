#include "item/CartChunk.h"

#include "item/CartTagText.h"
#include "item/CartTimers.h"
#include "item/ChunkFields.h"
#include "item/ItemFlags.h"
#include "item/QuillmereUserDef.h"
#include "item/cHDItem.h"
#include "kits/common/Text.h"
#include "kits/sound/cAudioFormat.h"

namespace qm {
namespace {

constexpr char kBlank = ' ';
constexpr char kVersion[] = "0101";
constexpr std::size_t kVersionBytes = 4;
constexpr ChunkField kTitle{4, 64, eifItemTitle, 1, cffText};
constexpr ChunkField kArtist{68, 64, eifArtistName, 1, cffText};
constexpr std::size_t kUserDef = 616, kUserDefBytes = 64;
constexpr std::size_t kReserved = 748, kReservedBytes = 276;

constexpr ChunkField kFields[] = {
    kTitle,
    kArtist,
    {132, 64, eifCutID, 1, cffText},
    {196, 64, eifClient, 1, cffText},
    {260, 64, eifContentTypeInfo, 1, cffText},
    {324, 64, eifCategoryInfo, 1, cffText},
    {388, 64, eifOutCue, 1, cffText},
    {452, 10, eifAirStartDate, 1, cffDate},
    {462, 8, eifAirStartTime, 1, cffTime},
    {470, 10, eifAirEndDate, 1, cffDate},
    {480, 8, eifAirEndTime, 1, cffTime},
    {488, 64, eifProducerAppName, 1, cffText},
    {552, 64, eifProducerAppVersion, 1, cffText},
    {1024, 1024, eifURL, 1, cffText},
};

bool IsOurs(const cHDItem& item) {
  return ContainsIgnoringCase(item.ProducerAppName(), "Quillmere");
}

enHDFileFlags ConventionsOf(const cHDItem& item) {
  if (IsOurs(item)) return llfQuillmere;
  return ContainsIgnoringCase(item.ProducerAppName(), "RCS") ? llfRCS : llfAutoDetect;
}

// A recording's title and artist are those of the music, where nothing else is known of that.
void FillCopyright(cHDItem& item) {
  const std::string title = item.ItemTitle(), artist = item.ArtistName(1);
  if (item.ProductTitle().empty()) item.SetProductTitle(title);
  if (item.MusicTitle().empty()) item.SetMusicTitle(title);
  if (item.Composer().empty()) item.SetComposer(artist);
  if (item.Performer().empty()) item.SetPerformer(artist);
}

}  // namespace

bool IsFilled(const tyCartChunk& cart) {
  return !ChunkText(cart.fixed, 0, kVersionBytes).empty();
}

void ReadCart(cHDItem& item, const tyCartChunk& cart, enHDFileFlags& flags) {
  ReadChunkFields(item, kFields, cart.fixed);
  if (flags == llfAutoDetect) flags = ConventionsOf(item);
  ReadCartTagText(item, cart.text);
  if (HasFlags(flags, llfCopyrightFromTitle)) FillCopyright(item);
  if (HasFlags(flags, llfQuillmere)) ReadUserDef(item, ChunkText(cart.fixed, kUserDef, kUserDefBytes));
  ReadCartTimers(item, cart.fixed, item.AudioFormat()->SampleRate(), IsOurs(item) ? ctlOurs : ctlForeign);
}

tyCartChunk CartOf(const cHDItem& item, enHDFileFlags flags, std::string fixedBefore) {
  tyCartChunk cart{std::move(fixedBefore), CartTagText(item)};
  std::string& fixed = cart.fixed;
  fixed.resize(kCartBytes, '\0');
  fixed.replace(0, kVersionBytes, kVersion);
  WriteChunkFields(item, kFields, fixed, kBlank);
  const std::string_view title = Trim(item.ItemTitle());
  PutChunkText(fixed, kTitle.offset, kTitle.bytes, title.empty() ? item.ItemDescription(1) : title, kBlank);
  if (item.ArtistName(1).empty())
    PutChunkText(fixed, kArtist.offset, kArtist.bytes, item.ItemDescription(2), kBlank);
  PutChunkText(fixed, kUserDef, kUserDefBytes, HasFlags(flags, llfQuillmere) ? UserDefOf(item) : "", kBlank);
  fixed.replace(kReserved, kReservedBytes, kReservedBytes, kBlank);
  WriteCartTimers(item, fixed, item.AudioFormat()->SampleRate());
  return cart;
}

}  // namespace qm
