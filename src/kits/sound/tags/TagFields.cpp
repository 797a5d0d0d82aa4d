#include "kits/sound/tags/TagFields.h"

#include <taglib/id3v1genres.h>

#include "kits/common/Numbers.h"
#include "kits/common/Text.h"

namespace qm {

const char* TagFieldName(enTagField field) {
  constexpr const char* names[kTagFields] = {"Title",     "Artist",     "URL",   "Publisher", "Composer",
                                             "Performer", "Originator", "Genre", "Year",      "Comment"};
  return names[field];
}

std::int32_t TagFields::Year() const {
  return ParseWhole(Text(etfYear));
}

void TagFields::SetYear(std::int32_t year) {
  SetText(etfYear, year > 0 ? NumberText(year) : "");
}

bool SameTagText(enTagField field, const std::string& first, const std::string& second) {
  return first == second ||
         (field == etfYear && ParseWhole(first) > 0 && ParseWhole(first) == ParseWhole(second));
}

std::int32_t GenreNumber(const std::string& name) {
  if (name.empty()) return kNoGenre;
  for (std::int32_t number = 0; number < kUnlistedGenre; ++number)
    if (EqualIgnoringCase(GenreName(number), name)) return number;
  return kUnlistedGenre;
}

std::string GenreName(std::int32_t number) {
  return number < 0 ? "" : TagLib::ID3v1::genre(number).to8Bit(true);
}

}  // namespace qm
