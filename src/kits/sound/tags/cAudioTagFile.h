#pragma once
#include <cstdint>
#include <string>

#include "kits/sound/cAudioFormat.h"
#include "kits/sound/tags/TagFields.h"

namespace qm {

// Which tags of an MPEG file count. Whatever tags a file has are read, the fullest kind first (ID3v2, APE,
// ID3v1), and kept up with each other when they are saved; modes differ in what is added.
enum enTagMode : std::int32_t {
  etmAsFound = 0,  // an ID3v2 tag to a file without any
  etmID3v1 = 1,    // an ID3v1 tag alone; it holds 30 bytes of a title or an artist, 28 of a comment
  etmID3v2 = 2,    // an ID3v2 tag
};

// The last 128 bytes of a file begin with "TAG", ignoring case.
bool EndsInId3v1Tag(const std::string& path);

// The tags of an MP3, MP2 or Ogg Vorbis file, with its format. A file of another kind whose audio can be read
// has no tags, and takes none.
//
// One object belongs to one thread at a time. No file is held open between calls.
class cAudioTagFile {
 public:
  void SetMode(enTagMode mode) { m_mode = mode; }  // before Save

  // Reads everything. False for what cannot be read as audio.
  bool Open(const std::string& path);

  // Bits per second of the bit rate; of a file whose rate varies, on average.
  const cAudioFormat& Format() const { return m_format; }
  double Milliseconds() const { return m_milliseconds; }  // exact
  // As an MPEG header has it: 0 stereo, 1 joint stereo, 2 dual channel, 3 mono. 0 for other files.
  std::int32_t ChannelMode() const { return m_channelMode; }

  // A genre has its name here; GenreNumber(name) tells its number.
  const TagFields& Fields() const { return m_fields; }
  TagFields& Fields() { return m_fields; }
  // A genre that ID3v1, which knows numbers only, is to hold in place of a name that has none.
  void SetGenre(std::int32_t number, const std::string& name);

  // Replaces the file by one with these fields, as one step; audio and everything else in it stay as they
  // are, and a field that has not changed stays as it is written. False leaves the file as it was.
  bool Save();

 private:
  std::string m_path;
  enTagMode m_mode = etmAsFound;
  cAudioFormat m_format;
  double m_milliseconds = 0;
  std::int32_t m_channelMode = 0;
  TagFields m_fields;
  std::int32_t m_genreNumber = kNoGenre;
};

}  // namespace qm
