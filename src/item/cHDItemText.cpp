#include <iterator>

#include "item/ItemFields.h"
#include "item/ItemTextReading.h"
#include "item/cHDItem.h"
#include "item/cHDItemTimeExtra.h"
#include "kits/common/Dates.h"
#include "kits/common/Numbers.h"
#include "kits/common/TagIndex.h"
#include "kits/common/TagText.h"
#include "kits/common/Text.h"
#include "kits/common/Version.h"

namespace qm {

namespace {

constexpr double kTextVersion = 3.005011;

// The order of writing. Whoever cuts such texts apart by hand relies on it.
constexpr enItemField kHead[] = {eifReference, eifInfoAvailable};
constexpr enItemField kBeforePlays[] = {eifGuid,
                                        eifAudioFileName,
                                        eifAudioFileType,
                                        eifOriginalSource,
                                        eifAudioFileLength,
                                        eifAudioFileExists,
                                        eifItemTitle,
                                        eifOtherInformation,
                                        eifArtistName,
                                        eifItemDescription,
                                        eifYear};
constexpr enItemField kAfterPlays[] = {eifPlayVolume,
                                       eifTimeStretchRatio,
                                       eifStudioNotes,
                                       eifStudioNotesFileName,
                                       eifWebNotes,
                                       eifDABNotes,
                                       eifURL,
                                       eifOnlineStoreReference,
                                       eifCustomField,
                                       eifEndType,
                                       eifRightsManagementReference,
                                       eifProductTitle,
                                       eifMusicTitle,
                                       eifRecordLabel,
                                       eifRecordingNumber,
                                       eifISRC,
                                       eifComposer,
                                       eifPerformer,
                                       eifPublisher,
                                       eifCopyrightCode,
                                       eifCopyrightTotalDuration,
                                       eifCopyrightMusicDuration,
                                       eifCreatedDate,
                                       eifCreatedTime,
                                       eifLastModifiedDate,
                                       eifLastModifiedTime,
                                       eifAirStartDate,
                                       eifAirStartTime,
                                       eifAirEndDate,
                                       eifAirEndTime,
                                       eifKillDate,
                                       eifNumberPictures,
                                       eifPictureFileName,
                                       eifContentTypeInfo,
                                       eifContentTypeNumber,
                                       eifTypeInfo,
                                       eifTypeNumber,
                                       eifCategoryInfo,
                                       eifCategoryNumber,
                                       eifCodingHistory,
                                       eifClient,
                                       eifOutCue,
                                       eifVersion,
                                       eifCutID,
                                       eifOriginator,
                                       eifOriginatorReference,
                                       eifOriginationDate,
                                       eifOriginationTime,
                                       eifProducerAppName,
                                       eifProducerAppVersion};
constexpr enItemField kAfterMarks[] = {eifLoopStart,     eifLoopEnd,     eifLoopNumberLoops,
                                       eifLoopPlayToEnd, eifTotalLength, eifScheduledLength};
constexpr enItemField kColours[] = {eifBackColour, eifTextColour};

// Marks and extras that are written together for each set.
struct MarkStep {
  std::int32_t count;
  enItemField marks[2];
  enItemExtra extras[2];
};

constexpr MarkStep kMarkSteps[] = {
    {1, {eifAudioStart}, {eixAudioStartExtra}},
    {1, {eifIntroStart}, {eixIntroStartExtra}},
    {1, {eifIntroEnd}, {eixIntroEndExtra}},
    {1, {eifExtro}, {eixExtroExtra}},
    {1, {eifAudioEnd}, {eixAudioEndExtra}},
    {2, {eifHookStart, eifHookEnd}, {eixHookStartExtra, eixHookEndExtra}},
};

class TextWriter {
 public:
  explicit TextWriter(const cHDItem& item) : m_item(item) {}

  void Add(const char* key, std::string_view value) { m_text = AppendTag(std::move(m_text), key, value); }
  void AddFields(std::span<const enItemField> fields);
  void AddPlays();
  void AddMarks();
  std::string Text() { return std::move(m_text); }

 private:
  bool IsWritten(const ItemField& field, std::int32_t index) const;
  std::string Value(const ItemField& field, std::int32_t index) const;
  void AddField(const ItemField& field, std::int32_t index);
  void AddExtra(const ItemExtra& extra, std::int32_t set);

