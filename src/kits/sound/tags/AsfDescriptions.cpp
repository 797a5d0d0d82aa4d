#include "kits/common/LittleEndian.h"
#include "kits/common/Numbers.h"
#include "kits/common/Text.h"
#include "kits/common/Utf8.h"
#include "kits/sound/tags/AsfHeader.h"

namespace qm {

namespace {

constexpr std::string_view kContent("\x33\x26\xB2\x75\x8E\x66\xCF\x11\xA6\xD9\x00\xAA\x00\x62\xCE\x6C", 16);
constexpr std::string_view kExtended("\x40\xA4\xD0\xD2\x07\xE3\xD2\x11\x97\xF0\x00\xA0\xC9\x5E\xA8\x50", 16);
constexpr std::size_t kTexts = 5;
constexpr std::size_t kMostBytes = 0xFFFE;  // of a text or a value, whose size has 16 bits
enum AsfType : std::uint16_t { text = 0, doubleWord = 3, quadWord = 4, word = 5 };

// Half a pair of surrogates becomes the replacement character; a zero ends the text.
std::string FromUtf16(std::string_view bytes) {
  std::string result;
  for (std::size_t at = 0; at + 2 <= bytes.size(); at += 2) {
    char32_t unit = ReadLittleEndian<std::uint16_t>(bytes, at);
    if (unit == 0) break;
    const char32_t next = ReadLittleEndian<std::uint16_t>(bytes, at + 2);
    if ((unit & 0xFC00) == 0xD800 && (next & 0xFC00) == 0xDC00) {
      unit = 0x10000 + ((unit & 0x3FF) << 10) + (next & 0x3FF);
      at += 2;
    }
    AppendCharacter(result, (unit & 0xFFFFF800) == 0xD800 ? 0xFFFD : unit);
  }
  return result;
}

// With a zero at the end, cut at a character's edge to what a size can tell.
std::string ToUtf16(std::string_view text) {
  std::string bytes;
  char32_t character = 0;
  for (std::size_t at = 0; at < text.size();) {
    if (!NextCharacter(text, at, character)) {
      character = 0xFFFD;
      ++at;
    }
    if (bytes.size() + 6 > kMostBytes) break;
    if (character >= 0x10000) {
      AppendLittleEndian<std::uint16_t>(bytes, static_cast<std::uint16_t>(0xD7C0 + (character >> 10)));
      character = 0xDC00 | (character & 0x3FF);
    }
    AppendLittleEndian<std::uint16_t>(bytes, static_cast<std::uint16_t>(character));
  }
  AppendLittleEndian<std::uint16_t>(bytes, 0);
  return bytes;
}

// Takes bytes off the front; less than asked for sets `damaged`.
class Taker {
 public:
  explicit Taker(std::string_view bytes) : m_bytes(bytes) {}
  std::string_view Take(std::size_t count) {
    damaged = damaged || count > m_bytes.size();
    if (damaged) return {};
    const std::string_view taken = m_bytes.substr(0, count);
    m_bytes.remove_prefix(count);
    return taken;
  }
  std::uint16_t TakeSize() { return ReadLittleEndian<std::uint16_t>(Take(2), 0); }
  bool damaged = false;

 private:
  std::string_view m_bytes;
};

std::string_view BodyOf(const AsfHeader& header, std::string_view identity) {
  const AsfObject* object = header.Find(identity);
  return object ? std::string_view(object->body) : std::string_view();
}

void AppendSized(std::string& bytes, std::string_view part) {
  AppendLittleEndian<std::uint16_t>(bytes, static_cast<std::uint16_t>(part.size()));
  bytes += part;
}

}  // namespace

bool AsfValue::IsText() const {
  return type == AsfType::text;
}

bool AsfValue::IsNumber() const {
  return type == AsfType::doubleWord || type == AsfType::quadWord || type == AsfType::word;
}

std::int64_t AsfValue::Number() const {
  if (type == AsfType::doubleWord) return ReadLittleEndian<std::int32_t>(data, 0);
  if (type == AsfType::quadWord) return ReadLittleEndian<std::int64_t>(data, 0);
  return type == AsfType::word ? ReadLittleEndian<std::uint16_t>(data, 0) : 0;
}

// A number where a text is usual, such as a year, reads as its digits.
std::string AsfValue::Text() const {
  if (IsNumber()) return NumberText(Number());
  return IsText() ? FromUtf16(data) : "";
}

AsfValue AsfTextValue(std::string name, const std::string& text) {
  return {std::move(name), AsfType::text, ToUtf16(text)};
}

AsfValue AsfNumberValue(std::string name, std::int32_t number) {
  AsfValue value{std::move(name), AsfType::doubleWord, {}};
  AppendLittleEndian<std::int32_t>(value.data, number);
  return value;
}

void AsfDescriptions::Read(const AsfHeader& header) {
  texts.assign(kTexts, "");
  values.clear();
  Taker content(BodyOf(header, kContent));
  std::uint16_t sizes[kTexts];
  for (auto& size : sizes) size = content.TakeSize();
  for (std::size_t i = 0; i < kTexts; ++i) texts[i] = FromUtf16(content.Take(sizes[i]));
  Taker extended(BodyOf(header, kExtended));
  for (int left = extended.TakeSize(); left > 0; --left) {
    AsfValue value;
    value.name = FromUtf16(extended.Take(extended.TakeSize()));
    value.type = extended.TakeSize();
    value.data = extended.Take(extended.TakeSize());
    if (extended.damaged) return;
    values.push_back(std::move(value));
  }
}

void AsfDescriptions::Write(AsfHeader& header) const {
  std::string sizes, content;
  for (const std::string& each : texts) {
    const std::string bytes = each.empty() ? "" : ToUtf16(each);
    AppendLittleEndian<std::uint16_t>(sizes, static_cast<std::uint16_t>(bytes.size()));
    content += bytes;
  }
  header.Set(kContent, sizes + content);
  std::string extended;
  AppendLittleEndian<std::uint16_t>(extended, static_cast<std::uint16_t>(values.size()));
  for (const AsfValue& value : values) {
    AppendSized(extended, ToUtf16(value.name));
    AppendLittleEndian<std::uint16_t>(extended, value.type);
    AppendSized(extended, value.data);
  }
  header.Set(kExtended, std::move(extended));
}

const AsfValue* AsfDescriptions::Find(std::string_view name) const {
  for (const AsfValue& value : values)
    if (EqualIgnoringCase(value.name, name)) return &value;
  return nullptr;
}

}  // namespace qm
