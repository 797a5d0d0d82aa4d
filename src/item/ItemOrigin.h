#pragma once
#include <string>

namespace qm {

// Who saves, and where: "user on computer".
std::string OriginOfThisUser();

}  // namespace qm
