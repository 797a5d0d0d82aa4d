#include "item/QuillmereUserDef.h"

#include "item/CartColours.h"
#include "item/cHDItem.h"
#include "kits/common/TagText.h"
#include "kits/common/Text.h"

namespace qm {
namespace {

constexpr char kBackColour[] = "BackColor", kTextColour[] = "ForeColor", kEnding[] = "EndingType";

const char* EndingWord(enItemEndType type) {
  switch (type) {
    case ietEnd:
      return "Ends";
    case ietFades:
      return "Fades";
    case ietSustain:
      return "Sustain";
    case ietSlowFade:
      return "SlowFade";
    default:
      return "";
  }
}

}  // namespace

void ReadUserDef(cHDItem& item, std::string_view text) {
  SetColourFromText(item, &cHDItem::SetBackColour, GetTagValue(text, kBackColour));
  SetColourFromText(item, &cHDItem::SetTextColour, GetTagValue(text, kTextColour));
  const std::string ending = GetTagValue(text, kEnding);
  item.SetEndType(EqualIgnoringCase(ending, EndingWord(ietEnd))     ? ietEnd
                  : EqualIgnoringCase(ending, EndingWord(ietFades)) ? ietFades
                                                                    : ietNonSpecific);
}

std::string UserDefOf(const cHDItem& item) {
  const std::pair<const char*, std::string> pairs[] = {
      {kBackColour, ColourText(item.BackColour(), kButtonFaceColour)},
      {kTextColour, ColourText(item.TextColour(), kButtonTextColour)},
      {kEnding, EndingWord(item.EndType())},
  };
  std::string text;
  for (const auto& [key, value] : pairs)
    if (!value.empty()) text = AppendTag(std::move(text), key, value);
  return text;
}

}  // namespace qm
