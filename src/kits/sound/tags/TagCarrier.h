#pragma once
#include <memory>
#include <string>
#include <string_view>

#include "kits/sound/tags/TagFields.h"

namespace TagLib {
namespace APE {
class Tag;
}
namespace ID3v1 {
class Tag;
}
namespace ID3v2 {
class Tag;
}
namespace Ogg {
class XiphComment;
}
}  // namespace TagLib

namespace qm {

// One tag of an open file, which outlives the carrier. Text that it has no place for is not kept.
class TagCarrier {
 public:
  virtual ~TagCarrier() = default;
  virtual std::string Text(enTagField field) const = 0;
  virtual void SetText(enTagField field, const std::string& text) = 0;
};

std::unique_ptr<TagCarrier> MakeTagCarrier(TagLib::ID3v2::Tag& tag);
std::unique_ptr<TagCarrier> MakeTagCarrier(TagLib::ID3v1::Tag& tag);
std::unique_ptr<TagCarrier> MakeTagCarrier(TagLib::APE::Tag& tag);
std::unique_ptr<TagCarrier> MakeTagCarrier(TagLib::Ogg::XiphComment& tag);

// Makes tags' 8-bit text read and written as everywhere else in the library. To be called before a file is
// opened.
void UseOwnEightBitText();

// Vorbis comments have to be UTF-8, and the library empties those that are not. Gives the tag their text out
// of the bytes that it was read from.
void RestoreEightBitComments(std::string_view bytes, TagLib::Ogg::XiphComment& tag);

}  // namespace qm
