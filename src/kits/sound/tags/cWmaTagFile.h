#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "kits/sound/cAudioFormat.h"
#include "kits/sound/tags/TagFields.h"

namespace qm {

struct tyTagAttribute {
  std::string name;
  std::int32_t value = 0;
};

// The tags of a Windows Media file, with its format and its named attributes: whole numbers under names of
// anyone's choice, which are those of the file's numbers that the names reserved for the platform ("WM/...")
// do not claim.
//
// One object belongs to one thread at a time. No file is held open between calls.
class cWmaTagFile {
 public:
  // False for what cannot be read as Windows Media audio.
  bool Open(const std::string& path);

  const cAudioFormat& Format() const { return m_format; }  // bit rate in bits per second
  double Milliseconds() const { return m_milliseconds; }   // exact
  const TagFields& Fields() const { return m_fields; }
  TagFields& Fields() { return m_fields; }

  // In the file's order, indices from 1; a bad one gives "", 0 or false.
  std::int32_t NumberAttributes() const { return static_cast<std::int32_t>(m_attributes.size()); }
  std::string AttributeName(std::int32_t index) const;
  std::int32_t AttributeValue(std::int32_t index) const;
  bool DeleteAttribute(std::int32_t index);
  void AddAttribute(const std::string& name, std::int32_t value);  // at the end

  // Replaces the file by one with these fields and attributes, as one step; audio and everything else in it
  // stay as they are. False leaves the file as it was.
  bool Save();

 private:
  const tyTagAttribute* Attribute(std::int32_t index) const;

  std::string m_path;
  cAudioFormat m_format;
  double m_milliseconds = 0;
  TagFields m_fields;
  std::vector<tyTagAttribute> m_attributes;
};

}  // namespace qm
