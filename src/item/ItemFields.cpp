#include "item/ItemFields.h"

#include <limits>
#include <type_traits>

#include "item/cHDItem.h"
#include "kits/common/Numbers.h"
#include "kits/common/Text.h"

namespace qm {

namespace {

template <auto Get>
decltype(auto) ReadField(const cHDItem& item, std::int32_t index) {
  if constexpr (std::is_invocable_v<decltype(Get), const cHDItem&>)
    return (item.*Get)();
  else
    return (item.*Get)(index);
}

template <auto Set, class T>
void WriteField(cHDItem& item, std::int32_t index, T value) {
  if constexpr (std::is_invocable_v<decltype(Set), cHDItem&, T>)
    (item.*Set)(std::move(value));
  else
    (item.*Set)(index, std::move(value));
}

template <class T>
T Narrowed(double value) {
  if constexpr (std::is_same_v<T, bool>) {
    return value != 0;
  } else if constexpr (std::is_enum_v<T>) {
    return static_cast<T>(Narrowed<std::underlying_type_t<T>>(value));
  } else if constexpr (std::is_integral_v<T>) {
    using Range = std::numeric_limits<T>;
    return static_cast<T>(Limit<std::int64_t>(RoundToWhole(value), Range::min(), Range::max()));
  } else {
    using Range = std::numeric_limits<T>;
    return static_cast<T>(Limit<double>(value, Range::lowest(), Range::max()));
  }
}

template <class T, auto Get, auto Set>
constexpr ItemField WithAccess(ItemField field) {
  if constexpr (std::is_same_v<T, std::string>) {
    field.text = [](const cHDItem& item, std::int32_t index) -> const std::string& {
      return ReadField<Get>(item, index);
    };
    field.setText = [](cHDItem& item, std::int32_t index, std::string value) {
      WriteField<Set>(item, index, std::move(value));
    };
  } else {
    field.number = [](const cHDItem& item, std::int32_t index) {
      return static_cast<double>(ReadField<Get>(item, index));
    };
    field.setNumber = [](cHDItem& item, std::int32_t index, double value) {
      WriteField<Set, T>(item, index, Narrowed<T>(value));
    };
  }
  return field;
}

template <class T>
constexpr double DefaultNumber(T value) {
  if constexpr (std::is_pointer_v<T>)
    return 0;
  else
    return static_cast<double>(value);
}

// The groups of the table.
constexpr std::int32_t kAny = 0, kCaptions = hiaCaptions, kCopyright = hiaCopyright, kPictures = hiaPictures,
                       kTiming = hiaTiming;

#define QM_ROW(Count, Name, Kind, Default, Comparison, Group, Key, Written, ...)             \
  WithAccess<item_field::Kind, &cHDItem::Name, &cHDItem::Set##Name>({eif##Name,              \
                                                                     #Name,                  \
                                                                     ifk##Kind,              \
                                                                     Count,                  \
                                                                     DefaultNumber(Default), \
                                                                     ifc##Comparison,        \
                                                                     k##Group,               \
                                                                     Key,                    \
                                                                     ifw##Written,           \
                                                                     {__VA_ARGS__},          \
                                                                     nullptr,                \
                                                                     nullptr,                \
                                                                     nullptr,                \
                                                                     nullptr}),

constexpr ItemField kFields[] = {
#define QM_FIELD(...) QM_ROW(1, __VA_ARGS__)
#define QM_FIELDS(...) QM_ROW(3, __VA_ARGS__)
#include "item/cHDItemFields.def"
};

constexpr ItemExtra kExtras[] = {
#define QM_EXTRA(Name, Key, ReadKey, LineKey) {#Name, Key, ReadKey, LineKey, &cHDItem::Name},
#include "item/cHDItemFields.def"
};

bool SameValue(const cHDItem& first, const cHDItem& second, const ItemField& field, std::int32_t index) {
  if (field.IsText()) return field.text(first, index) == field.text(second, index);
  return field.number(first, index) == field.number(second, index);
}

}  // namespace

std::span<const ItemField> ItemFields() {
  return kFields;
}

std::span<const ItemExtra> ItemExtras() {
  return kExtras;
}

const ItemField* FindItemField(std::string_view name) {
  for (const ItemField& field : kFields)
    if (EqualIgnoringCase(field.name, name)) return &field;
  return nullptr;
}

bool IsDefault(const cHDItem& item, const ItemField& field, std::int32_t index) {
  return field.IsText() ? field.text(item, index).empty() : field.number(item, index) == field.defaultNumber;
}

bool AllDefault(const cHDItem& item, const ItemField& field) {
  for (std::int32_t index = 1; index <= field.count; ++index)
    if (!IsDefault(item, field, index)) return false;
  return true;
}

std::string FieldText(const cHDItem& item, const ItemField& field, std::int32_t index) {
  if (field.IsText()) return field.text(item, index);
  const double value = field.number(item, index);
  if (field.kind == ifkSingle || field.kind == ifkTime) return NumberText(static_cast<float>(value));
  return NumberText(static_cast<std::int32_t>(value));
}

bool SameFields(const cHDItem& first, const cHDItem& second) {
  for (const ItemField& field : kFields) {
    if (field.comparison == ifcApart) continue;
    for (std::int32_t index = 1; index <= field.count; ++index)
      if (!SameValue(first, second, field, index)) return false;
  }
  return true;
}

}  // namespace qm
