#include "kits/common/Descriptor.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

namespace qm {
namespace {

// A system call again when a signal interrupted it.
template <class Call>
auto Uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

}  // namespace

Descriptor::Descriptor(const std::filesystem::path& path, int flags, mode_t mode)
    : m_file(Uninterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, mode); })) {}

Descriptor::~Descriptor() {
  Close();
}

bool Descriptor::ReadAll(std::string& contents) const {
  std::array<char, 16384> block;
  for (;;) {
    const ssize_t count = Uninterrupted([&] { return ::read(m_file, block.data(), block.size()); });
    if (count <= 0) return count == 0;
    contents.append(block.data(), static_cast<std::size_t>(count));
  }
}

bool Descriptor::WriteAll(std::string_view contents) const {
  while (!contents.empty()) {
    const ssize_t count = Uninterrupted([&] { return ::write(m_file, contents.data(), contents.size()); });
    if (count < 0) return false;
    contents.remove_prefix(static_cast<std::size_t>(count));
  }
  return IsOpen();
}

bool Descriptor::Flush() const {
  return Uninterrupted([&] { return ::fsync(m_file); }) == 0;
}

bool Descriptor::Close() {
  const int file = std::exchange(m_file, -1);
  return file >= 0 && ::close(file) == 0;
}

}  // namespace qm
