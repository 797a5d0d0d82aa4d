#pragma once
#include <cstdint>
#include <memory>
#include <vector>

#include "kits/sound/AudioFileOggPage.h"

struct AVVorbisParseContext;

namespace qm {

struct VorbisParserDeleter {
  void operator()(AVVorbisParseContext* parser) const;
};

// Tells how many frames a packet stands for, from itself and the one before.
using VorbisParserPtr = std::unique_ptr<AVVorbisParseContext, VorbisParserDeleter>;

// What the decoder must know of a Vorbis stream.
struct VorbisHeaders {
  std::vector<std::uint8_t> identification, setup;

  // All headers in the codec library's form, the comments left out.
  std::vector<std::uint8_t> ExtraData() const;
  VorbisParserPtr MakeParser() const;  // null when the headers make no sense
  std::int32_t SampleRate() const;
  std::int32_t Channels() const;
  std::int32_t NominalBitRate() const;  // 0 when none is stated
};

// One of the Vorbis streams that stand end to end in a file, each with headers and a count of frames of its
// own.
struct OggLink {
  std::int64_t start = 0;  // in the file: where its headers begin
  std::int64_t audio = 0;  // where its audio begins
  std::uint32_t serial = 0;
  std::int64_t raw = 0;           // its first frame within the whole file's audio
  std::int64_t firstGranule = 0;  // the count at that frame; not 0 in what was cut out of a running stream
  std::int64_t lastGranule = 0;   // the count behind its last frame
  std::int64_t wholeGranule = 0;  // the same if its last packet counted in full
  std::int64_t lastPage = -1;     // in the file; -1 when it has no audio
  std::int64_t end = 0;           // in the file

  std::int64_t RawOf(std::int64_t granule) const { return raw + granule - firstGranule; }
};

// Where a walk over a link's pages stands: behind a page that counts, and that page's count.
struct OggWalk {
  std::int64_t position = 0, granule = 0;
  std::int64_t counted = 0;  // end of the page that counted last
};

// The first Vorbis stream that begins at or behind the position.
bool FindOggLink(AudioFileBytes& bytes, std::int64_t position, OggLink& link, VorbisHeaders& headers);

// The link's next page; false at its end, where the walk stays. Pages with a count that cannot be are left
// out.
bool NextOggPage(AudioFileBytes& bytes, const OggLink& link, OggWalk& walk, OggPage& page);

// Finds out the count at the link's first frame. False when it has no audio.
bool MeasureOggStart(AudioFileBytes& bytes, const VorbisHeaders& headers, OggLink& link);

}  // namespace qm
