#include "item/RiffFile.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "kits/common/Descriptor.h"
#include "kits/sound/AudioFileBytes.h"

namespace qm {
namespace {

// Calls until all bytes are through; the count of those that are.
template <class Call>
std::size_t Transfer(std::size_t bytes, Call call) {
  std::size_t done = 0;
  while (done < bytes) {
    const ssize_t part = call(done);
    if (part < 0 && errno == EINTR) continue;
    if (part <= 0) break;
    done += static_cast<std::size_t>(part);
  }
  return done;
}

}  // namespace

RiffFile::RiffFile() = default;
RiffFile::~RiffFile() = default;

bool RiffFile::Open(const std::string& path, enRiffAccess access) {
  if (path.find('\0') != std::string::npos) return false;
  // Without O_NONBLOCK a named pipe would hold the caller until somebody writes to it.
  auto file =
      std::make_unique<Descriptor>(AudioFilePath(path), (access == rfaRead ? O_RDONLY : O_RDWR) | O_NONBLOCK);
  struct stat status {};
  if (!file->IsOpen() || ::fstat(file->Number(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  m_size = status.st_size;
  m_file = std::move(file);
  return true;
}

std::size_t RiffFile::ReadAt(std::int64_t position, void* out, std::size_t bytes) const {
  if (!m_file || position < 0 || position >= m_size) return 0;
  bytes =
      static_cast<std::size_t>(std::min<std::int64_t>(static_cast<std::int64_t>(bytes), m_size - position));
  return Transfer(bytes, [&](std::size_t done) {
    return ::pread(m_file->Number(), static_cast<char*>(out) + done, bytes - done,
                   position + static_cast<std::int64_t>(done));
  });
}

bool RiffFile::WriteAt(std::int64_t position, std::string_view bytes) {
  if (!m_file || position < 0 || position > m_size) return false;
  const std::size_t written = Transfer(bytes.size(), [&](std::size_t done) {
    return ::pwrite(m_file->Number(), bytes.data() + done, bytes.size() - done,
                    position + static_cast<std::int64_t>(done));
  });
  m_size = std::max(m_size, position + static_cast<std::int64_t>(written));
  return written == bytes.size();
}

bool RiffFile::Flush() {
  return m_file && m_file->Flush();
}

}  // namespace qm
