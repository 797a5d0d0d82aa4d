#include "kits/sound/tags/cWmaTagFile.h"

#include <algorithm>

#include "kits/common/Numbers.h"
#include "kits/common/Text.h"
#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/AudioFileReader.h"
#include "kits/sound/AudioFileTarget.h"
#include "kits/sound/tags/AsfHeader.h"
#include "kits/sound/tags/CopyBytes.h"

namespace qm {

namespace {

// Where a field stands: as a value of that name, and, unless it is -1, as that text of the content
// description. Some writers put the latter under a name as well.
struct Row {
  enTagField field;
  const char* name;
  std::int32_t description;
};

constexpr Row kRows[] = {
    {etfTitle, "Title", eadTitle},
    {etfArtist, "Author", eadAuthor},
    {etfComment, "Description", eadDescription},
    {etfURL, "WM/UserWebURL", -1},
    {etfPublisher, "WM/Publisher", -1},
    {etfComposer, "WM/Composer", -1},
    {etfPerformer, "WM/Conductor", -1},
    {etfOriginator, "WM/EncodedBy", -1},
    {etfGenre, "WM/Genre", -1},
    {etfYear, "WM/Year", -1},
};

std::string TextOf(const AsfDescriptions& from, const Row& row) {
  if (row.description >= 0)
    if (const std::string& text = from.texts[static_cast<std::size_t>(row.description)]; !text.empty())
      return text;
  const AsfValue* value = from.Find(row.name);
  return value ? value->Text() : "";
}

void PutText(AsfDescriptions& into, const Row& row, const std::string& text) {
  if (row.description >= 0) into.texts[static_cast<std::size_t>(row.description)] = text;
  const auto first = std::find_if(into.values.begin(), into.values.end(), [&](const AsfValue& value) {
    return EqualIgnoringCase(value.name, row.name);
  });
  const bool named = first != into.values.end();
  // Once with what is new; further ones of the name said the same field's old value.
  if (named && !text.empty()) *first = AsfTextValue(first->name, text);
  if (named)
    into.values.erase(
        std::remove_if(text.empty() ? first : first + 1, into.values.end(),
                       [&](const AsfValue& value) { return EqualIgnoringCase(value.name, row.name); }),
        into.values.end());
  if (!named && row.description < 0 && !text.empty()) into.values.push_back(AsfTextValue(row.name, text));
}

bool IsAttribute(const AsfValue& value) {
  return value.IsNumber() && !StartsWithIgnoringCase(value.name, "WM/");
}

}  // namespace

bool cWmaTagFile::Open(const std::string& path) try {
  AudioFileError error;
  const auto reader = OpenAudioFileReader(path, CompressedAudio::allow, error);
  AudioFileBytes bytes;
  AsfHeader header;
  if (!reader || reader->Format().SampleRate() <= 0 || bytes.Open(path) || !header.Read(bytes)) return false;
  m_path = path;
  m_format = reader->Format();
  m_milliseconds = static_cast<double>(reader->Length()) / m_format.SampleRate() * 1000;
  AsfDescriptions descriptions;
  descriptions.Read(header);
  for (const Row& row : kRows) m_fields.SetText(row.field, TextOf(descriptions, row));
  m_attributes.clear();
  for (const AsfValue& value : descriptions.values)
    if (IsAttribute(value))
      AddAttribute(value.name,
                   static_cast<std::int32_t>(Limit<std::int64_t>(value.Number(), INT32_MIN, INT32_MAX)));
  return true;
} catch (const std::exception&) {
  return false;
}

const tyTagAttribute* cWmaTagFile::Attribute(std::int32_t index) const {
  return index < 1 || index > NumberAttributes() ? nullptr
                                                 : &m_attributes[static_cast<std::size_t>(index - 1)];
}

std::string cWmaTagFile::AttributeName(std::int32_t index) const {
  const tyTagAttribute* attribute = Attribute(index);
  return attribute ? attribute->name : "";
}

std::int32_t cWmaTagFile::AttributeValue(std::int32_t index) const {
  const tyTagAttribute* attribute = Attribute(index);
  return attribute ? attribute->value : 0;
}

bool cWmaTagFile::DeleteAttribute(std::int32_t index) {
  if (Attribute(index) == nullptr) return false;
  m_attributes.erase(m_attributes.begin() + index - 1);
  return true;
}

void cWmaTagFile::AddAttribute(const std::string& name, std::int32_t value) {
  m_attributes.push_back({name, value});
}

bool cWmaTagFile::Save() try {
  AudioFileBytes source;
  AsfHeader header;
  if (source.Open(m_path) || !header.Read(source)) return false;
  AsfDescriptions descriptions;
  descriptions.Read(header);
  for (const Row& row : kRows)
    if (!SameTagText(row.field, TextOf(descriptions, row), m_fields.Text(row.field)))
      PutText(descriptions, row, m_fields.Text(row.field));
  std::erase_if(descriptions.values, IsAttribute);
  for (const tyTagAttribute& attribute : m_attributes)
    descriptions.values.push_back(AsfNumberValue(attribute.name, attribute.value));
  descriptions.Write(header);
  const std::string bytes = header.Write(source.Size() - header.StoredSize());
  AudioFileTarget target;
  return !target.Create(m_path) && target.WriteAt(0, bytes.data(), bytes.size()) &&
         CopyBytes(source, header.StoredSize(), target, static_cast<std::int64_t>(bytes.size())) &&
         !target.Commit();
} catch (const std::exception&) {
  return false;
}

}  // namespace qm
