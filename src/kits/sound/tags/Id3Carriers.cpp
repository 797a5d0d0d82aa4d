#include <taglib/commentsframe.h>
#include <taglib/id3v1tag.h>
#include <taglib/id3v2tag.h>
#include <taglib/textidentificationframe.h>
#include <taglib/tstringlist.h>
#include <taglib/urllinkframe.h>

#include "kits/common/EightBitText.h"
#include "kits/common/Numbers.h"
#include "kits/common/Text.h"
#include "kits/sound/tags/TagCarrier.h"
#include "kits/sound/tags/TagStrings.h"

namespace qm {

namespace {

namespace ID3v1 = TagLib::ID3v1;
namespace ID3v2 = TagLib::ID3v2;

TagLib::String FromEightBit(const TagLib::ByteVector& data) {
  const std::string_view bytes(data.data(), data.size());
  return TagString(TextFromEightBit(bytes.substr(0, bytes.find('\0'))));
}

class Id3v1Text : public ID3v1::StringHandler {
 public:
  virtual ~Id3v1Text() = default;
  TagLib::String parse(const TagLib::ByteVector& data) const override {
    return FromEightBit(data).stripWhiteSpace();
  }
  // No field is wider; a narrower one is cut by who sets it.
  TagLib::ByteVector render(const TagLib::String& text) const override {
    const std::string bytes = EightBitFromText(TextOf(text), 30);
    return {bytes.data(), static_cast<unsigned int>(bytes.size())};
  }
};

class Id3v2Text : public ID3v2::Latin1StringHandler {
 public:
  TagLib::String parse(const TagLib::ByteVector& data) const override {
    return TagString(TextFromEightBit({data.data(), data.size()}));
  }
};

// The library hands on a comment without a track number byte by byte.
std::string Id3v1Comment(const ID3v1::Tag& tag) {
  const TagLib::String comment = tag.comment();
  if (tag.track() != 0 || !comment.isLatin1()) return TextOf(comment);
  return TextOf(FromEightBit(comment.data(TagLib::String::Latin1)).stripWhiteSpace());
}

constexpr std::size_t kId3v1CommentBytes = 28;  // where a track number stands behind it
constexpr std::uint32_t kLastYear = 9999;

class Id3v1Carrier : public TagCarrier {
 public:
  explicit Id3v1Carrier(ID3v1::Tag& tag) : m_tag(tag) {}

  std::string Text(enTagField field) const override {
    switch (field) {
      case etfTitle:
        return TextOf(m_tag.title());
      case etfArtist:
        return TextOf(m_tag.artist());
      case etfComment:
        return Id3v1Comment(m_tag);
      case etfGenre:
        return TextOf(m_tag.genre());
      case etfYear:
        return m_tag.year() > 0 ? NumberText(static_cast<std::int32_t>(m_tag.year())) : "";
      default:
        return "";
    }
  }

  void SetText(enTagField field, const std::string& text) override {
    switch (field) {
      case etfTitle:
        return m_tag.setTitle(TagString(text));
      case etfArtist:
        return m_tag.setArtist(TagString(text));
      case etfComment:
        return m_tag.setComment(TagString(TextFromEightBit(EightBitFromText(text, kId3v1CommentBytes))));
      case etfGenre:
        return m_tag.setGenreNumber(
            static_cast<unsigned int>(text.empty() ? kUnlistedGenre : GenreNumber(text)));
      case etfYear: {
        const auto year = static_cast<std::uint32_t>(ParseWhole(text));
        return m_tag.setYear(year > kLastYear ? 0 : year);
      }
      default:
        return;
    }
  }

