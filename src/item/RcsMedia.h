#pragma once
#include <string_view>

namespace qm {

class cHDItem;

// The marks of set 1 from the element "<m:Media .../>" of a cart chunk's tag text, positions relative to the
// audio's start but those of start and end. Nothing without such an element.
void ReadRcsMedia(cHDItem& item, std::string_view tagText);

}  // namespace qm
