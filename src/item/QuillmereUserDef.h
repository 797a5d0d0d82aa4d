#pragma once
#include <string>
#include <string_view>

// Our own convention for the field UserDef of a cart chunk: pairs of colours and ending.
namespace qm {

class cHDItem;

// Only "Ends" and "Fades" are endings when read; any other, and none, is ietNonSpecific.
void ReadUserDef(cHDItem& item, std::string_view text);
std::string UserDefOf(const cHDItem& item);

}  // namespace qm
