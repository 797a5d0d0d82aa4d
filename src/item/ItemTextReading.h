#pragma once
#include <cstdint>
#include <string>
#include <string_view>

// Reading the text form of an item, for its own use. Text is what the pairs were found in: some keys are
// chosen by words that stand anywhere in it.
namespace qm {

class TagIndex;
class cHDItem;

// "AudSt2"; the key alone for what there is only one of.
std::string IndexedKey(std::string_view key, std::int32_t index, std::int32_t count = 3);

void ReadShortItemText(cHDItem& item, const TagIndex& tags, std::string_view text);

// The form before 3.005011, with the fields' names in full.
void ReadLongItemText(cHDItem& item, const TagIndex& tags, std::string_view text);

}  // namespace qm
