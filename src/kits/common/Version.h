#pragma once
#include <string>

namespace qm {

// The running library's "major.minor.revision".
std::string LibraryVersion();

}  // namespace qm
