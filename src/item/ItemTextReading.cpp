#include "item/ItemTextReading.h"

#include <span>

#include "item/ItemFields.h"
#include "item/cHDItem.h"
#include "item/cHDItemTimeExtra.h"
#include "kits/common/Dates.h"
#include "kits/common/Numbers.h"
#include "kits/common/TagIndex.h"

namespace qm {

namespace {

// Marks that are read by another key when a word stands anywhere in the text. Texts in use rely on it, also
// where it finds what is no mark.
struct MarkKey {
  enItemField mark;
  const char* word;
  const char* key;     // with that word in the text
  std::int32_t count;  // 1: it has no index and is that of set 1, the other sets stay as they are
};

constexpr MarkKey kShortMarks[] = {
    {eifAudioStart, "AudStEx", "AudStEx", 3}, {eifIntroStart, "InEx", "InEx1", 1},
    {eifIntroEnd, "InEx", "InEx3", 1},        {eifHookStart, "HKStart=", "HKSt", 1},
    {eifHookEnd, "HKStart=", "HKEn", 1},      {eifExtro, "ExEx", "ExEx", 3},
    {eifAudioEnd, "AudEn=", "AudEn", 1},
};
constexpr MarkKey kLongMarks[] = {
    {eifAudioStart, "AudioStartEx", "AudioStartEx", 3},
    {eifIntroStart, "IntroEx", "IntroEx1", 1},
    {eifIntroEnd, "IntroEx", "IntroEx3", 1},
    {eifHookStart, "HookStart=", "HookStart", 1},
    {eifHookEnd, "HookStart=", "HookEnd", 1},
    {eifExtro, "ExtroEx", "ExtroEx", 3},
    {eifAudioEnd, "AudioEnd=", "AudioEnd", 1},
};

// The keys of the time when notes and copyright were one group.
struct NotesKey {
  enItemField field;
  const char* key;
};
constexpr NotesKey kOldNotes[] = {
    {eifStudioNotes, "Notes"},
    {eifStudioNotesFileName, "StudioNotesFileName"},
    {eifProductTitle, "CopyrightProductTitle"},
    {eifMusicTitle, "CopyrightMusicTitle"},
    {eifRecordLabel, "CopyrightRecordLabel"},
    {eifRecordingNumber, "CopyrightRecordingNumber"},
    {eifISRC, "CopyrightISRC"},
    {eifComposer, "CopyrightComposer"},
    {eifPerformer, "CopyrightPerformer"},
    {eifPublisher, "CopyrightPublisher"},
};

constexpr enItemField kLoop[] = {eifLoopStart, eifLoopEnd, eifLoopNumberLoops, eifLoopPlayToEnd};

struct PlayKeys {
  const char* count;
  const char* date;
  const char* reference;
};

// Where a field's value lies in one of the forms; the older key may be null.
struct FieldKeys {
  const char* key;
  const char* older;
};

FieldKeys ShortKeys(const ItemField& field) {
  return {field.options.readKey ? field.options.readKey : field.key, field.options.olderKey};
}

FieldKeys LongKeys(const ItemField& field) {
  return {field.options.longKey ? field.options.longKey : field.name, field.options.olderLongKey};
}

using KeysOf = FieldKeys (*)(const ItemField& field);

// What is not read together with its group, because its order or its key depends on more.
bool IsReadApart(const ItemField& field) {
  return field.id == eifInfoAvailable || field.kind == ifkColour || field.group == hiaTiming ||
         field.written == ifwNever;
}

class TextReader {
 public:
  TextReader(cHDItem& item, const TagIndex& tags, std::string_view text, KeysOf keysOf)
      : m_item(item), m_tags(tags), m_text(text), m_keysOf(keysOf) {}

  bool Contains(std::string_view word) const { return m_text.find(word) != m_text.npos; }
  std::string Value(const std::string& key) const { return m_tags.Value(key); }

  void TakeField(const ItemField& field);
  void TakeFields(std::span<const enItemField> fields);
  void TakeNotes();
  void TakePlays(const PlayKeys& keys);
  void TakeMarks(std::span<const MarkKey> marks);
  void TakeExtras(const char* ItemExtra::*key);
  void TakeHardwareLines();
  void TakeColours();

 private:
  void Take(const ItemField& field, std::int32_t index, std::string_view key, const char* older = nullptr);
  std::string ValueOf(const ItemField& field, std::int32_t index, std::string_view key) const;

