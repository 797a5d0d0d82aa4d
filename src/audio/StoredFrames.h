#pragma once
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "kits/sound/AudioFileSamples.h"

namespace qm {

class AudioFileBytes;

// The frames of a WAV file whose samples lie in it one by one, as they are stored: for work that needs so few
// of them that decoding them all would be its greatest cost. One thread at a time.
class StoredFrames {
 public:
  // Null when the file is no such WAV file.
  static std::unique_ptr<StoredFrames> Open(const std::string& path);
  ~StoredFrames();

  std::size_t Channels() const { return m_channels; }
  std::size_t FrameBytes() const { return m_channels * BytesOf(m_coding); }
  SampleCoding Coding() const { return m_coding; }

  // Up to `frames` frames from frame `start` on; fewer only at the end, or when the system fails to read.
  std::size_t ReadAt(std::int64_t start, std::uint8_t* stored, std::size_t frames) const;

 private:
  StoredFrames();

  std::unique_ptr<AudioFileBytes> m_file;
  SampleCoding m_coding{};
  std::size_t m_channels = 0;
  std::int64_t m_dataStart = 0, m_length = 0;  // bytes; frames
};

}  // namespace qm
