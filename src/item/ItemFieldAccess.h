#pragma once
#include <cstdint>
#include <string>
#include <string_view>

// An item's fields by name, for what people type and read. Names are compared ignoring case.
namespace qm {

class cHDItem;
struct ItemField;

// A field, and for an indexed one which of its three values.
struct ItemFieldPlace {
  const ItemField* field = nullptr;  // null: no such field
  std::int32_t index = 1;
};

// "Year", and for an indexed field "Extro2" or "Extro(2)"; "Extro" alone is that of set 1.
ItemFieldPlace FindItemFieldPlace(std::string_view name);

enum enSetFieldResult : std::int32_t { sfrSet = 0, sfrUnknownField = 1, sfrBadValue = 2 };

// Reads the text by the field's kind and sets it through the item's property, with its effects. Besides plain
// numbers, dates may be "yyyy-mm-dd", times and positions "h:mm:ss" or "m:ss.hh", flags "true" and "false",
// an end type its word. A text that is not wholly such a value, or out of the field's range, is refused and
// changes nothing.
enSetFieldResult SetFieldText(cHDItem& item, const ItemFieldPlace& place, std::string_view text);
enSetFieldResult SetFieldText(cHDItem& item, std::string_view name, std::string_view text);

// The value as plain text, "" for no field.
std::string FieldText(const cHDItem& item, std::string_view name);

}  // namespace qm
