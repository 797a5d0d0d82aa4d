#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace qm {

enum enTagDecoding : int { etdAsItStands, etdDecoded };

// The pairs of one tag text, separated by blanks, found in a single pass: for reading many keys, or keys
// whose number the text itself gives.
//
// The text must outlive the index and stay as it is.
class TagIndex {
 public:
  explicit TagIndex(std::string_view text);

  // What GetTagValue gives for the text and the key with "=" and a secured " ". The key holds neither of the
  // two.
  std::string Value(std::string_view key, enTagDecoding decoding = etdAsItStands) const;

 private:
  struct Pair {
    std::string_view key;  // in m_lower
    std::size_t value;     // where it begins
  };

  void AddPairAt(std::size_t start);

  std::string_view m_text;
  std::string m_lower;
  std::vector<Pair> m_pairs;  // by key, equal ones in the order of the text
};

}  // namespace qm