  cHDItem& m_item;
  const TagIndex& m_tags;
  std::string_view m_text;
  KeysOf m_keysOf;
};

std::string TextReader::ValueOf(const ItemField& field, std::int32_t index, std::string_view key) const {
  const bool decoded = field.IsText() && field.options.form == itfNatural;
  return m_tags.Value(IndexedKey(key, index, field.count), decoded ? etdDecoded : etdAsItStands);
}

void TextReader::Take(const ItemField& field, std::int32_t index, std::string_view key, const char* older) {
  std::string value = ValueOf(field, index, key);
  if (value.empty() && older) value = ValueOf(field, index, older);
  if (value.empty() && field.options.taken == ittFilled) return;
  if (field.IsText()) return field.setText(m_item, index, std::move(value));
  const double number = field.options.form == itfDateText ? ParseDate(value) : ParseNumber(value);
  if (number == 0 && field.options.taken == ittNotZero) return;
  field.setNumber(m_item, index, number);
}

void TextReader::TakeField(const ItemField& field) {
  const FieldKeys keys = m_keysOf(field);
  for (std::int32_t index = 1; index <= field.count; ++index) Take(field, index, keys.key, keys.older);
}

void TextReader::TakeFields(std::span<const enItemField> fields) {
  for (const enItemField id : fields) TakeField(ItemFields()[id]);
}

void TextReader::TakeNotes() {
  for (const NotesKey& row : kOldNotes) Take(ItemFields()[row.field], 1, row.key);
}

void TextReader::TakePlays(const PlayKeys& keys) {
  // A text can claim any number; what it does not hold adds nothing.
  const std::int32_t count = Limit(ParseWhole(Value(keys.count)), 0, 32767);
  for (std::int32_t index = 1; index <= count; ++index)
    m_item.AddLastPlay(ParseNumber(Value(IndexedKey(keys.date, index))),
                       Value(IndexedKey(keys.reference, index)));
}

void TextReader::TakeMarks(std::span<const MarkKey> marks) {
  for (const MarkKey& row : marks) {
    const ItemField& field = ItemFields()[row.mark];
    if (!Contains(row.word))
      TakeField(field);
    else if (row.count == 1)
      field.setNumber(m_item, 1, ParseNumber(Value(row.key)));
    else
      for (std::int32_t set = 1; set <= row.count; ++set) Take(field, set, row.key);
  }
}

void TextReader::TakeExtras(const char* ItemExtra::*key) {
  for (const ItemExtra& extra : ItemExtras())
    for (std::int32_t set = 1; set <= 3; ++set)
      (m_item.*extra.get)(set)->SetSerialisation(m_tags.Value(IndexedKey(extra.*key, set), etdDecoded));
}

void TextReader::TakeHardwareLines() {
  for (const ItemExtra& extra : ItemExtras())
    if (extra.lineKey) (m_item.*extra.get)(1)->SetHardwareLine(ParseWhole(Value(extra.lineKey)));
}

void TextReader::TakeColours() {
  // The word looked for is the long one in both forms, so that a colour of the short form comes back only
  // where that word happens to stand in the text.
  for (const enItemField id : {eifBackColour, eifTextColour}) {
    const ItemField& field = ItemFields()[id];
    if (Contains(field.name))
      TakeField(field);
    else
      field.setNumber(m_item, 1, field.defaultNumber);
  }
}

void TakeShortTiming(TextReader& reader) {
  reader.TakeMarks(kShortMarks);
  // Before the loop: it may move every AudioEnd, and that the loop.
  reader.TakeField(ItemFields()[eifTotalLength]);
  reader.TakeField(ItemFields()[eifScheduledLength]);
  reader.TakeFields(kLoop);
  reader.TakeExtras(&ItemExtra::readKey);
}

void TakeLongTiming(TextReader& reader, cHDItem& item, bool isVeryOld) {
  reader.TakeMarks(kLongMarks);
  reader.TakeField(ItemFields()[eifTotalLength]);
  item.SetScheduledLength(item.TotalLength());
  reader.TakeFields(kLoop);
  if (isVeryOld || reader.Contains("IntroEndHW=") || reader.Contains("ExtroEndHW="))
    reader.TakeHardwareLines();
  else
    reader.TakeExtras(&ItemExtra::name);
}

}  // namespace

std::string IndexedKey(std::string_view key, std::int32_t index, std::int32_t count) {
  return count == 1 ? std::string(key) : std::string(key) + NumberText(index);
}

void ReadShortItemText(cHDItem& item, const TagIndex& tags, std::string_view text) {
  TextReader reader(item, tags, text, ShortKeys);
  const std::int32_t available = ParseWhole(reader.Value("InfAvail"));
  if (available != 0) item.SetInfoAvailable(static_cast<enInfoAvailable>(available));
  for (const ItemField& field : ItemFields())
    if (!IsReadApart(field)) reader.TakeField(field);
  reader.TakePlays({"NoLstPly", "LstPly", "LstPlyRef"});
  if ((item.InfoAvailable() & hiaTiming) != 0) TakeShortTiming(reader);
  reader.TakeColours();
}

void ReadLongItemText(cHDItem& item, const TagIndex& tags, std::string_view text) {
  TextReader reader(item, tags, text, LongKeys);
  const std::int32_t available = ParseWhole(tags.Value("InfoAvailable", etdDecoded));
  const bool isVeryOld = available == 0;
  if (!isVeryOld) item.SetInfoAvailable(static_cast<enInfoAvailable>(available));
  const auto isLoaded = [&](std::int32_t group) {
    return isVeryOld || group == 0 || (item.InfoAvailable() & group) != 0;
  };

  const bool hasOldNotes = isVeryOld || text.starts_with("Notes=") || reader.Contains(" Notes=");
  if (hasOldNotes) reader.TakeNotes();
  for (const ItemField& field : ItemFields()) {
    const ItemTextOptions& options = field.options;
    if (IsReadApart(field) || !options.inLongForm) continue;
    if (hasOldNotes && options.longGroup == hiaStudioNotes) continue;
    if (isLoaded(options.longGroup < 0 ? field.group : options.longGroup)) reader.TakeField(field);
  }
  reader.TakePlays({"NumberLastPlays", "LastPlay", "LastPlayReference"});
  if (isLoaded(hiaTiming)) TakeLongTiming(reader, item, isVeryOld);
  reader.TakeColours();
}

}  // namespace qm
