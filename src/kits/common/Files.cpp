#include "kits/common/Files.h"

#include <system_error>

#include "kits/common/Descriptor.h"

namespace qm {

namespace fs = std::filesystem;

std::int64_t FileLength(std::string_view path) {
  std::error_code error;
  const std::uintmax_t length = fs::file_size(NativePath(path), error);
  return error ? -1 : static_cast<std::int64_t>(length);
}

bool FileExists(std::string_view path) {
  std::error_code error;
  const fs::file_status status = fs::status(NativePath(path), error);
  return fs::exists(status) && !fs::is_directory(status);
}

bool FolderExists(std::string_view path) {
  std::error_code error;
  return fs::is_directory(NativePath(path), error);
}

bool MakeFolder(std::string_view path) {
  std::error_code error;
  fs::create_directories(NativePath(path), error);
  return FolderExists(path);
}

bool DeleteFile(std::string_view path) {
  const fs::path native = NativePath(path);
  std::error_code error;
  if (fs::is_directory(fs::symlink_status(native, error))) return false;
  fs::remove(native, error);
  return fs::symlink_status(native, error).type() == fs::file_type::not_found;
}

bool ReadWholeFile(std::string_view path, std::string& contents) try {
  const Descriptor file(NativePath(path), O_RDONLY);
  std::string read;
  if (!file.ReadAll(read)) return false;
  contents = std::move(read);
  return true;
} catch (const std::exception&) {  // a file larger than the memory
  return false;
}

bool AppendToFile(std::string_view path, std::string_view contents) {
  Descriptor file(NativePath(path), O_WRONLY | O_CREAT | O_APPEND, 0666);
  return file.WriteAll(contents) && file.Close();
}

}  // namespace qm
