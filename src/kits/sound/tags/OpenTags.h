#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "kits/sound/tags/TagCarrier.h"
#include "kits/sound/tags/cAudioTagFile.h"

namespace qm {

class AudioFileBytes;

// The tags of an open file.
class OpenTags {
 public:
  virtual ~OpenTags() = default;

  std::string Text(enTagField field) const;
  // Puts the fields that differ from what the tags say into every tag, and all into one that is added; the
  // number for a genre that has no number of its own. True when that changes anything.
  bool Put(const TagFields& fields, std::int32_t genreNumber);
  virtual bool Save() = 0;

 protected:
  struct Carried {
    std::unique_ptr<TagCarrier> carrier;
    bool isNew = false;  // the file has no such tag yet
  };
  std::vector<Carried> m_carriers;        // the fullest first
  TagCarrier* m_numbersGenres = nullptr;  // that of them which knows genres by number only
};

// Of an MPEG or Ogg file, to be read; null for one that takes no tags. The bytes outlive the tags.
std::unique_ptr<OpenTags> ReadTagsOf(const AudioFileBytes& bytes, std::int32_t formatType);
// The same to be written: the tags that the mode asks for are added.
std::unique_ptr<OpenTags> WriteTagsOf(const std::string& path, std::int32_t formatType, enTagMode mode);

}  // namespace qm
