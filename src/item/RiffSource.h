#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qm {

// The bytes of a RIFF file, read at any place.
class RiffSource {
 public:
  virtual ~RiffSource() = default;
  virtual std::int64_t Size() const = 0;
  // Fewer bytes than asked for only at the end, or when the system failed to read.
  virtual std::size_t ReadAt(std::int64_t position, void* out, std::size_t bytes) const = 0;

  std::string Read(std::int64_t position, std::size_t bytes) const {
    std::string text(bytes, '\0');
    text.resize(ReadAt(position, text.data(), bytes));
    return text;
  }
};

// One whose bytes are changed in place as well.
class RiffTarget : public RiffSource {
 public:
  // At most up to and from the end. False leaves some of the bytes written.
  virtual bool WriteAt(std::int64_t position, std::string_view bytes) = 0;
  // What was written until now survives a power cut, whatever becomes of what is written later.
  virtual bool Flush() = 0;
};

}  // namespace qm
