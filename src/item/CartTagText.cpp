#include "item/CartTagText.h"

#include "item/CartColours.h"
#include "item/ItemFields.h"
#include "item/cHDItem.h"
#include "kits/common/Dates.h"
#include "kits/common/EightBitText.h"
#include "kits/common/Text.h"

namespace qm {
namespace {

struct Element {
  const char* name;
  enItemField field;  // text, or a single in seconds
};

// In the order in which they are written.
constexpr Element kElements[] = {
    {"STOREREF", eifOnlineStoreReference},
    {"DESCRIPTION", eifItemDescription},
    {"COPYRIGHTCODE", eifCopyrightCode},
    {"COMPOSER", eifComposer},
    {"MUSICTITLE", eifMusicTitle},
    {"PUBLISHER", eifPublisher},
    {"PERFORMER", eifPerformer},
    {"PRODUCTTITLE", eifProductTitle},
    {"RECORDLABEL", eifRecordLabel},
    {"ISRC", eifISRC},
    {"RECORDINGNUMBER", eifRecordingNumber},
    {"MUSICDURATION", eifCopyrightMusicDuration},
    {"TOTALDURATION", eifCopyrightTotalDuration},
    {"ORIGINALSOURCE", eifOriginalSource},
    {"DLS", eifDABNotes},
    {"TEXT", eifWebNotes},
    {"RIGHTSMANAGEMENTREF", eifRightsManagementReference},
    {"NOTES", eifStudioNotes},
};

const ItemField& FieldOf(const Element& element) {
  return ItemFields()[static_cast<std::size_t>(element.field)];
}

void Append(std::string& text, std::string_view name, std::string_view value) {
  if (value.empty()) return;
  text.append("<").append(name).append(">").append(EightBitFromText(value));
  text.append("</").append(name).append(">");
}

std::string ValueOf(const cHDItem& item, const ItemField& field) {
  if (field.IsText()) return field.text(item, 1);
  const double seconds = field.number(item, 1);
  return seconds > 0 ? SecondsToText(seconds, ettDuration) : std::string();
}

enItemEndType EndTypeOf(std::string_view text) {
  struct Word {
    const char* word;
    enItemEndType type;
  };
  constexpr Word kWords[] = {{"S", ietSustain},         {"SUSTAIN", ietSustain}, {"SF", ietSlowFade},
                             {"SLOWFADE", ietSlowFade}, {"E", ietEnd},           {"ENDS", ietEnd},
                             {"F", ietFades},           {"FADES", ietFades}};
  for (const Word& row : kWords)
    if (EqualIgnoringCase(row.word, text)) return row.type;
  return ietNonSpecific;
}

}  // namespace

std::string CartElement(std::string_view text, std::string_view name) {
  const std::string opening = "<" + std::string(name) + ">", closing = "</" + std::string(name) + ">";
  const std::size_t opened = FindIgnoringCase(text, opening);
  if (opened == std::string_view::npos) return {};
  std::string_view value = text.substr(opened + opening.size());
  const bool quoted = value.starts_with('"');
  if (quoted) value.remove_prefix(1);
  const std::size_t end = quoted ? value.find('"') : FindIgnoringCase(value, closing);
  return end == std::string_view::npos ? std::string() : TextFromEightBit(value.substr(0, end));
}

void ReadCartTagText(cHDItem& item, std::string_view text) {
  for (const Element& element : kElements) {
    const ItemField& field = FieldOf(element);
    std::string value = CartElement(text, element.name);
    if (field.IsText())
      field.setText(item, 1, std::move(value));
    else
      field.setNumber(item, 1, TextToSeconds(value));
  }
  item.SetScheduledLength(static_cast<float>(TextToSeconds(CartElement(text, "SCHEDULEDLENGTH"))));
  if (item.RecordingNumber().empty()) item.SetRecordingNumber(CartElement(text, "PRS"));
  SetColourFromText(item, &cHDItem::SetBackColour, CartElement(text, "BACKCOLOUR"));
  SetColourFromText(item, &cHDItem::SetTextColour, CartElement(text, "TEXTCOLOUR"));
  item.SetEndType(EndTypeOf(CartElement(text, "ENDING")));
}

std::string CartTagText(const cHDItem& item) {
  std::string text;
  for (const Element& element : kElements) Append(text, element.name, ValueOf(item, FieldOf(element)));
  Append(text, "BACKCOLOUR", ColourText(item.BackColour(), kButtonFaceColour));
  Append(text, "TEXTCOLOUR", ColourText(item.TextColour(), kButtonTextColour));
  Append(text, "ENDING", EndTypeWord(item.EndType(), hedShort));
  return text;
}

}  // namespace qm
