#pragma once
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "kits/common/Descriptor.h"
#include "kits/sound/AudioFileWriter.h"

namespace qm {

// A file growing beside the path whose place it takes at Commit; destroyed before, it leaves what was there.
// One that grows at its path replaces what was there at once, and stays.
class AudioFileTarget {
 public:
  AudioFileTarget() = default;
  ~AudioFileTarget();
  AudioFileTarget(const AudioFileTarget&) = delete;
  AudioFileTarget& operator=(const AudioFileTarget&) = delete;

  AudioFileError Create(const std::string& path, AudioFilePlace place = AudioFilePlace::beside);
  // False when the system refuses; Error() says why.
  bool WriteAt(std::int64_t position, const void* bytes, std::size_t count);
  // The same for bytes that are there already, also after an error: a full disk takes them.
  bool Rewrite(std::int64_t position, const void* bytes, std::size_t count);
  std::size_t ReadAt(std::int64_t position, void* bytes, std::size_t count) const;
  std::int64_t Size() const { return m_size; }
  // The growing file itself, for what can only write to a path.
  const std::filesystem::path& WorkingPath() const { return m_beside; }
  // What was written is on the disk itself.
  bool Flush();
  AudioFileError Commit();
  const AudioFileError& Error() const { return m_error; }

 private:
  AudioFileError Fail(int systemError);
  AudioFileError OpenFile(bool replaces);
  int Put(std::int64_t position, const void* bytes, std::size_t count) const;

  std::string m_path;  // as given, for messages
  std::filesystem::path m_target, m_beside;
  std::unique_ptr<Descriptor> m_file;
  AudioFilePlace m_place = AudioFilePlace::beside;
  std::int64_t m_size = 0;
  AudioFileError m_error;
};

}  // namespace qm
