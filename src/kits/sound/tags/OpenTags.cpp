#include "kits/sound/tags/OpenTags.h"

#include <taglib/apetag.h>
#include <taglib/id3v1tag.h>
#include <taglib/id3v2framefactory.h>
#include <taglib/id3v2header.h>
#include <taglib/id3v2tag.h>
#include <taglib/mpegfile.h>
#include <taglib/tfilestream.h>
#include <taglib/vorbisfile.h>
#include <taglib/xiphcomment.h>

#include <algorithm>
#include <optional>

#include "kits/sound/AudioFileBytes.h"

namespace qm {

namespace {

// Open bytes as the library's own kind of file, which it cannot write.
class BytesStream : public TagLib::IOStream {
 public:
  explicit BytesStream(const AudioFileBytes& bytes) : m_bytes(bytes) {}

  TagLib::FileName name() const override { return ""; }
  TagLib::ByteVector readBlock(unsigned long length) override {
    const auto left = static_cast<unsigned long>(std::max<std::int64_t>(0, m_bytes.Size() - m_position));
    TagLib::ByteVector block(static_cast<unsigned int>(std::min(length, left)), 0);
    block.resize(static_cast<unsigned int>(m_bytes.ReadAt(m_position, block.data(), block.size())));
    m_position += block.size();
    return block;
  }
  void writeBlock(const TagLib::ByteVector&) override {}
  void insert(const TagLib::ByteVector&, unsigned long, unsigned long) override {}
  void removeBlock(unsigned long, unsigned long) override {}
  bool readOnly() const override { return true; }
  bool isOpen() const override { return true; }
  void seek(long offset, Position from) override {
    m_position = offset + (from == Current ? m_position : from == End ? m_bytes.Size() : 0);
  }
  long tell() const override { return static_cast<long>(m_position); }
  long length() override { return static_cast<long>(m_bytes.Size()); }
  void truncate(long) override {}

 private:
  const AudioFileBytes& m_bytes;
  std::int64_t m_position = 0;
};

using MpegFile = TagLib::MPEG::File;

// Frames that version 2.3 does not have, which writing it would drop.
constexpr const char* kNewerFrames[] = {"ASPI", "EQU2", "RVA2", "SEEK", "SIGN", "TDRL", "TDTG",
                                        "TMOO", "TPRO", "TSOA", "TSOT", "TSST", "TSOP"};

TagLib::ID3v2::Version VersionToWrite(const TagLib::ID3v2::Tag& tag, bool isNew) {
  if (!isNew && tag.header()->majorVersion() >= 4) return TagLib::ID3v2::v4;
  for (const char* id : kNewerFrames)
    if (!tag.frameList(id).isEmpty()) return TagLib::ID3v2::v4;
  return TagLib::ID3v2::v3;
}

class OpenMpegTags : public OpenTags {
 public:
  // Of the kinds that are there; with a mode, also of those that it adds.
  OpenMpegTags(std::unique_ptr<TagLib::IOStream> stream, std::optional<enTagMode> mode)
      : m_stream(std::move(stream)), m_file(m_stream.get(), TagLib::ID3v2::FrameFactory::instance(), false) {
    if (!m_file.isValid()) return;
    m_isNew = !m_file.hasID3v2Tag();
    m_kinds = mode ? KindsToWrite(*mode) : KindsFound();
    if (m_kinds & MpegFile::ID3v2) Add(*m_file.ID3v2Tag(true), m_file.hasID3v2Tag());
    if (m_kinds & MpegFile::APE) Add(*m_file.APETag(true), m_file.hasAPETag());
    if (!(m_kinds & MpegFile::ID3v1)) return;
    Add(*m_file.ID3v1Tag(true), m_file.hasID3v1Tag());
    m_numbersGenres = m_carriers.back().carrier.get();
  }

  bool Save() override {
    const auto version =
        m_kinds & MpegFile::ID3v2 ? VersionToWrite(*m_file.ID3v2Tag(), m_isNew) : TagLib::ID3v2::v3;
    return m_file.save(m_kinds, TagLib::File::StripNone, version, TagLib::File::DoNotDuplicate);
  }

