#include "item/ItemTagFields.h"

#include "item/ItemFields.h"
#include "item/cHDItem.h"
#include "kits/sound/tags/TagFields.h"

namespace qm {

namespace {

struct Row {
  enTagField field;
  enItemField itemField;
};

constexpr Row kRows[] = {
    {etfURL, eifURL},
    {etfPublisher, eifPublisher},
    {etfComposer, eifComposer},
    {etfPerformer, eifPerformer},
    {etfOriginator, eifOriginator},
    {etfComment, eifStudioNotes},
};

}  // namespace

void TakeTagFields(const TagFields& fields, cHDItem& item) {
  for (const Row& row : kRows)
    ItemFields()[static_cast<std::size_t>(row.itemField)].setText(item, 1, fields.Text(row.field));
  item.SetYear(fields.Year());
}

void GiveTagFields(const cHDItem& item, TagFields& fields) {
  for (const Row& row : kRows)
    fields.SetText(row.field, ItemFields()[static_cast<std::size_t>(row.itemField)].text(item, 1));
  fields.SetYear(item.Year());
  fields.SetText(etfTitle, item.ItemTitle());
  fields.SetText(etfArtist, item.ArtistName(1));
}

}  // namespace qm
