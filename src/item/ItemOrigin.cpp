#include "item/ItemOrigin.h"

#include <pwd.h>
#include <unistd.h>

#include <array>

namespace qm {

std::string OriginOfThisUser() {
  std::array<char, 4096> storage;
  passwd record{};
  passwd* found = nullptr;
  const bool known = getpwuid_r(geteuid(), &record, storage.data(), storage.size(), &found) == 0 && found;
  std::array<char, 256> computer{};
  gethostname(computer.data(), computer.size() - 1);
  return std::string(known ? record.pw_name : "") + " on " + computer.data();
}

}  // namespace qm
