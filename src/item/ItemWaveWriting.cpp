#include "item/BextChunk.h"
#include "item/CartChunk.h"
#include "item/ItemFlags.h"
#include "item/ItemMetadata.h"
#include "item/ItemOrigin.h"
#include "item/RiffChunkWriter.h"
#include "item/RiffSource.h"
#include "item/RiffWalk.h"
#include "item/WaveFacts.h"
#include "item/cHDItem.h"
#include "kits/common/Dates.h"
#include "kits/common/Version.h"
#include "kits/sound/Platform.h"

namespace qm {

void PrepareItemForSave(cHDItem& item, const RiffSource& file, enHDFileFlags flags,
                        const Platform& platform) {
  RiffForm form;
  const auto facts = WalkRiff(file, rxForm, form) ? FindWaveFacts(file, form) : std::nullopt;
  item.SetTotalLength(facts ? facts->Seconds() : 0);
  if (item.OriginationDate() == 0) {
    const tyLogDateTime now = DateTimeNow(*platform.clock);
    item.SetOriginationDate(now.Date);
    item.SetOriginationTime(now.Time);
  }
  if (item.Originator().empty()) item.SetOriginator(OriginOfThisUser());
  if (!HasFlags(flags, llfCartChunk) || !item.ProducerAppName().empty()) return;
  item.SetProducerAppName("Quillmere CartChunk Interface");
  item.SetProducerAppVersion("v" + LibraryVersion());
}

bool SaveItemCart(const cHDItem& item, RiffTarget& file, enHDFileFlags flags) {
  const tyCartChunk cart = CartOf(item, flags, ReadRiffChunk(file, "cart", kCartBytes));
  return WriteRiffChunk(file, {"cart", cart.fixed, cart.text, kNewCartText});
}

bool SaveItemBext(const cHDItem& item, RiffTarget& file, enHDFileFlags flags) {
  const tyBextChunk bext = BextOf(item, flags, ReadRiffChunk(file, "bext", kBextBytes));
  return WriteRiffChunk(file, {"bext", bext.fixed, "", 0});
}

}  // namespace qm
