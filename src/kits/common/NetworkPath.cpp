#include <linux/magic.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>

#include <algorithm>
#include <sstream>

#include "kits/common/Descriptor.h"
#include "kits/common/Files.h"

namespace qm {

namespace fs = std::filesystem;

namespace {

// File system types of statfs(2) that lie on another computer.
constexpr std::uint32_t kNetworkTypes[] = {
    NFS_SUPER_MAGIC, SMB_SUPER_MAGIC, SMB2_SUPER_MAGIC, CIFS_SUPER_MAGIC, V9FS_MAGIC,
    AFS_SUPER_MAGIC, AFS_FS_MAGIC,    CEPH_SUPER_MAGIC, CODA_SUPER_MAGIC,
};

// All file systems in user space share one type; only the table of mounts tells these apart.
constexpr std::string_view kNetworkInUserSpace[] = {
    "fuse.sshfs",     "fuse.rclone", "fuse.glusterfs", "fuse.smbnetfs",
    "fuse.curlftpfs", "fuse.davfs",  "fuse.s3fs",      "fuse.ceph",
};

fs::path NearestExisting(fs::path path) {
  std::error_code error;
  if (path.is_relative()) path = fs::current_path(error) / path;
  while (!fs::exists(path, error) && path.has_relative_path()) path = path.parent_path();
  return path;
}

}  // namespace

std::string MountedType(std::string_view mountTable, std::string_view device) {
  std::istringstream lines{std::string(mountTable)};
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string identity, parent, number, word, type;
    words >> identity >> parent >> number;
    if (number != device) continue;
    while (words >> word && word != "-") {
    }
    words >> type;
    return type;
  }
  return {};
}

bool IsNetworkPath(std::string_view path) try {
  const auto separates = [](char c) { return c == '/' || c == '\\'; };
  if (path.size() >= 2 && separates(path[0]) && separates(path[1])) return true;
  const fs::path existing = NearestExisting(NativePath(path));
  struct statfs system {};
  struct stat file {};
  if (::statfs(existing.c_str(), &system) != 0 || ::stat(existing.c_str(), &file) != 0) return false;
  const auto type = static_cast<std::uint32_t>(system.f_type);
  if (type != FUSE_SUPER_MAGIC) return std::ranges::find(kNetworkTypes, type) != std::end(kNetworkTypes);
  std::string table;
  const std::string device = std::to_string(major(file.st_dev)) + ':' + std::to_string(minor(file.st_dev));
  if (!ReadWholeFile("/proc/self/mountinfo", table)) return false;
  return std::ranges::find(kNetworkInUserSpace, MountedType(table, device)) != std::end(kNetworkInUserSpace);
} catch (const std::exception&) {
  return false;
}

}  // namespace qm
