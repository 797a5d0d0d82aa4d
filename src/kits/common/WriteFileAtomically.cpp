#include <unistd.h>

#include <system_error>

#include "kits/common/Descriptor.h"
#include "kits/common/Files.h"
#include "kits/common/Numbers.h"

namespace qm {

namespace fs = std::filesystem;

namespace {

// The file that a chain of links ends at, which need not exist yet; empty for links in a circle.
fs::path LinkTarget(fs::path path) {
  constexpr int kLongestChain = 40;
  std::error_code error;
  for (int links = 0; links < kLongestChain; ++links) {
    if (!fs::is_symlink(fs::symlink_status(path, error))) return path;
    const fs::path target = fs::read_symlink(path, error);
    if (error) return {};
    path = path.parent_path() / target;
  }
  return {};
}

// Gives the open file the access of the one it will replace. False when another may not do what he could do
// before, or more.
bool TakeOverAccess(const Descriptor& file, const struct stat& old) {
  struct stat now {};
  if (::fstat(file.Number(), &now) != 0) return false;
  const bool sameGroup =
      now.st_gid == old.st_gid || ::fchown(file.Number(), static_cast<uid_t>(-1), old.st_gid) == 0;
  // A group that could not be kept must not hand its rights to another one.
  const mode_t mode = sameGroup ? old.st_mode : old.st_mode & ~static_cast<mode_t>(S_IRWXG);
  return ::fchmod(file.Number(), mode & 07777) == 0;
}

bool WriteBeside(const fs::path& beside, const fs::path& target, std::string_view contents) {
  struct stat old {};
  const bool replaces = ::stat(target.c_str(), &old) == 0;
  // Renaming asks for the folder's permission alone; a file made read-only is meant to stay as it is.
  if (replaces && (!S_ISREG(old.st_mode) || ::access(target.c_str(), W_OK) != 0)) return false;
  Descriptor file(beside, O_WRONLY | O_CREAT | O_EXCL, 0666);
  if (!file.IsOpen()) return false;
  const bool written =
      (!replaces || TakeOverAccess(file, old)) && file.WriteAll(contents) && file.Flush() && file.Close();
  if (written && ::rename(beside.c_str(), target.c_str()) == 0) return true;
  ::unlink(beside.c_str());
  return false;
}

}  // namespace

bool WriteFileAtomically(std::string_view path, std::string_view contents) try {
  const fs::path target = LinkTarget(NativePath(path));
  if (!target.has_filename()) return false;
  const fs::path folder = target.has_parent_path() ? target.parent_path() : ".";
  if (!WriteBeside(folder / (".qm-" + NewGuid()), target, contents)) return false;
  // Until the folder is on disk as well, a power cut may bring the old file back; the replacement itself
  // stands.
  Descriptor(folder, O_RDONLY | O_DIRECTORY).Flush();
  return true;
} catch (const std::exception&) {
  return false;
}

}  // namespace qm