  const cHDItem& m_item;
  std::string m_text;
};

std::string TextWriter::Value(const ItemField& field, std::int32_t index) const {
  const std::string value = FieldText(m_item, field, index);
  if (field.options.form == itfBare) return std::string(Trim(value));
  if (field.options.form == itfDateText) return DateText(ParseWhole(value));
  return value;
}

bool TextWriter::IsWritten(const ItemField& field, std::int32_t index) const {
  if (field.group != 0 && (m_item.InfoAvailable() & field.group) == 0) return false;
  switch (field.written) {
    case ifwAlways:
      return true;
    case ifwFilled:
      return field.IsText() ? !Value(field, index).empty() : field.number(m_item, index) != 0;
    case ifwAboveZero:
      return field.number(m_item, index) > 0;
    case ifwNotDefault:
      return !IsDefault(m_item, field, index);
    case ifwWithHook:
      return m_item.HookEnd(index) > 0;
    case ifwNever:
      break;
  }
  return false;
}

void TextWriter::AddField(const ItemField& field, std::int32_t index) {
  if (!IsWritten(field, index)) return;
  const bool quoted = field.IsText() && field.options.form != itfBare;
  m_text = AppendTag(std::move(m_text), IndexedKey(field.key, index, field.count), Value(field, index), "=",
                     quoted);
}

void TextWriter::AddFields(std::span<const enItemField> fields) {
  for (const enItemField id : fields) {
    const ItemField& field = ItemFields()[id];
    for (std::int32_t index = 1; index <= field.count; ++index) AddField(field, index);
  }
}

void TextWriter::AddPlays() {
  const std::int32_t count = m_item.NumberLastPlays();
  if (count > 0) Add("NoLstPly", NumberText(count));
  for (std::int32_t index = 1; index <= count; ++index)
    if (m_item.LastPlay(index) > 0)
      Add(IndexedKey("LstPly", index).c_str(), NumberText(m_item.LastPlay(index)));
  for (std::int32_t index = 1; index <= count; ++index)
    if (ParseNumber(m_item.LastPlayReference(index)) != 0)
      Add(IndexedKey("LstPlyRef", index).c_str(), m_item.LastPlayReference(index));
}

void TextWriter::AddExtra(const ItemExtra& extra, std::int32_t set) {
  const std::string value = (m_item.*extra.get)(set)->Serialisation();
  if (!value.empty()) m_text = AppendTag(std::move(m_text), IndexedKey(extra.key, set), value, "=", true);
}

void TextWriter::AddMarks() {
  if ((m_item.InfoAvailable() & hiaTiming) == 0) return;
  for (const MarkStep& step : kMarkSteps) {
    const bool withHook = ItemFields()[step.marks[0]].written == ifwWithHook;
    for (std::int32_t set = 1; set <= 3; ++set) {
      if (withHook && !(m_item.HookEnd(set) > 0)) continue;
      for (std::int32_t i = 0; i < step.count; ++i) AddField(ItemFields()[step.marks[i]], set);
      for (std::int32_t i = 0; i < step.count; ++i) AddExtra(ItemExtras()[step.extras[i]], set);
    }
  }
}

}  // namespace

std::string cHDItem::Serialisation() const {
  TextWriter writer(*this);
  writer.AddFields(kHead);
  writer.Add("AppVer", 'v' + LibraryVersion());
  writer.Add("SerVer", NumberText(kTextVersion));
  writer.AddFields(kBeforePlays);
  writer.AddPlays();
  writer.AddFields(kAfterPlays);
  writer.AddMarks();
  writer.AddFields(kAfterMarks);
  writer.AddFields(kColours);
  return writer.Text();
}

bool cHDItem::SetSerialisation(std::string strNewValue) {
  if (Trim(strNewValue).empty()) return false;
  const TagIndex tags(strNewValue);
  m_InfoAvailable = hiaBasic;
  // In single precision, as every writer of these texts has compared it.
  const double version = Limit(ParseNumber(tags.Value("SerVer")), 0.0, 1e9);
  const bool isShort = static_cast<float>(version) >= static_cast<float>(kTextVersion);
  (isShort ? ReadShortItemText : ReadLongItemText)(*this, tags, strNewValue);
  return true;
}

}  // namespace qm
