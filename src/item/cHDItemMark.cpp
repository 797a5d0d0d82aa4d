#include "item/cHDItemMark.h"

#include "kits/common/Numbers.h"

namespace qm {

cHDItemMark::cHDItemMark() : m_guid(NewGuid()) {}

}  // namespace qm
