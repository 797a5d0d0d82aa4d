#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qm {

// Builds a RIFF file in memory, chunk by chunk: sizes are filled in and odd chunks padded as they are left.
class RiffWriter {
 public:
  // Begins a chunk inside the one that is open. A form ("RIFF") or list names its type as well.
  void CreateChunk(std::string_view id, std::string_view type = {});
  void Write(std::string_view bytes) { m_bytes += bytes; }
  // Completes the innermost open chunk.
  void Ascend();

  // Complete once every chunk has been left.
  const std::string& Bytes() const { return m_bytes; }

 private:
  std::string m_bytes;
  std::vector<std::size_t> m_open;  // where the bodies begin
};

}  // namespace qm
