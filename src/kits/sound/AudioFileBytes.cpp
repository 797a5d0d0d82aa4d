#include "kits/sound/AudioFileBytes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "kits/common/Files.h"
#include "kits/sound/cAudioFile.h"

namespace qm {

namespace {

AudioFileError CannotOpen(const std::string& path, int systemError) {
  return {afeCannotOpen, "cannot open '" + path + "': " + std::generic_category().message(systemError)};
}

}  // namespace

std::string AudioFilePath(const std::string& path) {
  struct stat status;
  if (path.find('\\') == std::string::npos || lstat(path.c_str(), &status) == 0) return path;
  return NativePath(path).string();
}

AudioFileBytes::~AudioFileBytes() {
  if (m_descriptor >= 0) close(m_descriptor);
}

AudioFileError AudioFileBytes::Open(const std::string& path) {
  if (path.find('\0') != std::string::npos) return CannotOpen(path.c_str(), EINVAL);
  // Without O_NONBLOCK a named pipe would hold the caller until somebody writes to it.
  m_descriptor = open(AudioFilePath(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (m_descriptor < 0) return CannotOpen(path, errno);
  struct stat status;
  if (fstat(m_descriptor, &status) != 0) return CannotOpen(path, errno);
  if (S_ISDIR(status.st_mode)) return {afeNotAFile, "'" + path + "' is a folder"};
  if (!S_ISREG(status.st_mode)) return {afeNotAFile, "'" + path + "' is not a file"};
  if (status.st_size == 0) return {afeEmpty, "'" + path + "' is empty"};
  m_size = status.st_size;
  m_window.resize(m_windowBytes);
  return {};
}

std::size_t AudioFileBytes::ReadAt(std::int64_t position, void* out, std::size_t bytes) const {
  if (position < 0 || position >= m_size) return 0;
  bytes =
      static_cast<std::size_t>(std::min<std::int64_t>(static_cast<std::int64_t>(bytes), m_size - position));
  std::size_t done = 0;
  while (done < bytes) {
    ssize_t got = pread(m_descriptor, static_cast<char*>(out) + done, bytes - done,
                        position + static_cast<std::int64_t>(done));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) {
      m_failed = true;
      break;
    }
    done += static_cast<std::size_t>(got);
  }
  return done;
}

const std::uint8_t* AudioFileBytes::View(std::int64_t position, std::size_t bytes) {
  std::int64_t windowEnd = m_windowStart + static_cast<std::int64_t>(m_windowFilled);
  if (position < m_windowStart || position + static_cast<std::int64_t>(bytes) > windowEnd) {
    m_windowStart = position;
    m_windowFilled = ReadAt(position, m_window.data(), m_window.size());
    if (bytes > m_windowFilled) return nullptr;
  }
  return m_window.data() + (position - m_windowStart);
}

}  // namespace qm
