#include "kits/sound/tags/cAudioTagFile.h"

#include "kits/common/Text.h"
#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/AudioFileReader.h"
#include "kits/sound/AudioFileTarget.h"
#include "kits/sound/tags/CopyBytes.h"
#include "kits/sound/tags/OpenTags.h"
#include "kits/sound/tags/SoundFacts.h"

namespace qm {

namespace {

std::int64_t FramesIn(const std::string& path) {
  AudioFileError error;
  const auto reader = OpenAudioFileReader(path, CompressedAudio::allow, error);
  return reader ? reader->Length() : -1;
}

}  // namespace

bool EndsInId3v1Tag(const std::string& path) {
  constexpr std::int32_t kTagBytes = 128;
  AudioFileBytes bytes(kTagBytes);
  char start[3] = {};
  return !bytes.Open(path) && bytes.Size() > kTagBytes &&
         bytes.ReadAt(bytes.Size() - kTagBytes, start, sizeof start) == sizeof start &&
         EqualIgnoringCase({start, sizeof start}, "TAG");
}

bool cAudioTagFile::Open(const std::string& path) try {
  AudioFileBytes bytes(kGlanceBytes);
  if (bytes.Open(path)) return false;
  const auto facts = ReadSoundFacts(bytes, path);
  if (!facts || facts->format.SampleRate() <= 0) return false;
  m_path = path;
  m_format = facts->format;
  m_channelMode = facts->channelMode;
  m_milliseconds = static_cast<double>(facts->frames) / m_format.SampleRate() * 1000;
  m_fields = {};
  m_genreNumber = kNoGenre;
  const auto tags = ReadTagsOf(bytes, m_format.FormatType());
  if (!tags) return true;
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
  const std::int64_t frames = FramesIn(m_path);
  AudioFileBytes source;
  AudioFileTarget target;
  if (frames < 0 || source.Open(m_path) || target.Create(m_path) || !CopyBytes(source, 0, target, 0))
    return false;
  const std::string copy = target.WorkingPath().string();
  {
    const auto tags = WriteTagsOf(copy, m_format.FormatType(), m_mode);
    if (!tags) return false;
    if (!tags->Put(m_fields, m_genreNumber)) return true;
    if (!tags->Save()) return false;
  }
  // The library of tags does not tell of a disk that was full.
  return FramesIn(copy) == frames && !target.Commit();
} catch (const std::exception&) {
  return false;
}

}  // namespace qm