 private:
  ID3v1::Tag& m_tag;
};

// Frames of plain text. A performer is the "conductor or performer refinement".
constexpr FieldName kFrames[] = {
    {etfTitle, "TIT2"},     {etfArtist, "TPE1"},     {etfPublisher, "TPUB"}, {etfComposer, "TCOM"},
    {etfPerformer, "TPE3"}, {etfOriginator, "TENC"}, {etfGenre, "TCON"},     {etfYear, "TDRC"},
};

// Of the frames with a description, the one without a description, else the first; programs keep figures of
// their own in comments that they describe by a name of theirs.
template <class Frame>
Frame* FindDescribed(const ID3v2::Tag& tag, const char* id) {
  Frame* found = nullptr;
  for (ID3v2::Frame* each : tag.frameList(id)) {
    auto* frame = dynamic_cast<Frame*>(each);
    if (frame == nullptr) continue;
    const std::string description = TextOf(frame->description());
    if (description.empty()) return frame;
    if (found == nullptr && !StartsWithIgnoringCase(description, "iTun")) found = frame;
  }
  return found;
}

class Id3v2Carrier : public TagCarrier {
 public:
  explicit Id3v2Carrier(ID3v2::Tag& tag) : m_tag(tag) {}

  std::string Text(enTagField field) const override {
    if (field == etfGenre) return TextOf(m_tag.genre());  // numbers and names in all their forms
    if (field == etfComment) {
      const auto* frame = FindDescribed<ID3v2::CommentsFrame>(m_tag, "COMM");
      return frame ? TextOf(frame->text()) : "";
    }
    if (field == etfURL) {
      const auto* frame = FindDescribed<ID3v2::UserUrlLinkFrame>(m_tag, "WXXX");
      return frame ? TextOf(frame->url()) : "";
    }
    const auto& frames = m_tag.frameList(NameOfField(kFrames, field));
    auto* text = frames.isEmpty() ? nullptr : dynamic_cast<ID3v2::TextIdentificationFrame*>(frames.front());
    return text ? TextOf(text->fieldList()) : "";
  }

  void SetText(enTagField field, const std::string& text) override {
    if (field == etfComment) return SetComment(text);
    if (field == etfURL) return SetUrl(text);
    const char* id = NameOfField(kFrames, field);
    m_tag.removeFrames(id);
    if (text.empty()) return;
    auto* frame = new ID3v2::TextIdentificationFrame(id, TagLib::String::UTF8);
    frame->setText(TagString(text));
    m_tag.addFrame(frame);
  }

 private:
  void SetComment(const std::string& text) {
    auto* frame = FindDescribed<ID3v2::CommentsFrame>(m_tag, "COMM");
    if (text.empty()) return frame ? m_tag.removeFrame(frame) : void();
    if (frame == nullptr) {
      frame = new ID3v2::CommentsFrame(TagLib::String::UTF8);
      frame->setLanguage("eng");
      m_tag.addFrame(frame);
    }
    frame->setTextEncoding(TagLib::String::UTF8);
    frame->setText(TagString(text));
  }

  void SetUrl(const std::string& text) {
    auto* frame = FindDescribed<ID3v2::UserUrlLinkFrame>(m_tag, "WXXX");
    if (text.empty()) return frame ? m_tag.removeFrame(frame) : void();
    if (frame == nullptr) {
      frame = new ID3v2::UserUrlLinkFrame(TagLib::String::UTF8);
      m_tag.addFrame(frame);
    }
    frame->setUrl(TagString(text));
  }

  ID3v2::Tag& m_tag;
};

}  // namespace

std::unique_ptr<TagCarrier> MakeTagCarrier(ID3v2::Tag& tag) {
  return std::make_unique<Id3v2Carrier>(tag);
}

std::unique_ptr<TagCarrier> MakeTagCarrier(ID3v1::Tag& tag) {
  return std::make_unique<Id3v1Carrier>(tag);
}

void UseOwnEightBitText() {
  static const Id3v1Text id3v1;
  static const Id3v2Text id3v2;
  ID3v1::Tag::setStringHandler(&id3v1);
  ID3v2::Tag::setLatin1StringHandler(&id3v2);
}

}  // namespace qm
