#include "kits/common/Version.h"

namespace qm {

std::string LibraryVersion() {
  return QM_VERSION;
}

}  // namespace qm
