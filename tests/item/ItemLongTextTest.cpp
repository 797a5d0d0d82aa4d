#include <gmock/gmock.h>

#include <set>

#include "item/ItemFieldAccess.h"
#include "item/ItemFields.h"
#include "item/cHDItem.h"
#include "item/cHDItemTimeExtra.h"

namespace qm {
namespace {

using ::testing::ElementsAre;

TEST(ItemLongText, EveryFieldFromItsFullName) {
  // The colours are looked for by these very words, the others by keys of their own.
  const std::set<std::string> apart = {"InfoAvailable", "NumberPictures", "ScheduledLength"};
  const std::set<std::string> absent = {"AudioFileType", "TimeStretchRatio",  "KillDate",
                                        "CustomField",   "LastRefreshedDate", "LastRefreshedTime"};
  for (const ItemField& field : ItemFields()) {
    if (apart.contains(field.name)) continue;
    const bool isRead = !absent.contains(field.name);
    for (std::int32_t index = 1; index <= field.count; ++index) {
      const std::string key = field.name + (field.count > 1 ? std::to_string(index) : "");
      const std::string value = field.IsText() ? "\"a b\"" : "1";
      cHDItem item;
      item.SetTotalLength(100);
      item.SetSerialisation(
          "InfoAvailable=65535 AudioEnd1=9 AudioEnd2=9 AudioEnd3=9 IntroEnd1=9 IntroEnd2=9 IntroEnd3=9"
          " HookEnd1=9 HookEnd2=9 HookEnd3=9 TotalLength=9 " +
          key + '=' + value);
      if (field.id == eifAudioEnd || field.id == eifIntroEnd || field.id == eifHookEnd ||
          field.id == eifTotalLength)
        EXPECT_EQ(FieldText(item, field, index), "9") << key;
      else if (isRead)
        EXPECT_EQ(FieldText(item, field, index), field.IsText() ? "a b" : "1") << key;
      else
        EXPECT_TRUE(IsDefault(item, field, index)) << key;
    }
  }
}

TEST(ItemLongText, KeysAndDecodingThatDiffer) {
  struct Case {
    const char* text;
    const char* field;
    const char* value;
  };
  const Case cases[] = {
      {"InfoAvailable=32 PictureCount=3 NumberPictures=4", "NumberPictures", "3"},
      {"ContentType=\"a%22\"", "ContentTypeInfo", "a\""},
      {"ContentTypeInfo=\"b\" ContentType=\"a\"", "ContentTypeInfo", "b"},
      {"PictureFileName=\"a b%22\"", "PictureFileName", "a b%22"},
      {"TotalLength=12 ScheduledLength=7", "ScheduledLength", "12"},
      {"BackColour=255", "BackColour", "255"},
      {"ItemTitle=\"TextColour\"", "TextColour", "0"},
      {"Ref=\"short\" ITitle=\"short\"", "Reference", ""},
      // Groups are read where they are available or the text is very old, which has the notes under "Notes".
      {"InfoAvailable=2 ItemTitle=t", "ItemTitle", ""},
      {"InfoAvailable=0 ItemTitle=t", "ItemTitle", "t"},
      {"InfoAvailable=1 AudioStart1=4", "AudioStart", "0"},
      {"AudioStart1=4", "AudioStart", "4"},
      {"InfoAvailable=8 StudioNotes=n", "StudioNotes", ""},
      {"StudioNotes=n", "StudioNotes", ""},
      {"InfoAvailable=4 WebNotes=w", "WebNotes", ""},
      {"WebNotes=w", "WebNotes", "w"},
      {"InfoAvailable=1 Composer=c", "Composer", ""},
      {"InfoAvailable=0 Composer=c", "Composer", "c"},
      {"InfoAvailable=1 PictureCount=2", "NumberPictures", "0"},
      {"PictureCount=2", "NumberPictures", "2"},
      {"InfoAvailable=\"32\"", "InfoAvailable", "32"},
      {"InfoAvailable=0", "InfoAvailable", "3"},
      {"Notes=\"a%22\" InfoAvailable=4 StudioNotes=n", "StudioNotes", "a\""},
      {"InfoAvailable=4 WebNotes=a StudioNotes=n", "StudioNotes", "n"},
      {"InfoAvailable=1 Notes=a CopyrightComposer=c", "Composer", "c"},
      {"InfoAvailable=1 CopyrightComposer=c", "Composer", ""},
      {"InfoAvailable=16 Notes=a CopyrightComposer=c Composer=d", "Composer", "d"},
      {"Notes=a", "StudioNotes", "a"},
      // Marks and the words that switch their keys
      {"AudioStart1=2 AudioStartEx1=3", "AudioStart", "3"},
      {"AudioStart1=2 AudioStartExtra1=\"HardwareLine=3\"", "AudioStart", "0"},
      {"IntroStart1=1 IntroEnd1=4 IntroEx1=2 IntroEx3=3", "IntroStart", "2"},
      {"IntroStart1=1 IntroEnd1=4 IntroEx1=2 IntroEx3=3", "IntroEnd", "3"},
      {"HookStart=2 HookEnd=5 HookStart1=1 HookEnd1=4", "HookEnd", "5"},
      {"Extro2=4 ExtroEx2=3", "Extro2", "3"},
      {"AudioEnd=7 AudioEnd1=8", "AudioEnd", "7"},
  };
  for (const Case& c : cases) {
    cHDItem item;
    item.SetTotalLength(20);
    item.SetSerialisation(std::string(c.text) + " AudioEnd1=20 AudioEnd2=20 AudioEnd3=20 TotalLength=20");
    EXPECT_EQ(FieldText(item, c.field), c.value) << c.text;
  }
}

TEST(ItemLongText, ExtrasOrTheHardwareLinesOfVeryOldTexts) {
  const std::string extras = "AudioStartExtra1=\"HardwareLine=11\" ExtroExtra3=\"HardwareLine=13\"";
  const std::string lines = " IntroStartHW=1 IntroEndHW=2 ExtroHW=3 HookStartHW=4 HookEndHW=5";
  const auto read = [](const std::string& text) {
    cHDItem item;
    item.SetSerialisation(text);
    std::vector<std::int32_t> found;
    for (const auto& extra :
         {item.AudioStartExtra(1), item.IntroStartExtra(1), item.IntroEndExtra(1), item.ExtroExtra(1),
          item.HookStartExtra(1), item.HookEndExtra(1), item.ExtroExtra(3)})
      found.push_back(extra->HardwareLine());
    return found;
  };
  EXPECT_THAT(read("InfoAvailable=2 " + extras), ElementsAre(11, 0, 0, 0, 0, 0, 13));
  for (const char* before :
       {"", "InfoAvailable=2 ", "InfoAvailable=2 ExtroEndHW=1 IntroEndH=2 IntroEndHW =2 "})
    EXPECT_THAT(read(before + extras + lines), ElementsAre(0, 1, 2, 3, 4, 5, 0)) << before;
}

TEST(ItemLongText, Plays) {
  cHDItem item;
  item.SetSerialisation(
      "NumberLastPlays=2 LastPlay1=45000.5 LastPlayReference1=4 LastPlay2=45001 LastPlay3=1");
  ASSERT_EQ(item.NumberLastPlays(), 2);
  EXPECT_EQ(item.LastPlay(1), 45000.5);
  EXPECT_EQ(item.LastPlayReference(1), "4");
}

}  // namespace
}  // namespace qm
