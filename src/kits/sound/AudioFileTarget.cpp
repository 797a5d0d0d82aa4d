#include "kits/sound/AudioFileTarget.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "kits/common/Numbers.h"
#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/cAudioFile.h"

namespace qm {

namespace fs = std::filesystem;

AudioFileTarget::~AudioFileTarget() {
  if (m_file && m_place == AudioFilePlace::beside) ::unlink(m_beside.c_str());
}

AudioFileError AudioFileTarget::Fail(int systemError) {
  return m_error = {afeCannotWrite,
                    "cannot write '" + m_path + "': " + std::generic_category().message(systemError)};
}

AudioFileError AudioFileTarget::Create(const std::string& path, AudioFilePlace place) {
  m_path = path.c_str();
  m_place = place;
  if (path.find('\0') != std::string::npos) return Fail(EINVAL);
  std::error_code ignored;
  m_target = AudioFilePath(path);
  // What a link stands for is replaced, not the link.
  if (fs::exists(m_target, ignored)) m_target = fs::canonical(m_target, ignored);
  const bool replaces = fs::exists(m_target, ignored);
  if (replaces && fs::is_directory(m_target, ignored)) return Fail(EISDIR);
  // Renaming asks for the folder's permission alone; a file made read-only is meant to stay as it is.
  if (replaces && ::access(m_target.c_str(), W_OK) != 0) return Fail(errno);
  if (replaces && !fs::is_regular_file(m_target, ignored)) return Fail(EINVAL);
  if (!m_target.has_filename()) return Fail(ENOENT);
  return OpenFile(replaces);
}

AudioFileError AudioFileTarget::OpenFile(bool replaces) {
  const bool beside = m_place == AudioFilePlace::beside;
  m_beside = beside ? m_target.parent_path() / (".qm-" + NewGuid()) : m_target;
  m_file = std::make_unique<Descriptor>(m_beside, O_RDWR | O_CREAT | (beside ? O_EXCL : O_TRUNC), 0666);
  if (!m_file->IsOpen()) {
    m_file.reset();
    return Fail(errno);
  }
  std::error_code ignored;
  if (replaces && beside) fs::permissions(m_beside, fs::status(m_target, ignored).permissions(), ignored);
  return {};
}

// 0, or the system's error.
int AudioFileTarget::Put(std::int64_t position, const void* bytes, std::size_t count) const {
  for (std::size_t done = 0; done < count;) {
    ssize_t put = ::pwrite(m_file->Number(), static_cast<const char*>(bytes) + done, count - done,
                           position + static_cast<std::int64_t>(done));
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) return errno;
    done += static_cast<std::size_t>(put);
  }
  return 0;
}

bool AudioFileTarget::WriteAt(std::int64_t position, const void* bytes, std::size_t count) {
  if (!m_file || m_error) return false;
  if (const int error = Put(position, bytes, count)) return Fail(error), false;
  m_size = std::max(m_size, position + static_cast<std::int64_t>(count));
  return true;
}

bool AudioFileTarget::Rewrite(std::int64_t position, const void* bytes, std::size_t count) {
  if (!m_file || position + static_cast<std::int64_t>(count) > m_size) return false;
  const int error = Put(position, bytes, count);
  if (error != 0 && !m_error) Fail(error);
  return error == 0;
}

bool AudioFileTarget::Flush() {
  if (!m_file || m_error) return false;
  return m_file->Flush() || (Fail(errno), false);
}

std::size_t AudioFileTarget::ReadAt(std::int64_t position, void* bytes, std::size_t count) const {
  ssize_t got = m_file ? ::pread(m_file->Number(), bytes, count, position) : -1;
  return got > 0 ? static_cast<std::size_t>(got) : 0;
}

AudioFileError AudioFileTarget::Commit() {
  if (m_error) return m_error;
  if (!m_file) return Fail(EBADF);
  if (!m_file->Flush() || !m_file->Close()) return Fail(errno);
  if (m_beside != m_target && ::rename(m_beside.c_str(), m_target.c_str()) != 0) return Fail(errno);
  m_file.reset();
  const fs::path folder = m_target.has_parent_path() ? m_target.parent_path() : ".";
  Descriptor(folder, O_RDONLY | O_DIRECTORY).Flush();
  return {};
}

}  // namespace qm
