#include "item/ItemVocabulary.h"

#include <array>

#include "kits/common/Text.h"

namespace qm {

namespace {

struct EndTypeWords {
  enItemEndType endType;
  std::array<const char*, 4> words;  // by enItemDescType
};

constexpr EndTypeWords kEndTypeWords[] = {
    {ietEnd, {"E", "End", "Ends", "end"}},
    {ietFades, {"F", "Fade", "Fades", "fades"}},
    {ietSustain, {"S", "Sust", "Sustain", "sustain"}},
    {ietSlowFade, {"SF", "Slow", "Slow Fade", "slowfade"}},
    {ietNonSpecific, {"", "", "", "nonspecific"}},
};

}  // namespace

std::string EndTypeWord(enItemEndType endType, enItemDescType descriptionType) {
  if (descriptionType < hedShort || descriptionType > hedData) return "";
  for (const EndTypeWords& row : kEndTypeWords)
    if (row.endType == endType) return row.words[static_cast<std::size_t>(descriptionType)];
  return "";
}

enItemEndType EndTypeOfWord(std::string_view word) {
  // The one word that is read but never written.
  if (EqualIgnoringCase(word, "SLOW FADES")) return ietSlowFade;
  for (const EndTypeWords& row : kEndTypeWords)
    for (const char* known : row.words)
      if (EqualIgnoringCase(word, known)) return row.endType;
  return ietNonSpecific;
}

}  // namespace qm
