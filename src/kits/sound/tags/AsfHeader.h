#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qm {

class AudioFileBytes;

// One object of a header: its identity (16 bytes) and what stands behind identity and size.
struct AsfObject {
  std::string identity;
  std::string body;
};

// The header of an ASF file (Advanced Systems Format, revision 01.20.03, section 3), object by object, so
// that what is not understood goes back as it came.
class AsfHeader {
 public:
  // False when the file does not begin with a whole header.
  bool Read(AudioFileBytes& file);

  // Bytes of the header in the file that was read: where its data begins.
  std::int64_t StoredSize() const { return m_storedSize; }
  // The header's bytes for a file that has dataSize bytes behind it.
  std::string Write(std::int64_t dataSize) const;

  // The first object of a kind; null for none.
  const AsfObject* Find(std::string_view identity) const;
  // Replaces it, or adds it at the end.
  void Set(std::string_view identity, std::string body);

 private:
  std::vector<AsfObject> m_objects;
  std::int64_t m_storedSize = 0;
};

// A named value of the extended content description (section 3.11).
struct AsfValue {
  std::string name;  // UTF-8
  std::uint16_t type = 0;
  std::string data;  // as stored

  bool IsText() const;
  bool IsNumber() const;        // of 16, 32 or 64 bits
  std::int64_t Number() const;  // 32 bits as signed ones
  std::string Text() const;     // "" for what is no text
};
AsfValue AsfTextValue(std::string name, const std::string& text);
AsfValue AsfNumberValue(std::string name, std::int32_t number);

// The five texts of the content description (section 3.10), in their order.
enum enAsfDescription : std::int32_t { eadTitle, eadAuthor, eadCopyright, eadDescription, eadRating };

// What the two descriptions of a file say. Reading a damaged one keeps what stands before the damage.
struct AsfDescriptions {
  std::vector<std::string> texts;  // five, UTF-8
  std::vector<AsfValue> values;    // in the file's order

  void Read(const AsfHeader& header);
  void Write(AsfHeader& header) const;
  // Ignoring case; null for none.
  const AsfValue* Find(std::string_view name) const;
};

}  // namespace qm
