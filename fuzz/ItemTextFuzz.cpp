// Any bytes as tag text: pairs looked up in both ways, values coded and decoded, an item read from it whose
// own text then reads back as itself.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "item/cHDItem.h"
#include "kits/common/TagIndex.h"
#include "kits/common/TagText.h"

namespace {

void Require(bool kept) {
  if (!kept) std::abort();
}

// The text of an item read from a text.
std::string Reread(const std::string& text) {
  qm::cHDItem item;
  item.SetSerialisation(text);
  return item.Serialisation();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qm;
  const std::string text(reinterpret_cast<const char*>(data), size);
  Require(DecodeTagValue(EncodeTagValue(text)) == text);
  Require(GetTagValue(AppendTag("Other=1", "Key", text, "=", true), "Key", "=", true) == text);
  const TagIndex index(text);
  for (const char* key : {"Ref", "ITitle", "LstPly1", "SerVer", "Ex1"})
    Require(index.Value(key) == GetTagValue(text, key));
  // Some of what is written is not read back, and may take other fields with it; what is left then stays.
  std::string settled = Reread(text);
  for (int i = 0; i < 4; ++i) settled = Reread(settled);
  Require(Reread(settled) == settled);
  return 0;
}
