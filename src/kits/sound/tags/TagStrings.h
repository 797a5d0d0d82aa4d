#pragma once
#include <span>
#include <string>

#include "kits/sound/tags/TagFields.h"

namespace TagLib {
class String;
class StringList;
}  // namespace TagLib

// The tag library's text, and names of fields; for the sources of this folder.
namespace qm {

TagLib::String TagString(const std::string& text);
std::string TextOf(const TagLib::String& text);
// Several values of one field as one text.
std::string TextOf(const TagLib::StringList& values);

// What a kind of tag calls a field. Rows further down are other names of the same, read where the first gives
// nothing.
struct FieldName {
  enTagField field;
  const char* name;
};

// The first name; "" when there is none.
const char* NameOfField(std::span<const FieldName> names, enTagField field);

}  // namespace qm
