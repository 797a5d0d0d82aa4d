#include <span>

#include "item/ItemFields.h"
#include "item/cHDItem.h"
#include "item/cHDItemTimeExtra.h"
#include "kits/common/Colours.h"
#include "kits/common/Dates.h"
#include "kits/common/Files.h"
#include "kits/common/Numbers.h"
#include "kits/common/XmlDocument.h"

namespace qm {

namespace {

// The text of a value; what equals the row's omitted text is left out.
using ValueText = std::string (*)(const cHDItem& item, std::int32_t index);

struct XmlRow {
  const char* element;
  const char* omitted;
  enItemField field;  // where value is null
  ValueText value;
};

constexpr XmlRow Of(const char* element, enItemField field, const char* omitted = "") {
  return {element, omitted, field, nullptr};
}
constexpr XmlRow By(const char* element, ValueText value, const char* omitted = "") {
  return {element, omitted, eifReference, value};
}

enum enXmlNumbering : int { exnNone, exnNumbered };

// Rows in an element of their own, or without a name in "hditem" itself, count times. An element without
// children is left out.
struct XmlGroup {
  const char* element;
  std::span<const XmlRow> rows;
  std::int32_t count = 1;
  enXmlNumbering numbering = exnNone;  // of the group's element, or of the rows that have none
};

constexpr char kNoDateTime[] = "1899-12-30T00:00:00";

template <enItemField Date, enItemField Time>
std::string DateTimeOf(const cHDItem& item, std::int32_t) {
  const double date = ItemFields()[Date].number(item, 1), time = ItemFields()[Time].number(item, 1);
  return DateTimeText({static_cast<std::int32_t>(date), static_cast<float>(time)});
}

template <auto Length>
std::string LengthOf(const cHDItem& item, std::int32_t index) {
  return NumberText((item.*Length)(index));
}

template <auto Extra>
std::string LineOf(const cHDItem& item, std::int32_t index) {
  return NumberText((item.*Extra)(index)->HardwareLine());
}

std::string ColourText(std::int32_t colour) {
  if (IsSystemColour(colour)) return SystemColourName(colour & 0x7FFF);
  std::string text = "#";
  for (int shift = 20; shift >= 0; shift -= 4) text += "0123456789abcdef"[colour >> shift & 15];
  return text;
}

template <auto Colour>
std::string ColourOf(const cHDItem& item, std::int32_t) {
  return ColourText((item.*Colour)());
}

std::string KillDateOf(const cHDItem& item, std::int32_t) {
  return item.KillDate() > 0 ? DateText(item.KillDate()) : "";
}

std::string AudioLengthOf(const cHDItem& item, std::int32_t) {
  return item.AudioFileExists() ? NumberText(item.AudioLength(1)) : "-1";
}

// What stands at the item's end says no more than TotalLength.
std::string UnlessAtEnd(const cHDItem& item, float mark) {
  const std::string text = NumberText(mark);
  return text != NumberText(item.TotalLength()) ? text : "";
}

std::string AudioEndOf(const cHDItem& item, std::int32_t) {
  return UnlessAtEnd(item, item.AudioEnd(1));
}

std::string ExtroStartOf(const cHDItem& item, std::int32_t index) {
  return UnlessAtEnd(item, item.Extro(index));
}

std::string ExtroLengthOf(const cHDItem& item, std::int32_t index) {
  return NumberText(item.TotalLength() - item.Extro(index));
}

std::string PlayToEndOf(const cHDItem& item, std::int32_t) {
  return item.LoopPlayToEnd() ? "True" : "False";
}

std::string EndTypeOf(const cHDItem& item, std::int32_t) {
  return item.EndTypeDescription(hedData);
}

std::string FileNameOfExisting(const cHDItem& item, std::int32_t) {
  return item.AudioFileExists() ? item.AudioFileName() : "";
}

std::string FileLengthOfExisting(const cHDItem& item, std::int32_t) {
  return item.AudioFileExists() ? NumberText(FileLength(item.AudioFileName())) : "";
}

std::string PlayedAtOf(const cHDItem& item, std::int32_t index) {
  return DateTimeText(FromSerialDateTime(item.LastPlay(index)));
}

std::string PlayReferenceOf(const cHDItem& item, std::int32_t index) {
  return index <= item.NumberLastPlays() ? item.LastPlayReference(index) : "0";
}

constexpr XmlRow kTitle[] = {Of("Reference", eifReference), Of("Version", eifVersion, "0"),
                             Of("ItemTitle", eifItemTitle)};
constexpr XmlRow kArtist[] = {Of("Name", eifArtistName)};
constexpr XmlRow kDescription[] = {Of("Description", eifItemDescription)};
constexpr XmlRow kDates[] = {By("AirStart", DateTimeOf<eifAirStartDate, eifAirStartTime>, kNoDateTime),
                             By("AirEnd", DateTimeOf<eifAirEndDate, eifAirEndTime>, kNoDateTime),
                             By("Kill", KillDateOf)};
constexpr XmlRow kAudioStart[] = {Of("AudioStart", eifAudioStart, "0")};
constexpr XmlRow kIntro[] = {
    Of("Start", eifIntroStart, "0"), By("StartHardware", LineOf<&cHDItem::IntroStartExtra>, "0"),
    Of("End", eifIntroEnd, "0"), By("EndHardware", LineOf<&cHDItem::IntroEndExtra>, "0"),
    By("Length", LengthOf<&cHDItem::IntroLength>, "0")};
constexpr XmlRow kHook[] = {
    Of("Start", eifHookStart, "0"), By("StartHardware", LineOf<&cHDItem::HookStartExtra>, "0"),
    Of("End", eifHookEnd, "0"), By("EndHardware", LineOf<&cHDItem::HookEndExtra>, "0"),
    By("Length", LengthOf<&cHDItem::HookLength>, "0")};
constexpr XmlRow kLoop[] = {Of("Start", eifLoopStart, "-1"), Of("NumberLoops", eifLoopNumberLoops, "0"),
                            By("PlayToEnd", PlayToEndOf, "False"), Of("End", eifLoopEnd, "-1")};
constexpr XmlRow kExtro[] = {By("Start", ExtroStartOf),
                             By("StartHardware", LineOf<&cHDItem::ExtroExtra>, "0"),
                             Of("End", eifTotalLength), By("Length", ExtroLengthOf, "0")};
constexpr XmlRow kAfterMarks[] = {By("AudioEnd1", AudioEndOf),
                                  By("AudioLength", AudioLengthOf),
                                  Of("TotalLength", eifTotalLength, "-1"),
                                  Of("ScheduledLength", eifScheduledLength, "-1"),
                                  By("EndType", EndTypeOf, "nonspecific"),
                                  Of("OriginalSource", eifOriginalSource),
                                  By("UNCFilename", FileNameOfExisting),
                                  By("FileLength", FileLengthOfExisting),
                                  By("Created", DateTimeOf<eifCreatedDate, eifCreatedTime>, kNoDateTime),
                                  By("BackColour", ColourOf<&cHDItem::BackColour>, "COLOR_BTNFACE"),
                                  By("TextColour", ColourOf<&cHDItem::TextColour>, "COLOR_BTNTEXT"),
                                  Of("ProducerAppName", eifProducerAppName),
                                  Of("ProducerAppVersion", eifProducerAppVersion),
                                  Of("ContentType", eifContentTypeInfo),
                                  Of("Type", eifTypeInfo),
                                  Of("Category", eifCategoryInfo),
                                  Of("CutID", eifCutID),
                                  Of("URL", eifURL),
                                  Of("Year", eifYear, "0"),
                                  Of("StudioNotes", eifStudioNotes),
                                  Of("StudioNotesFilename", eifStudioNotesFileName),
                                  Of("DABNotes", eifDABNotes),
                                  Of("Webnotes", eifWebNotes),
                                  Of("NumberPictures", eifNumberPictures),
                                  Of("PictureFileName", eifPictureFileName)};
constexpr XmlRow kCopyright[] = {Of("Code", eifCopyrightCode),
                                 Of("Composer", eifComposer),
                                 Of("MusicDuration", eifCopyrightMusicDuration, "0"),
                                 Of("MusicTitle", eifMusicTitle),
                                 Of("Performer", eifPerformer),
                                 Of("ProductTitle", eifProductTitle),
                                 Of("Publisher", eifPublisher),
                                 Of("RecordLabel", eifRecordLabel),
                                 Of("RecordingNumber", eifRecordingNumber),
                                 Of("ISRC", eifISRC),
                                 Of("TotalDuration", eifCopyrightTotalDuration, "0")};
constexpr XmlRow kOrigin[] = {Of("Name", eifOriginator), Of("Reference", eifOriginatorReference),
                              By("Date", DateTimeOf<eifOriginationDate, eifOriginationTime>)};
constexpr XmlRow kCustomField[] = {Of("CustomField", eifCustomField)};
// The second word is spelt as its readers know it.
constexpr XmlRow kReferences[] = {Of("OnlineStoreReference", eifOnlineStoreReference),
                                  Of("RightsMangementRef", eifRightsManagementReference)};
constexpr XmlRow kLastPlay[] = {By("PlayedAt", PlayedAtOf, kNoDateTime),
                                By("TerminalRef", PlayReferenceOf, "0")};

constexpr XmlGroup kGroups[] = {
    {nullptr, kTitle},
    {"Artist", kArtist, 3, exnNumbered},
    {nullptr, kDescription, 3, exnNumbered},
    {nullptr, kDates},
    {nullptr, kAudioStart, 3, exnNumbered},
    {"Intro", kIntro, 3, exnNumbered},
    {"Hook", kHook, 3},
    {"Loop", kLoop},
    {"Extro", kExtro, 3, exnNumbered},
    {nullptr, kAfterMarks},
    {"Copyright", kCopyright},
    {"Origin", kOrigin},
    {nullptr, kCustomField, 3, exnNumbered},
    {nullptr, kReferences},
    {"LastPlay", kLastPlay, 5, exnNumbered},
};

std::string ElementName(const char* element, const XmlGroup& group, std::int32_t index) {
  return group.numbering == exnNumbered ? element + NumberText(index) : element;
}

void AddRow(XmlElement& parent, const XmlRow& row, std::string name, const cHDItem& item,
            std::int32_t index) {
  std::string text = row.value ? row.value(item, index) : FieldText(item, ItemFields()[row.field], index);
  parent.AddChildUnless(row.omitted, std::move(name), std::move(text));
}

void AddGroup(XmlElement& parent, const XmlGroup& group, const cHDItem& item, std::int32_t index) {
  if (!group.element) {
    for (const XmlRow& row : group.rows)
      AddRow(parent, row, ElementName(row.element, group, index), item, index);
    return;
  }
  auto element = std::make_shared<XmlElement>(ElementName(group.element, group, index));
  for (const XmlRow& row : group.rows) AddRow(*element, row, row.element, item, index);
  if (!element->Children().empty()) parent.AddChild(std::move(element));
}

}  // namespace

std::shared_ptr<XmlElement> cHDItem::XML() const {
  auto item = std::make_shared<XmlElement>("hditem");
  for (const XmlGroup& group : kGroups)
    for (std::int32_t index = 1; index <= group.count; ++index) AddGroup(*item, group, *this, index);
  return item;
}

}  // namespace qm
