#include "kits/sound/AudioFileOggLinks.h"

#include <algorithm>
#include <cstring>
#include <numeric>

#include "kits/common/LittleEndian.h"
#include "kits/sound/AudioFileBytes.h"

extern "C" {
#include <libavcodec/vorbis_parser.h>
}

namespace qm {

namespace {

constexpr std::size_t kIdentificationBytes = 30;
constexpr std::int64_t kMostFramesOfPage = 255 * 4096;
constexpr std::int64_t kLeastPageBytes = 28;

bool IsHeader(const std::uint8_t* data, std::size_t size, int type) {
  return size > 7 && data[0] == type && std::memcmp(data + 1, "vorbis", 6) == 0;
}

std::size_t BodyBytes(const OggPage& page) {
  return std::accumulate(page.segments, page.segments + page.segmentCount, std::size_t{0});
}

}  // namespace

void VorbisParserDeleter::operator()(AVVorbisParseContext* parser) const {
  av_vorbis_parse_free(&parser);
}

std::vector<std::uint8_t> VorbisHeaders::ExtraData() const {
  static constexpr char kComments[] = "\x03vorbis\0\0\0\0\0\0\0\0\1";
  constexpr std::size_t kCommentBytes = sizeof kComments - 1;
  std::vector<std::uint8_t> extra = {2, static_cast<std::uint8_t>(identification.size()), kCommentBytes};
  extra.insert(extra.end(), identification.begin(), identification.end());
  extra.insert(extra.end(), kComments, kComments + kCommentBytes);
  extra.insert(extra.end(), setup.begin(), setup.end());
  return extra;
}

VorbisParserPtr VorbisHeaders::MakeParser() const {
  const std::vector<std::uint8_t> extra = ExtraData();
  return VorbisParserPtr(av_vorbis_parse_init(extra.data(), static_cast<int>(extra.size())));
}

std::int32_t VorbisHeaders::SampleRate() const {
  return LoadLittleEndian<std::int32_t>(&identification[12]);
}
std::int32_t VorbisHeaders::Channels() const {
  return identification[11];
}
std::int32_t VorbisHeaders::NominalBitRate() const {
  return std::max(0, LoadLittleEndian<std::int32_t>(&identification[20]));
}

bool FindOggLink(AudioFileBytes& bytes, std::int64_t position, OggLink& link, VorbisHeaders& headers) {
  OggPackets packets;
  OggPage page;
  bool chosen = false, behindFirstPages = false;
  for (; FindOggPage(bytes, position, page); position = page.end) {
    if (page.first) {
      if (behindFirstPages) chosen = behindFirstPages = false;
      const std::size_t size = BodyBytes(page);
      if (chosen || size < kIdentificationBytes || !IsHeader(page.body, size, 1)) continue;
      chosen = true;
      link.start = page.position;
      link.serial = page.serial;
      headers.identification.assign(page.body, page.body + kIdentificationBytes);
      headers.setup.clear();
      packets.Reset();
      continue;
    }
    behindFirstPages = true;
    if (!chosen || page.serial != link.serial) continue;
    packets.Add(page, [&](const std::uint8_t* data, std::size_t size) {
      if (IsHeader(data, size, 5)) headers.setup.assign(data, data + size);
    });
    link.audio = page.end;
    if (!headers.setup.empty()) return true;
  }
  return false;
}

bool NextOggPage(AudioFileBytes& bytes, const OggLink& link, OggWalk& walk, OggPage& page) {
  while (FindOggPage(bytes, walk.position, page) && !page.first) {
    walk.position = page.end;
    if (page.serial != link.serial) continue;
    if (page.granule < 0) return true;
    const std::int64_t pages = 1 + (page.position - walk.counted) / kLeastPageBytes;
    if (page.granule < walk.granule || page.granule - walk.granule > pages * kMostFramesOfPage) continue;
    walk.granule = page.granule;
    walk.counted = page.end;
    return true;
  }
  return false;
}

bool MeasureOggStart(AudioFileBytes& bytes, const VorbisHeaders& headers, OggLink& link) {
  VorbisParserPtr parser = headers.MakeParser();
  if (!parser) return false;
  OggPackets packets;
  OggPage page;
  std::int64_t frames = 0;
  bool primed = false;  // the first packet gives no frames
  for (std::int64_t position = link.audio; FindOggPage(bytes, position, page) && !page.first;
       position = page.end) {
    if (page.serial != link.serial) continue;
    packets.Add(page, [&](const std::uint8_t* data, std::size_t size) {
      const int duration = size > 0 ? av_vorbis_parse_frame(parser.get(), data, static_cast<int>(size)) : 0;
      if (primed) frames += std::max(0, duration);
      primed = true;
    });
    if (page.granule < 0) continue;
    // Fewer frames counted than there are: some are cut off, at the end if this is the last page, else here.
    link.firstGranule = std::max<std::int64_t>(0, page.granule - frames);
    link.wholeGranule = link.firstGranule + frames;
    return true;
  }
  return false;
}

}  // namespace qm
