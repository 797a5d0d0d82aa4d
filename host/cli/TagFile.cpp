#include "cli/TagFile.h"

#include <cmath>

#include "item/ItemFieldAccess.h"
#include "item/ItemFields.h"
#include "item/cHDItem.h"
#include "kits/common/Files.h"
#include "kits/common/Numbers.h"
#include "kits/sound/tags/TagFields.h"

namespace qm::cli {

namespace {

constexpr enItemField kFacts[] = {eifAudioFileName, eifAudioFileLength, eifAudioFileExists, eifAudioFileType,
                                  eifTotalLength};
constexpr std::int16_t kUnknown = -1, kMusic = 1;  // content types
constexpr double kHalfAMillisecond = 0.0005;       // the least that any carrier keeps of a time

bool Assigns(const ItemArgument& fields, enItemField id) {
  for (const auto& [name, value] : fields.fields)
    if (FindItemFieldPlace(name).field->id == id) return true;
  return false;
}

// Files hold a genre of music only: one that was read, or is given, is meant as such unless the content type
// says otherwise.
void KeepGenre(const ItemArgument& fields, cHDItem& item) {
  const bool named = Assigns(fields, eifCategoryInfo), numbered = Assigns(fields, eifCategoryNumber);
  if (named && !numbered) item.SetCategoryNumber(static_cast<std::int16_t>(GenreNumber(item.CategoryInfo())));
  if (numbered && !named) item.SetCategoryInfo("");
  const bool genre = named || numbered || item.ContentTypeInfo() == "Music";
  if (item.ContentTypeNumber() == kUnknown && genre) item.SetContentTypeNumber(kMusic);
}

bool SameValue(const ItemFieldPlace& place, const cHDItem& wanted, const cHDItem& held) {
  const ItemField& field = *place.field;
  if (field.IsText()) return field.text(wanted, place.index) == field.text(held, place.index);
  const double difference = field.number(wanted, place.index) - field.number(held, place.index);
  return field.kind == ifkSingle ? std::abs(difference) <= kHalfAMillisecond : difference == 0;
}

// What a file gives that was never told anything.
bool HoldsNothing(const ItemFieldPlace& place, const cHDItem& before, const cHDItem& held) {
  return IsDefault(held, *place.field, place.index) || SameValue(place, before, held);
}

void Compare(const ItemArgument& fields, const cHDItem& before, const cHDItem& wanted, const cHDItem& held,
             TaggedFile& told) {
  for (const auto& [name, value] : fields.fields) {
    const ItemFieldPlace place = FindItemFieldPlace(name);
    if (SameValue(place, wanted, held)) continue;
    if (HoldsNothing(place, before, held))
      told.lost.push_back(name);
    else
      told.changed.emplace_back(name, FieldText(held, *place.field, place.index));
  }
}

}  // namespace

bool IsFactOfFile(const std::string& fieldName) {
  const ItemField* field = FindItemFieldPlace(fieldName).field;
  for (const enItemField fact : kFacts)
    if (field != nullptr && field->id == fact) return true;
  return false;
}

TaggedFile TagOneFile(const std::string& path, const ItemArgument& fields, enHDFileFlags carriers) {
  TaggedFile told{path, "", {}, {}};
  cHDItem before, item, held;
  if (!FileExists(path)) {
    told.errorText = "there is no file '" + path + "'";
  } else if (!before.LoadFromFile(path) || !item.LoadFromFile(path)) {
    told.errorText = "'" + path + "' is not an audio file that can be read";
  } else {
    ApplyFields(fields, item);
    KeepGenre(fields, item);
    if (!item.SaveToFile(path, carriers) || !held.LoadFromFile(path))
      told.errorText = "'" + path + "' could not be written";
    else
      Compare(fields, before, item, held, told);
  }
  return told;
}

}  // namespace qm::cli