 private:
  template <class Tag>
  void Add(Tag& tag, bool found) {
    m_carriers.push_back({MakeTagCarrier(tag), !found});
  }

  int KindsFound() const {
    return (m_file.hasID3v2Tag() ? MpegFile::ID3v2 : 0) | (m_file.hasAPETag() ? MpegFile::APE : 0) |
           (m_file.hasID3v1Tag() ? MpegFile::ID3v1 : 0);
  }

  int KindsToWrite(enTagMode mode) const {
    int kinds = KindsFound();
    if (mode == etmID3v1) kinds |= MpegFile::ID3v1;
    if (mode == etmID3v2 || kinds == 0) kinds |= MpegFile::ID3v2;
    return kinds;
  }

  const std::unique_ptr<TagLib::IOStream> m_stream;
  MpegFile m_file;
  int m_kinds = 0;
  bool m_isNew = false;  // its ID3v2 tag
};

class OpenVorbisTags : public OpenTags {
 public:
  explicit OpenVorbisTags(std::unique_ptr<TagLib::IOStream> stream)
      : m_stream(std::move(stream)), m_file(m_stream.get(), false) {
    if (!m_file.isValid() || m_file.tag() == nullptr) return;
    constexpr unsigned int kCommentPacket = 1, kPacketHead = 7;
    const TagLib::ByteVector packet = m_file.packet(kCommentPacket);
    if (packet.size() > kPacketHead)
      RestoreEightBitComments({packet.data() + kPacketHead, packet.size() - kPacketHead}, *m_file.tag());
    m_carriers.push_back({MakeTagCarrier(*m_file.tag())});
  }
  bool Save() override { return !m_carriers.empty() && m_file.save(); }

 private:
  const std::unique_ptr<TagLib::IOStream> m_stream;
  TagLib::Ogg::Vorbis::File m_file;
};

}  // namespace

std::string OpenTags::Text(enTagField field) const {
  for (const Carried& each : m_carriers)
    if (std::string text = each.carrier->Text(field); !text.empty()) return text;
  return {};
}

bool OpenTags::Put(const TagFields& fields, std::int32_t genreNumber) {
  bool changes = false;
  for (std::int32_t i = 0; i < kTagFields; ++i) {
    const auto field = static_cast<enTagField>(i);
    const bool same = SameTagText(field, Text(field), fields.Text(field));
    for (const auto& [carrier, isNew] : m_carriers) {
      if (same && !isNew) continue;
      std::string text = fields.Text(field);
      if (field == etfGenre && carrier.get() == m_numbersGenres && GenreNumber(text) == kUnlistedGenre)
        text = GenreName(genreNumber);
      const std::string before = carrier->Text(field);
      carrier->SetText(field, text);
      changes = changes || carrier->Text(field) != before;
    }
  }
  return changes;
}

namespace {

std::unique_ptr<OpenTags> OpenTagsOf(std::unique_ptr<TagLib::IOStream> stream, std::int32_t formatType,
                                     std::optional<enTagMode> mode) {
  UseOwnEightBitText();
  if (formatType == aftMP3 || formatType == aftMP2)
    return std::make_unique<OpenMpegTags>(std::move(stream), mode);
  if (formatType == aftOgg) return std::make_unique<OpenVorbisTags>(std::move(stream));
  return nullptr;
}

}  // namespace

std::unique_ptr<OpenTags> ReadTagsOf(const AudioFileBytes& bytes, std::int32_t formatType) {
  return OpenTagsOf(std::make_unique<BytesStream>(bytes), formatType, std::nullopt);
}

std::unique_ptr<OpenTags> WriteTagsOf(const std::string& path, std::int32_t formatType, enTagMode mode) {
  return OpenTagsOf(std::make_unique<TagLib::FileStream>(path.c_str()), formatType, mode);
}

}  // namespace qm
