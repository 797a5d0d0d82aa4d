// Any bytes as the data of a cart chunk and of a bext chunk: fields, timers, tag text.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "item/BextChunk.h"
#include "item/CartChunk.h"
#include "item/ItemFields.h"
#include "item/RcsMedia.h"
#include "item/cHDItem.h"
#include "kits/common/Text.h"
#include "kits/sound/cAudioFormat.h"

namespace {

void Require(bool kept) {
  if (!kept) std::abort();
}

// Texts are valid, whatever the bytes were.
void RequireText(const qm::cHDItem& item) {
  for (const qm::ItemField& field : qm::ItemFields())
    for (std::int32_t index = 1; field.IsText() && index <= field.count; ++index)
      Require(qm::IsValidUtf8(field.text(item, index)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qm;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const std::size_t split = std::min(size, size % 2 ? kCartBytes : size / 2);
  tyCartChunk cart{bytes.substr(0, split), bytes.substr(split)};
  cHDItem item;
  item.SetTotalLength(100);
  item.AudioFormat()->SetSampleRate(44100);
  enHDFileFlags flags = llfAutoDetect;
  const tyBextChunk bext{bytes.substr(0, kBextBytes), bytes.substr(split)};
  ReadBextHistory(item, bext);
  ReadBext(item, bext, flags);
  RequireText(item);
  ReadCart(item, cart, flags);
  ReadRcsMedia(item, cart.text);
  RequireText(item);
  const tyCartChunk written = CartOf(item, llfQuillmere, cart.fixed);
  Require(written.fixed.size() == kCartBytes && BextOf(item, llfQuillmere, "").fixed.size() == kBextBytes);
  cHDItem back;
  back.AudioFormat()->SetSampleRate(44100);
  ReadCart(back, written, flags);
  Require(back.CutID() == item.CutID() && back.Client() == item.Client());
  RequireText(back);
  return 0;
}
