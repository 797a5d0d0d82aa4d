#pragma once
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "kits/sound/AudioFileReader.h"

namespace qm {

// The path that the system is asked for: as it stands, or with "\" turned into "/" where nothing has that
// name.
std::string AudioFilePath(const std::string& path);

// The bytes of a file opened for reading, read at any place. The size is that at opening.
class AudioFileBytes {
 public:
  AudioFileBytes() = default;
  // With a window of that many bytes, for a look at a few places.
  explicit AudioFileBytes(std::size_t windowBytes) : m_windowBytes(windowBytes) {}
  ~AudioFileBytes();
  AudioFileBytes(const AudioFileBytes&) = delete;
  AudioFileBytes& operator=(const AudioFileBytes&) = delete;

  AudioFileError Open(const std::string& path);
  std::int64_t Size() const { return m_size; }
  // The system has failed to read bytes that were there at opening.
  bool Failed() const { return m_failed; }
  void ForgetFailure() { m_failed = false; }

  // Fewer bytes than asked for only at the end, or when the system failed to read.
  std::size_t ReadAt(std::int64_t position, void* out, std::size_t bytes) const;

  // `bytes` bytes (at most half the window) that stay in place until the next call; null where the file has
  // fewer.
  const std::uint8_t* View(std::int64_t position, std::size_t bytes);

 private:
  const std::size_t m_windowBytes = 1 << 17;
  int m_descriptor = -1;
  std::int64_t m_size = 0;
  mutable bool m_failed = false;
  std::vector<std::uint8_t> m_window;
  std::int64_t m_windowStart = 0;
  std::size_t m_windowFilled = 0;
};

}  // namespace qm
