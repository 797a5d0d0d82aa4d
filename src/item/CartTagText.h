#pragma once
#include <string>
#include <string_view>

// The tag text of a cart chunk: elements "<NAME>value</NAME>", 8-bit.
namespace qm {

class cHDItem;

// What stands in the first element of that name, ignoring case, or with a double quote at its start, up to
// the next one; "" for no such element.
std::string CartElement(std::string_view text, std::string_view name);

// Replaces the item's fields; an element that is absent empties its own, but colours stay.
void ReadCartTagText(cHDItem& item, std::string_view text);

// Every element that says something.
std::string CartTagText(const cHDItem& item);

}  // namespace qm
