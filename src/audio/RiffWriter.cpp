#include "audio/RiffWriter.h"

#include "kits/common/LittleEndian.h"

namespace qm {

void RiffWriter::CreateChunk(std::string_view id, std::string_view type) {
  m_bytes += id;
  AppendLittleEndian<std::uint32_t>(m_bytes, 0);
  m_open.push_back(m_bytes.size());
  m_bytes += type;
}

void RiffWriter::Ascend() {
  if (m_open.empty()) return;
  const std::size_t body = m_open.back();
  m_open.pop_back();
  StoreLittleEndian(m_bytes.data() + body - 4, static_cast<std::uint32_t>(m_bytes.size() - body));
  if (m_bytes.size() % 2 != 0) m_bytes += '\0';
}

}  // namespace qm
