#pragma once
#include <string_view>

// Display names of the texts in a RIFF file; "" for an id that is not known. Ids are compared exactly.
namespace qm {

// Of a LIST INFO sub-chunk.
std::string_view ListTagName(std::string_view id);

// Of an ID3 frame.
std::string_view Id3FrameName(std::string_view id);

}  // namespace qm
