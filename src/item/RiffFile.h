#pragma once
#include <memory>
#include <string>

#include "item/RiffSource.h"

namespace qm {

class Descriptor;

enum enRiffAccess : std::int32_t { rfaRead = 0, rfaReadAndWrite = 1 };

// A file on disk; closed with the object.
class RiffFile : public RiffTarget {
 public:
  RiffFile();
  ~RiffFile() override;

  // False for what is missing, no plain file, or refused by the system.
  bool Open(const std::string& path, enRiffAccess access);

  std::int64_t Size() const override { return m_size; }
  std::size_t ReadAt(std::int64_t position, void* out, std::size_t bytes) const override;
  bool WriteAt(std::int64_t position, std::string_view bytes) override;
  bool Flush() override;

 private:
  std::unique_ptr<Descriptor> m_file;
  std::int64_t m_size = 0;
};

}  // namespace qm
