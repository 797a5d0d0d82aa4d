#include "cli/ItemArgument.h"

#include "item/ItemFieldAccess.h"
#include "item/cHDItem.h"
#include "kits/common/Files.h"

namespace qm::cli {

namespace {

constexpr std::string_view kFieldsBegin = "::";

// What stands before the "=" at the start of a text; "" without one.
std::string_view NameBefore(std::string_view text) {
  const auto equals = text.find('=');
  return equals == text.npos ? std::string_view() : text.substr(0, equals);
}

bool BeginsWithField(std::string_view text) {
  return FindItemFieldPlace(NameBefore(text)).field != nullptr;
}

// Position of the last "::" that `holds` agrees to, npos for none.
template <class Holds>
std::size_t LastBegin(std::string_view text, Holds holds) {
  for (auto at = text.rfind(kFieldsBegin); at != text.npos && at > 0; at = text.rfind(kFieldsBegin, at - 1))
    if (holds(at)) return at;
  return text.npos;
}

void SplitFields(std::string_view text, ItemArgument& argument) {
  while (!text.empty()) {
    auto end = text.find(',');
    while (end != text.npos && !BeginsWithField(text.substr(end + 1))) end = text.find(',', end + 1);
    const std::string_view pair = text.substr(0, end);
    const std::string_view name = NameBefore(pair);
    argument.fields.emplace_back(name, pair.substr(name.size() + 1));
    text = end == text.npos ? std::string_view() : text.substr(end + 1);
  }
}

std::string NoFieldText(std::string_view name) {
  return "there is no field '" + std::string(name) + "'";
}

// An existing file with something behind it that was meant as a field.
bool NamesUnknownField(std::string_view text, std::string& errorText) {
  const auto at = LastBegin(text, [&](std::size_t begin) { return FileExists(text.substr(0, begin)); });
  if (at == text.npos) return false;
  const std::string_view rest = text.substr(at + kFieldsBegin.size());
  const std::string_view name = NameBefore(rest);
  errorText = name.empty() ? "'" + std::string(rest) + "' behind '::' is no Field=value" : NoFieldText(name);
  return true;
}

bool CheckValues(const ItemArgument& argument, std::string& errorText) {
  cHDItem scratch;
  for (const auto& [name, value] : argument.fields) {
    if (SetFieldText(scratch, name, value) == sfrSet) continue;
    errorText = "'" + value + "' is no value for the field " + name;
    return false;
  }
  return true;
}

}  // namespace

bool ParseItemArgument(std::string_view text, ItemArgument& argument, std::string& errorText) {
  argument = {std::string(text), {}};
  if (FileExists(text)) return true;
  const auto at = LastBegin(
      text, [&](std::size_t begin) { return BeginsWithField(text.substr(begin + kFieldsBegin.size())); });
  if (at == text.npos) return !NamesUnknownField(text, errorText);
  argument.path = text.substr(0, at);
  SplitFields(text.substr(at + kFieldsBegin.size()), argument);
  return CheckValues(argument, errorText);
}

bool ParseItemField(std::string_view text, ItemArgument& argument, std::string& errorText) {
  if (!BeginsWithField(text)) {
    errorText = NoFieldText(NameBefore(text));
    return false;
  }
  const std::string_view name = NameBefore(text);
  argument.fields.emplace_back(name, text.substr(name.size() + 1));
  return CheckValues(argument, errorText);
}

void ApplyFields(const ItemArgument& argument, cHDItem& item) {
  for (const auto& [name, value] : argument.fields) SetFieldText(item, name, value);
}

}  // namespace qm::cli
