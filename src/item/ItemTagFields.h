#pragma once
#include <string>

namespace qm {

class cHDItem;
class TagFields;

// The texts and the year that items share with every kind of tag. Title, artist and genre are the business of
// the kind of file.
void TakeTagFields(const TagFields& fields, cHDItem& item);
void GiveTagFields(const cHDItem& item, TagFields& fields);

}  // namespace qm
