#include "item/ItemFieldAccess.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "item/ItemFields.h"
#include "item/cHDItem.h"
#include "kits/common/Dates.h"
#include "kits/common/Text.h"

namespace qm {

namespace {

// The number that the whole text is. Unlike ParseNumber this refuses what it does not understand.
std::optional<double> WholeTextNumber(std::string_view text) {
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) return std::nullopt;
  return value;
}

std::optional<double> DateNumber(std::string_view text) {
  const std::int32_t day = ParseDate(text);
  return day != 0 ? day : WholeTextNumber(text);
}

std::optional<double> SecondsNumber(std::string_view text) {
  if (text.find(':') == text.npos) return WholeTextNumber(text);
  const double seconds = TextToSeconds(text);
  // The reader's answer to a text that is no time is 0 as well.
  if (seconds == 0 && text.find_first_not_of("0:.") != text.npos) return std::nullopt;
  return seconds;
}

std::optional<double> FlagNumber(std::string_view text) {
  if (EqualIgnoringCase(text, "true")) return 1;
  if (EqualIgnoringCase(text, "false")) return 0;
  return WholeTextNumber(text);
}

std::optional<double> EndingNumber(std::string_view text) {
  const enItemEndType ending = EndTypeOfWord(text);
  const bool isWord =
      ending != ietNonSpecific || EqualIgnoringCase(text, EndTypeWord(ietNonSpecific, hedData));
  return isWord ? ending : WholeTextNumber(text);
}

// How a kind of number is read, and what its field can hold.
struct NumberKind {
  enItemFieldKind kind;
  std::optional<double> (*read)(std::string_view text);
  bool whole;
  double lowest, highest;
};

template <class T>
constexpr NumberKind Kind(enItemFieldKind kind, std::optional<double> (*read)(std::string_view)) {
  using Range = std::numeric_limits<T>;
  return {kind, read, Range::is_integer, static_cast<double>(Range::lowest()),
          static_cast<double>(Range::max())};
}

constexpr NumberKind kNumberKinds[] = {
    Kind<std::int16_t>(ifkWhole16, WholeTextNumber), Kind<std::int32_t>(ifkWhole32, WholeTextNumber),
    Kind<float>(ifkSingle, SecondsNumber),           Kind<std::int32_t>(ifkFlag, FlagNumber),
    Kind<std::int32_t>(ifkDate, DateNumber),         Kind<float>(ifkTime, SecondsNumber),
    Kind<std::int32_t>(ifkColour, WholeTextNumber),  Kind<std::int32_t>(ifkInformation, WholeTextNumber),
    Kind<std::int32_t>(ifkEnding, EndingNumber),
};

std::optional<double> ReadNumber(enItemFieldKind wanted, std::string_view text) {
  for (const NumberKind& kind : kNumberKinds) {
    if (kind.kind != wanted) continue;
    const std::optional<double> value = kind.read(text);
    if (!value || *value < kind.lowest || *value > kind.highest) return std::nullopt;
    if (kind.whole && *value != std::trunc(*value)) return std::nullopt;
    return value;
  }
  return std::nullopt;
}

// Takes the index off "Extro(2)" or "Extro2"; 0, with the name as it was, when it ends in none.
std::int32_t TakeIndex(std::string_view& name) {
  const bool closed = name.ends_with(')');
  std::string_view rest = closed ? name.substr(0, name.size() - 1) : name;
  if (rest.empty() || rest.back() < '1' || rest.back() > '3') return 0;
  const std::int32_t index = rest.back() - '0';
  rest.remove_suffix(1);
  if (closed != rest.ends_with('(')) return 0;
  if (closed) rest.remove_suffix(1);
  name = rest;
  return index;
}

}  // namespace

ItemFieldPlace FindItemFieldPlace(std::string_view name) {
  name = Trim(name);
  if (const ItemField* field = FindItemField(name)) return {field, 1};
  const std::int32_t index = TakeIndex(name);
  const ItemField* field = index != 0 ? FindItemField(name) : nullptr;
  if (!field || field->count < index) return {};
  return {field, index};
}

enSetFieldResult SetFieldText(cHDItem& item, const ItemFieldPlace& place, std::string_view text) {
  if (!place.field || place.index < 1 || place.index > place.field->count) return sfrUnknownField;
  if (place.field->IsText()) {
    place.field->setText(item, place.index, std::string(text));
    return sfrSet;
  }
  const std::optional<double> value = ReadNumber(place.field->kind, Trim(text));
  if (!value) return sfrBadValue;
  place.field->setNumber(item, place.index, *value);
  return sfrSet;
}

enSetFieldResult SetFieldText(cHDItem& item, std::string_view name, std::string_view text) {
  return SetFieldText(item, FindItemFieldPlace(name), text);
}

std::string FieldText(const cHDItem& item, std::string_view name) {
  const ItemFieldPlace place = FindItemFieldPlace(name);
  return place.field ? FieldText(item, *place.field, place.index) : "";
}

}  // namespace qm
