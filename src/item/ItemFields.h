#pragma once
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

// The table of an item's fields as data, for what treats fields alike: comparison, text forms, access by
// name.
namespace qm {

class cHDItem;
class cHDItemTimeExtra;

enum enItemField : std::int32_t {
#define QM_FIELD(Name, ...) eif##Name,
#define QM_FIELDS(Name, ...) eif##Name,
#include "item/cHDItemFields.def"
};

enum enItemFieldKind : std::int32_t {
  ifkText,
  ifkWhole16,
  ifkWhole32,
  ifkSingle,
  ifkFlag,
  ifkDate,
  ifkTime,
  ifkColour,
  ifkInformation,
  ifkEnding,
};

enum enItemFieldComparison : std::int32_t { ifcSame, ifcApart };

// When the text form holds a field; see the table.
enum enItemFieldWritten : std::int32_t {
  ifwAlways,
  ifwFilled,
  ifwAboveZero,
  ifwNotDefault,
  ifwWithHook,
  ifwNever,
};

// How the text form holds a value: numbers plain, text quoted and encoded unless this says otherwise.
enum enItemTextForm : std::int32_t {
  itfNatural,
  itfUndecoded,  // text, read as it stands
  itfBare,       // text, trimmed and not quoted, read as it stands
  itfDateText,   // a date as "yyyy-mm-dd"
};

// Which values that are read replace the field's.
enum enItemTextTaken : std::int32_t { ittAlways, ittFilled, ittNotZero };

// What the text forms do otherwise with a field. A key that is null is not another one.
struct ItemTextOptions {
  enItemTextForm form = itfNatural;
  enItemTextTaken taken = ittAlways;
  const char* readKey = nullptr;   // in the short form, for the key it is written with
  const char* olderKey = nullptr;  // in the short form, asked where the first gives nothing
  const char* longKey = nullptr;   // in the long form, for the field's name
  const char* olderLongKey = nullptr;
  std::int32_t longGroup = -1;  // in the long form; -1: the row's own
  bool inLongForm = true;
};

// One row. A field holds either text or a number; every number of an item fits a double unchanged.
struct ItemField {
  enItemField id;
  const char* name;
  enItemFieldKind kind;
  std::int32_t count;    // 1, or 3 for an indexed field
  double defaultNumber;  // of text: "" always
  enItemFieldComparison comparison;
  std::int32_t group;  // information group of the text form; 0 for any
  const char* key;     // in the text form
  enItemFieldWritten written;
  ItemTextOptions options;

  // Through the item's own properties, with their effects. The index is not looked at when count is 1; of
  // each pair the one that does not fit the kind is absent.
  const std::string& (*text)(const cHDItem& item, std::int32_t index);
  void (*setText)(cHDItem& item, std::int32_t index, std::string value);
  double (*number)(const cHDItem& item, std::int32_t index);
  void (*setNumber)(cHDItem& item, std::int32_t index,
                    double value);  // rounded and clamped to the field's type

  bool IsText() const { return kind == ifkText; }
};

// In the order of the item's interface; a field's place is its id.
std::span<const ItemField> ItemFields();

enum enItemExtra : std::int32_t {
#define QM_EXTRA(Name, ...) eix##Name,
#include "item/cHDItemFields.def"
};

// One row of the extras that go with timing marks.
struct ItemExtra {
  const char* name;
  const char* key;      // written with
  const char* readKey;  // read from
  const char* lineKey;  // of its hardware line in very old texts; null for none
  std::shared_ptr<cHDItemTimeExtra> (cHDItem::*get)(std::int32_t set) const;
};

// A row's place is its id.
std::span<const ItemExtra> ItemExtras();

// By its name, ignoring case; null for no field.
const ItemField* FindItemField(std::string_view name);

bool IsDefault(const cHDItem& item, const ItemField& field, std::int32_t index);
bool AllDefault(const cHDItem& item, const ItemField& field);  // at every index

// The value as plain text: numbers in the shortest form of their type, flags "1" and "0".
std::string FieldText(const cHDItem& item, const ItemField& field, std::int32_t index);

// Every field that takes part in comparison is equal.
bool SameFields(const cHDItem& first, const cHDItem& second);

}  // namespace qm
