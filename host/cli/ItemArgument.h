#pragma once
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qm {
class cHDItem;
}

namespace qm::cli {

// "PATH" or "PATH::Field=value,Field=value" taken apart.
struct ItemArgument {
  std::string path;
  std::vector<std::pair<std::string, std::string>> fields;  // name and value, in the order given
};

// A file that has the whole text as its name is meant as it stands. Else the fields begin at the last "::"
// with the name of a field and "=" behind it, and each at a comma likewise, so that paths and values may hold
// both. False, with one line in errorText, for a field that does not exist or a value it cannot take.
bool ParseItemArgument(std::string_view text, ItemArgument& argument, std::string& errorText);

// "Field=value" alone, added to the argument. False, with one line in errorText, as above.
bool ParseItemField(std::string_view text, ItemArgument& argument, std::string& errorText);

// Sets the fields, in their order.
void ApplyFields(const ItemArgument& argument, cHDItem& item);

}  // namespace qm::cli
