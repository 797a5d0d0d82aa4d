#include <gtest/gtest.h>

#include <set>

#include "item/ItemFieldAccess.h"
#include "item/ItemFields.h"
#include "item/cHDItem.h"
#include "item/cHDItemTimeExtra.h"

namespace qm {
namespace {

struct Case {
  const char* text;
  const char* field;
  const char* value;
};

void Expect(std::initializer_list<Case> cases) {
  for (const Case& c : cases) {
    cHDItem item;
    ASSERT_TRUE(item.SetSerialisation(c.text));
    EXPECT_EQ(FieldText(item, c.field), c.value) << c.text;
  }
}

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
  Expect({
      {"InfoAvailable=32 PictureCount=3 NumberPictures=4", "NumberPictures", "3"},
      {"ContentType=\"a%22\"", "ContentTypeInfo", "a\""},
      {"ContentTypeInfo=\"b\" ContentType=\"a\"", "ContentTypeInfo", "b"},
      {"StudioNotesFileName=\"a%22\"", "StudioNotesFileName", "a%22"},
      {"PictureFileName=\"a b%22\"", "PictureFileName", "a b%22"},
      {"TotalLength=12 ScheduledLength=7", "ScheduledLength", "12"},
      {"TotalLength=12", "AudioEnd3", "12"},
      {"BackColour=255", "BackColour", "255"},
      {"ItemTitle=\"TextColour\"", "TextColour", "0"},
      {"Reference=x", "BackColour", "-2147483633"},
      {"Ref=\"short\" ITitle=\"short\"", "Reference", ""},
  });
}

TEST(ItemLongText, GroupsAreReadWhereTheyAreAvailableOrTheTextIsVeryOld) {
  struct GroupCase {
    const char* available;
    std::int32_t becomes;
    bool title, start, notes, webNotes, composer, pictures;
  };
  const GroupCase cases[] = {
      {"", 3, true, true, false, true, true, true},
      {"InfoAvailable=0 ", 3, true, true, false, true, true, true},
      {"InfoAvailable=1 ", 1, true, false, false, false, false, false},
      {"InfoAvailable=2 ", 2, false, true, false, false, false, false},
      {"InfoAvailable=4 ", 4, false, false, true, false, false, false},
      {"InfoAvailable=8 ", 8, false, false, false, true, false, false},
      {"InfoAvailable=16 ", 16, false, false, false, false, true, false},
      {"InfoAvailable=\"32\" ", 32, false, false, false, false, false, true},
  };
  for (const GroupCase& c : cases) {
    cHDItem item;
    item.SetSerialisation(std::string(c.available) +
                          "ItemTitle=t AudioStart1=4 StudioNotes=n WebNotes=w Composer=c PictureCount=2");
    EXPECT_EQ(item.InfoAvailable(), c.becomes) << c.available;
    EXPECT_EQ(item.ItemTitle() == "t", c.title) << c.available;
    EXPECT_EQ(item.AudioStart(1) == 4, c.start) << c.available;
    EXPECT_EQ(item.StudioNotes() == "n", c.notes) << c.available;  // very old texts have them under "Notes"
    EXPECT_EQ(item.WebNotes() == "w", c.webNotes) << c.available;
    EXPECT_EQ(item.Composer() == "c", c.composer) << c.available;
    EXPECT_EQ(item.NumberPictures() == 2, c.pictures) << c.available;
  }
}

TEST(ItemLongText, NotesAndCopyrightOfOneGroup) {
  Expect({
      {"Notes=\"a%22\" InfoAvailable=4 StudioNotes=n", "StudioNotes", "a\""},
      {"InfoAvailable=4 Notes=a StudioNotes=n", "StudioNotes", "a"},
      {"InfoAvailable=4 WebNotes=a StudioNotes=n", "StudioNotes", "n"},
      {"InfoAvailable=1 Notes=a CopyrightComposer=c", "Composer", "c"},
      {"InfoAvailable=1 CopyrightComposer=c", "Composer", ""},
      {"InfoAvailable=16 Notes=a CopyrightComposer=c Composer=d", "Composer", "d"},
      {"InfoAvailable=16 Notes=a CopyrightComposer=c", "Composer", ""},
      {"InfoAvailable=1 Notes=a CopyrightISRC=i", "ISRC", "i"},
      {"Notes=a", "StudioNotes", "a"},
  });
}

TEST(ItemLongText, MarksAndTheWordsThatSwitchTheirKeys) {
  const Case cases[] = {
      {"AudioStart2=2", "AudioStart2", "2"},
      {"AudioStart1=2 AudioStartEx1=3", "AudioStart", "3"},
      {"AudioStart1=2 AudioStartExtra1=\"HardwareLine=3\"", "AudioStart", "0"},
      {"IntroStart1=1 IntroEnd1=4 IntroEx1=2 IntroEx3=3", "IntroStart", "2"},
      {"IntroStart1=1 IntroEnd1=4 IntroEx1=2 IntroEx3=3", "IntroEnd", "3"},
      {"HookStart1=1 HookEnd1=4", "HookStart", "1"},
      {"HookStart=2 HookEnd=5 HookStart1=1 HookEnd1=4", "HookEnd", "5"},
      {"Extro2=4", "Extro2", "4"},
      {"Extro2=4 ExtroEx2=3", "Extro2", "3"},
      {"AudioEnd=7 AudioEnd1=8", "AudioEnd", "7"},
      {"LoopStart=1 LoopEnd=2", "LoopEnd", "2"},
  };
  for (const Case& c : cases) {
    cHDItem item;
    item.SetTotalLength(20);
    item.SetSerialisation(std::string(c.text) + " AudioEnd1=20 AudioEnd2=20 AudioEnd3=20 TotalLength=20");
    EXPECT_EQ(FieldText(item, c.field), c.value) << c.text;
  }
}

TEST(ItemLongText, ExtrasOrTheHardwareLinesOfVeryOldTexts) {
  const std::string extras =
      "AudioStartExtra1=\"HardwareLine=11\" IntroStartExtra1=\"HardwareLine=12\" "
      "ExtroExtra3=\"HardwareLine=13\"";
  const std::string lines = " IntroStartHW=1 IntroEndHW=2 ExtroHW=3 HookStartHW=4 HookEndHW=5";
  cHDItem item;
  item.SetSerialisation("InfoAvailable=2 " + extras);
  EXPECT_EQ(item.AudioStartExtra(1)->HardwareLine(), 11);
  EXPECT_EQ(item.IntroStartExtra(1)->HardwareLine(), 12);
  EXPECT_EQ(item.ExtroExtra(3)->HardwareLine(), 13);
  for (const std::string& text :
       {extras + lines, "InfoAvailable=2 " + extras + lines,
        "InfoAvailable=2 ExtroEndHW=1 " + extras +
            " IntroStartHW=1 IntroEndH=2 IntroEndHW =2 ExtroHW=3 HookStartHW=4 HookEndHW=5 IntroEndHW=2"}) {
    cHDItem old;
    old.SetSerialisation(text);
    EXPECT_EQ(old.AudioStartExtra(1)->HardwareLine(), 0) << text;
    EXPECT_EQ(old.IntroStartExtra(1)->HardwareLine(), 1);
    EXPECT_EQ(old.IntroEndExtra(1)->HardwareLine(), 2);
    EXPECT_EQ(old.ExtroExtra(1)->HardwareLine(), 3);
    EXPECT_EQ(old.HookStartExtra(1)->HardwareLine(), 4);
    EXPECT_EQ(old.HookEndExtra(1)->HardwareLine(), 5);
    EXPECT_EQ(old.ExtroExtra(3)->HardwareLine(), 0);
  }
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
