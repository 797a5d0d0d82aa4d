#pragma once
#include <fcntl.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace qm {

// An open file of the system's, closed with the object. For the kits' own use.
class Descriptor {
 public:
  Descriptor(const std::filesystem::path& path, int flags, mode_t mode = 0);
  ~Descriptor();
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  bool IsOpen() const { return m_file >= 0; }
  int Number() const { return m_file; }

  // Appends what is left to read; false on an error, with what was read until then.
  bool ReadAll(std::string& contents) const;
  bool WriteAll(std::string_view contents) const;
  // To the disk itself.
  bool Flush() const;
  // False when the system reports a late failure of writing.
  bool Close();

 private:
  int m_file = -1;
};

}  // namespace qm
