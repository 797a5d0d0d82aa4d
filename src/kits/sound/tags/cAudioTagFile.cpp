#include "kits/sound/tags/cAudioTagFile.h"

#include "kits/common/Text.h"
#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/AudioFileReader.h"
#include "kits/sound/AudioFileTarget.h"
#include "kits/sound/tags/CopyBytes.h"
#include "kits/sound/tags/OpenTags.h"

namespace qm {

namespace {

std::int64_t FramesIn(const std::string& path) {
  AudioFileError error;
  const auto reader = OpenAudioFileReader(path, CompressedAudio::allow, error);
  return reader ? reader->Length() : -1;
}

}  // namespace

bool EndsInId3v1Tag(const std::string& path) {
  constexpr std::int64_t kTagBytes = 128;
  AudioFileBytes bytes;
  char start[3] = {};
  return !bytes.Open(path) && bytes.Size() > kTagBytes &&
         bytes.ReadAt(bytes.Size() - kTagBytes, start, sizeof start) == sizeof start &&
         EqualIgnoringCase({start, sizeof start}, "TAG");
}

bool cAudioTagFile::Open(const std::string& path) try {
  // The library of tags guesses lengths from the first bit rate, which is wrong by half for some files.
  AudioFileError error;
  const auto reader = OpenAudioFileReader(path, CompressedAudio::allow, error);
  if (!reader || reader->Format().SampleRate() <= 0) return false;
  m_path = path;
  m_format = reader->Format();
  m_milliseconds = static_cast<double>(reader->Length()) / m_format.SampleRate() * 1000;
  m_frames = reader->Length();
  m_fields = {};
  m_channelMode = 0;
  m_genreNumber = kNoGenre;
  const auto tags = OpenTagsOf(AudioFilePath(path), m_format.FormatType(), TagAccess::read, m_mode);
  if (!tags) return true;
  m_channelMode = tags->ChannelMode();
  for (std::int32_t i = 0; i < kTagFields; ++i) {
    const auto field = static_cast<enTagField>(i);
    m_fields.SetText(field, tags->Text(field));
  }
  return true;
} catch (const std::exception&) {  // sizes in a damaged tag that ask for more than the memory
  return false;
}

void cAudioTagFile::SetGenre(std::int32_t number, const std::string& name) {
  m_genreNumber = number;
  m_fields.SetText(etfGenre, name.empty() ? GenreName(number) : name);
}

bool cAudioTagFile::Save() try {
  AudioFileBytes source;
  AudioFileTarget target;
  if (source.Open(m_path) || target.Create(m_path) || !CopyBytes(source, 0, target, 0)) return false;
  const std::string copy = target.WorkingPath().string();
  {
    const auto tags = OpenTagsOf(copy, m_format.FormatType(), TagAccess::write, m_mode);
    if (!tags) return false;
    if (!tags->Put(m_fields, m_genreNumber)) return true;
    if (!tags->Save()) return false;
  }
  // The library of tags does not tell of a disk that was full.
  return FramesIn(copy) == m_frames && !target.Commit();
} catch (const std::exception&) {
  return false;
}

}  // namespace qm
