#include <taglib/apetag.h>
#include <taglib/tstringlist.h>
#include <taglib/xiphcomment.h>

#include "kits/sound/tags/TagCarrier.h"
#include "kits/sound/tags/TagStrings.h"

namespace qm {

namespace {

// Vorbis comments: the names that the format proposes, then what is in wide use.
constexpr FieldName kComments[] = {
    {etfTitle, "TITLE"},
    {etfArtist, "ARTIST"},
    {etfURL, "URL"},
    {etfURL, "WEBSITE"},
    {etfPublisher, "PUBLISHER"},
    {etfPublisher, "ORGANIZATION"},
    {etfPublisher, "LABEL"},
    {etfComposer, "COMPOSER"},
    {etfPerformer, "PERFORMER"},
    {etfOriginator, "ENCODED-BY"},
    {etfOriginator, "ENCODEDBY"},
    {etfOriginator, "ENCODED_BY"},
    {etfGenre, "GENRE"},
    {etfYear, "DATE"},
    {etfYear, "YEAR"},
    {etfComment, "COMMENT"},
    {etfComment, "DESCRIPTION"},
};

// Items of an APE tag; names ignore case.
constexpr FieldName kItems[] = {
    {etfTitle, "TITLE"},
    {etfArtist, "ARTIST"},
    {etfURL, "RELATED"},
    {etfURL, "URL"},
    {etfPublisher, "PUBLISHER"},
    {etfPublisher, "LABEL"},
    {etfComposer, "COMPOSER"},
    {etfPerformer, "PERFORMER"},
    {etfPerformer, "CONDUCTOR"},
    {etfOriginator, "ENCODEDBY"},
    {etfOriginator, "ENCODED BY"},
    {etfGenre, "GENRE"},
    {etfYear, "YEAR"},
    {etfComment, "COMMENT"},
};

struct VorbisComments {
  using Tag = TagLib::Ogg::XiphComment;
  static std::span<const FieldName> Names() { return kComments; }
  static std::string Text(const Tag& tag, const char* name) {
    const auto& fields = tag.fieldListMap();
    const auto found = fields.find(name);
    return found == fields.end() ? "" : TextOf(found->second);
  }
  static void Remove(Tag& tag, const char* name) { tag.removeFields(name); }
  static void Set(Tag& tag, const char* name, const std::string& text) {
    tag.addField(name, TagString(text));
  }
};

struct ApeItems {
  using Tag = TagLib::APE::Tag;
  static std::span<const FieldName> Names() { return kItems; }
  static std::string Text(const Tag& tag, const char* name) {
    const auto& items = tag.itemListMap();
    const auto found = items.find(name);
    return found == items.end() || found->second.type() != TagLib::APE::Item::Text
               ? ""
               : TextOf(found->second.values());
  }
  static void Remove(Tag& tag, const char* name) { tag.removeItem(name); }
  static void Set(Tag& tag, const char* name, const std::string& text) {
    tag.addValue(name, TagString(text));
  }
};

// A tag that is a list of names with texts.
template <class Kind>
class NamedCarrier : public TagCarrier {
 public:
  explicit NamedCarrier(typename Kind::Tag& tag) : m_tag(tag) {}

  std::string Text(enTagField field) const override {
    const char* name = NameInUse(field);
    return name == nullptr ? "" : Kind::Text(m_tag, name);
  }

  // A field keeps the name under which the tag has it.
  void SetText(enTagField field, const std::string& text) override {
    const char* used = NameInUse(field);
    for (const FieldName& row : Kind::Names())
      if (row.field == field) Kind::Remove(m_tag, row.name);
    if (!text.empty()) Kind::Set(m_tag, used ? used : NameOfField(Kind::Names(), field), text);
  }

 private:
  const char* NameInUse(enTagField field) const {
    for (const FieldName& row : Kind::Names())
      if (row.field == field && !Kind::Text(m_tag, row.name).empty()) return row.name;
    return nullptr;
  }

  typename Kind::Tag& m_tag;
};

}  // namespace

std::unique_ptr<TagCarrier> MakeTagCarrier(TagLib::Ogg::XiphComment& tag) {
  return std::make_unique<NamedCarrier<VorbisComments>>(tag);
}

std::unique_ptr<TagCarrier> MakeTagCarrier(TagLib::APE::Tag& tag) {
  return std::make_unique<NamedCarrier<ApeItems>>(tag);
}

}  // namespace qm
