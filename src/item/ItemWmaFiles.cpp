#include "item/ItemFields.h"
#include "item/ItemTagFields.h"
#include "item/ItemTagFiles.h"
#include "item/cHDItem.h"
#include "kits/common/Files.h"
#include "kits/common/Numbers.h"
#include "kits/common/TagText.h"
#include "kits/common/Text.h"
#include "kits/sound/tags/cWmaTagFile.h"

namespace qm {

namespace {

constexpr std::int32_t kSets = 3;
constexpr float kShortestLoopStart = 4.5F, kShortestLoop = 0.1F;
constexpr std::string_view kLoopStart = "LoopStart", kLoopEnd = "LoopEnd";

const ItemField& FieldOf(enItemField id) {
  return ItemFields()[static_cast<std::size_t>(id)];
}

// An attribute for each of the three sets, named after the mark, in milliseconds. An end that lies before its
// start when that is read goes with it.
struct MarkRow {
  std::string_view name;
  enItemField mark;
  enItemField end;  // the mark itself when it is no start
};

constexpr MarkRow kMarks[] = {
    {"AudioStart", eifAudioStart, eifAudioEnd},
    {"AudioEnd", eifAudioEnd, eifAudioEnd},
    {"IntroStart", eifIntroStart, eifIntroEnd},
    {"IntroEnd", eifIntroEnd, eifIntroEnd},
    {"HookStart", eifHookStart, eifHookEnd},
    {"HookEnd", eifHookEnd, eifHookEnd},
    {"Extro", eifExtro, eifExtro},
};

void TakeLoopStart(const std::string& name, float seconds, cHDItem& item) {
  item.SetLoopStart(Limit(seconds, kShortestLoopStart, item.TotalLength()));
  if (item.LoopEnd() < item.LoopStart()) item.SetLoopEnd(item.LoopStart() + kShortestLoop);
  if (const std::int32_t count = ParseWhole(GetTagValue(name, "COUNT")); count > 0)
    item.SetLoopNumberLoops(count);
}

void TakeLoopEnd(const std::string& name, float seconds, cHDItem& item) {
  item.SetLoopEnd(seconds);
  if (ParseWhole(GetTagValue(name, "PLAYTOEND")) != 0) item.SetLoopPlayToEnd(true);
}

void TakeAttribute(const std::string& name, std::int32_t milliseconds, cHDItem& item) {
  const auto seconds = static_cast<float>(milliseconds / 1000.0);
  if (StartsWithIgnoringCase(name, kLoopStart)) return TakeLoopStart(name, seconds, item);
  if (StartsWithIgnoringCase(name, kLoopEnd)) return TakeLoopEnd(name, seconds, item);
  for (const MarkRow& row : kMarks) {
    if (!StartsWithIgnoringCase(name, row.name)) continue;
    const std::int32_t set = ParseWhole(std::string_view(name).substr(row.name.size()));
    if (set < 1 || set > kSets) return;
    const ItemField& end = FieldOf(row.end);
    FieldOf(row.mark).setNumber(item, set, seconds);
    if (end.number(item, set) < seconds) end.setNumber(item, set, seconds);
    return;
  }
}

void AddMilliseconds(const std::string& name, double seconds, cWmaTagFile& file) {
  file.AddAttribute(name, static_cast<std::int32_t>(
                              Limit<std::int64_t>(RoundToWhole(seconds * 1000), INT32_MIN, INT32_MAX)));
}

void AddMarks(const cHDItem& item, cWmaTagFile& file) {
  for (std::int32_t set = 1; set <= kSets; ++set)
    for (const MarkRow& row : kMarks)
      if (const double seconds = FieldOf(row.mark).number(item, set); seconds > 0)
        AddMilliseconds(std::string(row.name) + NumberText(set), seconds, file);
  if (item.LoopStart() <= 0) return;
  std::string start(kLoopStart), end(kLoopEnd);
  if (item.LoopNumberLoops() >= 1) start = AppendTag(start, "Count", NumberText(item.LoopNumberLoops()));
  if (item.LoopPlayToEnd()) end = AppendTag(end, "PlayToEnd", "1");
  AddMilliseconds(start, item.LoopStart(), file);
  AddMilliseconds(end, item.LoopEnd(), file);
}

}  // namespace

bool LoadItemWma(cHDItem& item, const std::string& path) {
  cWmaTagFile file;
  if (!file.Open(path)) return false;
  cAudioFormat format = file.Format();
  format.SetFormatType(aftWMA);
  format.SetBitRate(format.BitRate() / 1000);
  item.ReplaceAudioFormat(format);
  const TagFields& fields = file.Fields();
  item.SetItemTitle(fields.Text(etfTitle).empty() ? BaseNameOf(path) : fields.Text(etfTitle));
  item.SetArtistName(1, fields.Text(etfArtist));
  item.SetCategoryInfo(fields.Text(etfGenre));
  TakeTagFields(fields, item);
  item.SetTotalLength(static_cast<float>(file.Milliseconds() / 1000));
  for (std::int32_t index = 1; index <= file.NumberAttributes(); ++index)
    TakeAttribute(file.AttributeName(index), file.AttributeValue(index), item);
  return true;
}

bool SaveItemWma(const cHDItem& item, const std::string& path) {
  cWmaTagFile file;
  if (!file.Open(path)) return false;
  GiveTagFields(item, file.Fields());
  file.Fields().SetText(etfGenre, item.CategoryInfo());
  for (std::int32_t index = file.NumberAttributes(); index >= 1; --index) file.DeleteAttribute(index);
  AddMarks(item, file);
  return file.Save();
}

}  // namespace qm
