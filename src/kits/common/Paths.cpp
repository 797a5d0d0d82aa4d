#include <algorithm>
#include <cstdlib>

#include "kits/common/Files.h"
#include "kits/common/Numbers.h"

namespace qm {
namespace {

constexpr std::string_view kSeparators = "/\\";

struct Taken {
  std::string_view folder;
  std::string_view name;
};

Taken TakeApart(std::string_view path) {
  const std::size_t last = path.find_last_of(kSeparators);
  if (last == std::string_view::npos) return {{}, path};
  const std::size_t end = path.find_last_not_of(kSeparators, last);
  // Nothing but separators in front of the name: the root, which must not become "no folder".
  return {path.substr(0, end == std::string_view::npos ? last + 1 : end + 1), path.substr(last + 1)};
}

// Position of the point that starts the extension, npos without one.
std::size_t ExtensionPoint(std::string_view name) {
  const std::size_t start = name.find_first_not_of('.');
  const std::size_t point = name.rfind('.');
  const bool starts = start != std::string_view::npos && point != std::string_view::npos && point > start;
  return starts ? point : std::string_view::npos;
}

// An absolute path in the environment, else "".
std::string FolderFromEnvironment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && value[0] == '/' ? value : "";
}

}  // namespace

std::filesystem::path NativePath(std::string_view path) {
  std::string native(path);
  for (char& c : native) {
    if (c == '\\') c = '/';
  }
  return std::filesystem::path(std::move(native));
}

std::string FolderOf(std::string_view path) {
  return std::string(TakeApart(path).folder);
}

std::string FileNameOf(std::string_view path) {
  return std::string(TakeApart(path).name);
}

std::string BaseNameOf(std::string_view path) {
  const std::string_view name = TakeApart(path).name;
  return std::string(name.substr(0, ExtensionPoint(name)));
}

std::string ExtensionOf(std::string_view path) {
  const std::string_view name = TakeApart(path).name;
  const std::size_t point = ExtensionPoint(name);
  return point == std::string_view::npos ? std::string() : std::string(name.substr(point + 1));
}

std::string JoinPath(std::string_view folder, std::string_view name) {
  if (folder.empty() || name.empty()) return std::string(folder.empty() ? name : folder);
  const std::size_t end = folder.find_last_not_of(kSeparators);
  const std::size_t start = std::min(name.find_first_not_of(kSeparators), name.size());
  std::string path(folder.substr(0, end == std::string_view::npos ? 0 : end + 1));
  // A network's root keeps both of its separators.
  if (end == std::string_view::npos && folder.size() > 1) path = "/";
  return path.append("/").append(name.substr(start));
}

std::string TemporaryFolder() {
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
  return error ? "/tmp" : folder.string();
}

std::string TemporaryFileName(std::string_view extension) {
  if (extension.starts_with('.')) extension.remove_prefix(1);
  const std::string identity = NewGuid();
  std::string name = "qm-" + identity.substr(1, identity.size() - 2);
  if (!extension.empty()) name.append(".").append(extension);
  return JoinPath(TemporaryFolder(), name);
}

std::string UserFolder(enUserFolder folder) {
  const bool state = folder == eufState;
  std::string base = FolderFromEnvironment(state ? "XDG_STATE_HOME" : "XDG_CONFIG_HOME");
  if (base.empty()) {
    const std::string home = FolderFromEnvironment("HOME");
    if (home.empty()) return {};
    base = JoinPath(home, state ? ".local/state" : ".config");
  }
  return JoinPath(base, "quillmere");
}

}  // namespace qm
