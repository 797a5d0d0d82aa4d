#include "kits/common/TagIndex.h"

#include <algorithm>

#include "kits/common/TagText.h"
#include "kits/common/Text.h"

namespace qm {

TagIndex::TagIndex(std::string_view text) : m_text(text), m_lower(LowerCase(text)) {
  if (!text.starts_with(' ')) AddPairAt(0);
  for (std::size_t at = text.find(' '); at != text.npos; at = text.find(' ', at + 1)) AddPairAt(at + 1);
  std::ranges::stable_sort(m_pairs, {}, &Pair::key);
}

void TagIndex::AddPairAt(std::size_t start) {
  const std::size_t end = m_text.find_first_of("= ", start);
  if (end == m_text.npos || m_text[end] == ' ') return;
  m_pairs.push_back({std::string_view(m_lower).substr(start, end - start), end + 1});
}

std::string TagIndex::Value(std::string_view key, enTagDecoding decoding) const {
  const std::string lower = LowerCase(key);
  const auto found = std::ranges::lower_bound(m_pairs, std::string_view(lower), {}, &Pair::key);
  if (found == m_pairs.end() || found->key != lower) return {};
  std::string_view value = m_text.substr(found->value);
  const bool quoted = value.starts_with('"');
  if (quoted) value.remove_prefix(1);
  value = value.substr(0, value.find(quoted ? '"' : ' '));
  return decoding == etdDecoded ? DecodeTagValue(value) : std::string(value);
}

}  // namespace qm
