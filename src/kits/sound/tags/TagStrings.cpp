#include "kits/sound/tags/TagStrings.h"

#include <taglib/tstring.h>
#include <taglib/tstringlist.h>

namespace qm {

TagLib::String TagString(const std::string& text) {
  return {text, TagLib::String::UTF8};
}

std::string TextOf(const TagLib::String& text) {
  return text.to8Bit(true);
}

std::string TextOf(const TagLib::StringList& values) {
  return TextOf(values.toString("; "));
}

const char* NameOfField(std::span<const FieldName> names, enTagField field) {
  for (const FieldName& row : names)
    if (row.field == field) return row.name;
  return "";
}

}  // namespace qm
