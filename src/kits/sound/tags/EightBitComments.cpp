#include <taglib/xiphcomment.h>

#include <vector>

#include "kits/common/EightBitText.h"
#include "kits/common/LittleEndian.h"
#include "kits/common/Text.h"
#include "kits/sound/tags/TagCarrier.h"
#include "kits/sound/tags/TagStrings.h"

namespace qm {

namespace {

// "NAME=text" each; those that the bytes hold in full.
std::vector<std::string_view> CommentsIn(std::string_view bytes) {
  std::vector<std::string_view> comments;
  std::size_t at = std::size_t{4} + ReadLittleEndian<std::uint32_t>(bytes, 0);  // behind the vendor's name
  const auto count = ReadLittleEndian<std::uint32_t>(bytes, at);
  at += 4;
  for (std::uint32_t i = 0; i < count && at + 4 <= bytes.size(); ++i) {
    const std::size_t length = ReadLittleEndian<std::uint32_t>(bytes, at);
    at += 4;
    if (length > bytes.size() - at) break;
    comments.push_back(bytes.substr(at, length));
    at += length;
  }
  return comments;
}

std::string_view NameOf(std::string_view comment) {
  return comment.substr(0, comment.find('='));
}

bool IsBroken(std::string_view comment) {
  return NameOf(comment).size() < comment.size() && !IsValidUtf8(comment) && IsValidUtf8(NameOf(comment));
}

// All comments of a name anew, so that those of one name keep their order.
void Restore(std::string_view name, const std::vector<std::string_view>& comments,
             TagLib::Ogg::XiphComment& tag) {
  const TagLib::String key = TagString(std::string(name));
  if (!TagLib::Ogg::XiphComment::checkKey(key)) return;
  tag.removeFields(key);
  for (const std::string_view comment : comments)
    if (EqualIgnoringCase(NameOf(comment), name) && comment.size() > name.size())
      tag.addField(key, TagString(TextFromEightBit(comment.substr(name.size() + 1))), false);
}

}  // namespace

void RestoreEightBitComments(std::string_view bytes, TagLib::Ogg::XiphComment& tag) {
  const std::vector<std::string_view> comments = CommentsIn(bytes);
  for (const std::string_view comment : comments)
    if (IsBroken(comment)) Restore(NameOf(comment), comments, tag);
}

}  // namespace qm
