#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "kits/common/Dates.h"

namespace qm {

class cHDItem;

// What a play was. The library sets the upper three, the host all others.
enum enPlayLogFlags : std::int32_t {
  plfOnAir = 1,
  plfAlwaysOnAir = 3,
  plfSimpleOnAir = 5,
  plfAdvancedOnAir = 9,
  plfAdvancedOnAirSplit = 25,
  plfPreviewMode = 4096,
  plfHookMode = 8192,
  plfListMode = 16384,
};

// What the text of a play log holds beside identity and timing. Bits.
enum enPlayLogSerialOpts : std::int32_t {
  plsoBasic = 0,
  plsoIncludeHDSerial = 1,
  plsoIncludeHardware = 2,
  plsoFull = 65535,
};

// The record of one play of an item. Players fill in what they know, the host what only it knows.
class cPlayLog {
 public:
  // X() and SetX(value) of every field.
#define QM_FIELD(Type, Name)     \
  Type Name() const {            \
    return m_##Name;             \
  }                              \
  void Set##Name(Type value) {   \
    m_##Name = std::move(value); \
  }
#include "playback/cPlayLogFields.def"
#undef QM_FIELD
  tyLogDateTime GetStartDateSD() const {
    return {m_StartDate, m_StartTime};
  }

  // The record as one line of tag text. Options: bits of enPlayLogSerialOpts.
  std::string Serialisation(std::int32_t Options = plsoFull) const;

 private:
#define QM_FIELD(Type, Name) Type m_##Name{};
#include "playback/cPlayLogFields.def"
#undef QM_FIELD
};

}  // namespace qm
