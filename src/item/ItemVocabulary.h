#pragma once
#include <cstdint>
#include <string>
#include <string_view>

// The words in which audio items are described.
namespace qm {

// Groups of an item's fields, as a sum.
enum enInfoAvailable : std::int32_t {
  hiaCaptions = 1,
  hiaTiming = 2,
  hiaBasic = 3,
  hiaStudioNotes = 4,
  hiaOtherNotes = 8,
  hiaCopyright = 16,
  hiaPictures = 32,
  hiaExtendedTiming = 128,
  hiafull = 65535,
};

constexpr enInfoAvailable operator|(enInfoAvailable first, enInfoAvailable second) {
  return static_cast<enInfoAvailable>(static_cast<std::int32_t>(first) | static_cast<std::int32_t>(second));
}

// How long a description may be; hedData is the form for files.
enum enItemDescType : std::int32_t { hedShort = 0, hedMedium = 1, hedLong = 2, hedData = 3 };

enum enItemEndType : std::int32_t {
  ietNonSpecific = 0,
  ietEnd = 1,
  ietFades = 2,
  ietSustain = 4,
  ietSlowFade = 8,
};

enum enHDItemMarkTypes : std::int32_t {
  himtOther = 0,
  himtIntro = 1,
  himtHook = 11,
  himtLoop = 21,
  himtExtro = 101,
};

// Which carriers in an audio file hold its metadata, and by whose conventions.
enum enHDFileFlags : std::int32_t {
  llfAutoDetect = 0,
  llfBext = 1,
  llfCartChunk = 2,
  llfCopyrightFromTitle = 4,
  llfListInfoChunk = 8,
  llfID3Chunk = 16,
  llfRCS = 0x802,         // cart chunk and the RCS conventions
  llfQuillmere = 0x1003,  // bext, cart chunk and our own conventions
};

constexpr enHDFileFlags operator|(enHDFileFlags first, enHDFileFlags second) {
  return static_cast<enHDFileFlags>(static_cast<std::int32_t>(first) | static_cast<std::int32_t>(second));
}

// An end type as a word; "" for a value that is none.
std::string EndTypeWord(enItemEndType endType, enItemDescType descriptionType);

// The end type of a word in any of its forms, ignoring case; ietNonSpecific for any other text.
enItemEndType EndTypeOfWord(std::string_view word);

}  // namespace qm
