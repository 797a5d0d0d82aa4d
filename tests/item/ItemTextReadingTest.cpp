#include <gmock/gmock.h>

#include <random>
#include <set>

#include "FieldFixture.h"
#include "item/ItemFields.h"
#include "item/cHDItemTimeExtra.h"

namespace qm {
namespace {

using ::testing::ElementsAre;

const std::string kShort = "SerVer=3.005011 ";

struct Reading {
  const char* text;
  const char* fields;  // what it gives
  float lengthBefore = 20;
};

const Reading kShortTexts[] = {
    {"ITitle=\"a = b %22c%22\" Year=1999x Ver=99999 AudFEx=-1 LPPToEn=2 PicFName=a%22b.png DNotes=\"lost\" "
     "KillDt=2024-02-29 ContTyp=\"old\" ContTypInf=\"new\" InfAvail=19",
     "ItemTitle=a = b \"c\";Year=1999;Version=32767;AudioFileExists=1;LoopPlayToEnd=1;DABNotes=;"
     "PictureFileName=a%22b.png;KillDate=45351;ContentTypeInfo=new;InfoAvailable=19"},
    {"PicFName=cover front.png DABNotes=\"read\" BKCol=255",
     "PictureFileName=cover;DABNotes=read;ContentTypeNumber=0;BackColour=-2147483633;InfoAvailable=3"},
    {"BKCol=255 ITitle=\"the BackColour\" TXCol=255 TextColour", "BackColour=255;TextColour=255"},
    {"TextColour=7", "TextColour=0"},
    // Marks and the words that switch their keys
    {"AudSt1=1 AudStEx2=\"HardwareLine=3\" InSt2=5 InEn2=4", "AudioStart=0;IntroStart2=4"},
    {"AudSt1=1 AudStEx1=\"2.5 HardwareLine=3\" Ex1=8 ExEx3=\"HardwareLine=3\"", "AudioStart=2.5;Extro=0"},
    {"AudSt1=1 ITitle=\"AudStEx\" Ex1=8 ExEx1=7", "AudioStart=0;Extro=7"},
    {"InSt1=1 InEn1=4 InEx1=2 InEx3=3 InSt2=1 InEn2=4", "IntroStart=2;IntroEnd=3;IntroEnd2=0"},
    {"InEn2=4 InEnExtra2=\"HardwareLine=3\" HKSt=2 HKEn=5 HKSt1=1 HKEn1=4", "IntroEnd2=4;HookEnd=4"},
    {"HKStart=0 HKSt=2 HKEn=5 HKSt1=1 HKEn1=4", "HookEnd=5"},
    {"AudEn=7 AudEn1=8 AudEn3=9", "AudioEnd=7;AudioEnd3=20"},
    {"HKEx1=7 AudStEx1=8 Ex1=4", "Extro=4"},
    {"InfAvail=1 AudSt1=3", "AudioStart=0"},
    {"AudEn1=18 TotLn=15 LPEn=17", "AudioEnd=15;LoopEnd=17"},  // the loop is read behind it
    {"AudEn1=12 TotLn=15", "AudioEnd=15", 0},                  // the first length moves every end to it
};

const Reading kLongTexts[] = {
    {"InfoAvailable=34 PictureCount=3 NumberPictures=4 ItemTitle=t", "NumberPictures=3;ItemTitle="},
    {"ContentType=\"a%22\" PictureFileName=\"a b%22\" BackColour=255 ItemTitle=\"TextColour\"",
     "ContentTypeInfo=a\";PictureFileName=a b%22;BackColour=255;TextColour=0"},
    {"ContentTypeInfo=\"b\" ContentType=\"a\" TotalLength=12 ScheduledLength=7",
     "ContentTypeInfo=b;ScheduledLength=12"},
    {"Ref=\"short\" ITitle=\"short\"", "Reference=;ItemTitle="},
    // Groups are read where they are available or the text is very old, which has the notes under "Notes".
    {"InfoAvailable=0 ItemTitle=t Composer=c", "ItemTitle=t;Composer=c;InfoAvailable=3"},
    {"InfoAvailable=1 AudioStart1=4 PictureCount=2 CopyrightComposer=c",
     "AudioStart=0;NumberPictures=0;Composer="},
    {"AudioStart1=4 StudioNotes=n WebNotes=w PictureCount=2",
     "AudioStart=4;StudioNotes=;WebNotes=w;NumberPictures=2"},
    {"InfoAvailable=8 StudioNotes=n", "StudioNotes="},
    {"InfoAvailable=4 WebNotes=w", "WebNotes="},
    {"InfoAvailable=\"32\"", "InfoAvailable=32"},
    {"Notes=\"a%22\" InfoAvailable=4 StudioNotes=n", "StudioNotes=a\""},
    {"InfoAvailable=4 WebNotes=a StudioNotes=n", "StudioNotes=n"},
    {"InfoAvailable=1 Notes=a CopyrightComposer=c", "Composer=c"},
    {"InfoAvailable=16 Notes=a CopyrightComposer=c Composer=d", "Composer=d"},
    {"AudioStart1=2 AudioStartEx1=3 IntroStart1=1 IntroEnd1=4 IntroEx1=2 IntroEx3=3 Extro2=4 ExtroEx2=3",
     "AudioStart=3;IntroStart=2;IntroEnd=3;Extro2=3"},
    {"AudioStart1=2 AudioStartExtra1=\"HardwareLine=3\"", "AudioStart=0"},
    {"HookStart=2 HookEnd=5 HookStart1=1 HookEnd1=4 AudioEnd=7 AudioEnd1=8", "HookEnd=5;AudioEnd=7"},
};

// The length is known before, so that the text's does not move every end, and the first of a key counts.
void ExpectRead(const Reading& row, const std::string& before, const std::string& behind) {
  cHDItem item;
  item.SetTotalLength(row.lengthBefore);
  item.SetSerialisation(before + row.text + behind);
  test::ExpectFields(item, row.fields, row.text);
}

TEST(ItemTextReading, FieldsFromTheirKeysAndTheWordsThatSwitchThem) {
  for (const Reading& row : kShortTexts) ExpectRead(row, kShort, " TotLn=20 AudEn1=20 AudEn2=20 AudEn3=20");
  for (const Reading& row : kLongTexts)
    ExpectRead(row, "", " AudioEnd1=20 AudioEnd2=20 AudioEnd3=20 TotalLength=20");
}

TEST(ItemTextReading, EveryFieldFromItsFullName) {
  // The colours are looked for by these very words, the others by keys of their own.
  const std::set<std::string> apart = {"InfoAvailable", "NumberPictures", "ScheduledLength"};
  const std::set<std::string> absent = {"AudioFileType", "TimeStretchRatio",  "KillDate",
                                        "CustomField",   "LastRefreshedDate", "LastRefreshedTime"};
  const std::set<std::int32_t> ends = {eifAudioEnd, eifIntroEnd, eifHookEnd, eifTotalLength};
  for (const ItemField& field : ItemFields()) {
    if (apart.contains(field.name)) continue;
    for (std::int32_t index = 1; index <= field.count; ++index) {
      const std::string key = field.name + (field.count > 1 ? std::to_string(index) : "");
      cHDItem item;
      item.SetTotalLength(100);
      item.SetSerialisation(
          "InfoAvailable=65535 AudioEnd1=9 AudioEnd2=9 AudioEnd3=9 IntroEnd1=9 IntroEnd2=9 IntroEnd3=9"
          " HookEnd1=9 HookEnd2=9 HookEnd3=9 TotalLength=9 " +
          key + (field.IsText() ? "=\"a b\"" : "=1"));
      if (absent.contains(field.name))
        EXPECT_TRUE(IsDefault(item, field, index)) << key;
      else
        EXPECT_EQ(FieldText(item, field, index), ends.contains(field.id) ? "9"
                                                 : field.IsText()        ? "a b"
                                                                         : "1")
            << key;
    }
  }
}

TEST(ItemTextReading, FieldsThatTheTextDoesNotHoldAreClearedButForAFew) {
  const std::set<std::string> stays = {"TimeStretchRatio", "PictureFileName", "ScheduledLength",
                                       "LastRefreshedDate", "LastRefreshedTime"};
  cHDItem item;
  for (const ItemField& field : ItemFields()) {
    if (field.IsText())
      field.setText(item, 1, "x");
    else
      field.setNumber(item, 1, 1);
  }
  for (const char* nothing : {"", "\r\n\t "}) EXPECT_FALSE(item.SetSerialisation(nothing));
  EXPECT_EQ(item.ItemTitle(), "x");
  ASSERT_TRUE(item.SetSerialisation(kShort + "TSRatio=0 PicFName= SchLn="));
  for (const ItemField& field : ItemFields()) {
    if (field.id == eifInfoAvailable) continue;
    const bool empty = field.kind == ifkColour ? IsDefault(item, field, 1)
                       : field.IsText()        ? field.text(item, 1).empty()
                                               : field.number(item, 1) == 0;
    EXPECT_NE(empty, stays.contains(field.name)) << field.name;
  }
  item.SetSerialisation(kShort + "SchLn=0");
  EXPECT_EQ(item.ScheduledLength(), 0);
}

TEST(ItemTextReading, ExtrasFromTheKeysOfReaders) {
  std::string text = kShort;
  int line = 10;  // in the order of the table of extras
  for (const char* key : {"AudStEx", "AudEnEx", "InStartEx", "InEndEx", "HKStEx", "HKEnEx", "ExEx"})
    text += std::string(" ") + key + "2=\"HardwareLine=" + std::to_string(line++) +
            " HardwareAction=4 CommandName=%22go%22\"";
  cHDItem item;
  item.SetSerialisation(text);
  line = 10;
  for (const ItemExtra& row : ItemExtras())
    EXPECT_EQ((item.*row.get)(2)->Serialisation(),
              "HardwareLine=" + std::to_string(line++) + " HardwareAction=4 CommandName=\"4\"")
        << row.name;
  item.SetSerialisation(kShort + "InStEx2=\"HardwareLine=3\" InEnExtra2=\"HardwareLine=3\"");
  for (const ItemExtra& row : ItemExtras()) EXPECT_EQ((item.*row.get)(2)->Serialisation(), "") << row.name;
}

TEST(ItemTextReading, ExtrasOrTheHardwareLinesOfVeryOldTexts) {
  const std::string extras = "AudioStartExtra1=\"HardwareLine=11\" ExtroExtra3=\"HardwareLine=13\"";
  const std::string lines = " IntroStartHW=1 IntroEndHW=2 ExtroHW=3 HookStartHW=4 HookEndHW=5";
  const auto read = [](const std::string& text) {
    cHDItem item;
    item.SetSerialisation(text);
    std::string found;
    for (const std::int32_t set : {1, 3})
      for (const ItemExtra& row : ItemExtras())
        found += std::to_string((item.*row.get)(set)->HardwareLine()) + " ";
    return found;
  };
  EXPECT_EQ(read("InfoAvailable=2 " + extras), "11 0 0 0 0 0 0 0 0 0 0 0 0 13 ");
  for (const char* before : {"", "InfoAvailable=2 ExtroEndHW=1 IntroEndH=2 IntroEndHW =2 "})
    EXPECT_EQ(read(before + extras + lines), "0 0 1 2 4 5 3 0 0 0 0 0 0 0 ") << before;
}

TEST(ItemTextReading, PlaysCollect) {
  cHDItem item;
  item.AddLastPlay(40000, "1");
  for (int twice = 0; twice < 2; ++twice)
    item.SetSerialisation(kShort +
                          "NoLstPly=3 LstPly1=45000.25 LstPlyRef1=7 LstPly3=45001 LstPlyRef2=9 LstPly4=1");
  item.SetSerialisation("NumberLastPlays=2 LastPlay1=45002 LastPlayReference1=4 LastPlay2=45003 LastPlay3=1");
  std::vector<std::pair<double, std::string>> plays;
  for (std::int32_t i = 1; i <= item.NumberLastPlays(); ++i)
    plays.emplace_back(item.LastPlay(i), item.LastPlayReference(i));
  using Play = std::pair<double, std::string>;
  EXPECT_THAT(plays, ElementsAre(Play(40000, "1"), Play(45000.25, "7"), Play(45001, ""), Play(45000.25, "7"),
                                 Play(45001, ""), Play(45002, "4"), Play(45003, "")));
}

TEST(ItemTextReading, TheVersionChoosesTheForm) {
  // The second is the same in single precision.
  for (const auto& [version, title] : {std::pair{"SerVer=3.005011", "s"},
                                       {"SerVer=3.005010999", "s"},
                                       {"SerVer=3.005010", "l"},
                                       {"", "l"}}) {
    cHDItem item;
    EXPECT_TRUE(item.SetSerialisation(std::string(version) + " ITitle=s ItemTitle=l"));
    EXPECT_EQ(item.ItemTitle(), title) << version;
  }
}

TEST(ItemTextReading, AnyTextIsReadWithoutHarm) {
  const char* pieces[] = {
      " ",   "=",       "\"",     "SerVer=3.005011 ", "InfAvail=65535 ", "LstPly1=",    "1e999",   " Ref=",
      "-5",  "\"%22",   "\xFF",   " AudStEx",         " InEx1=",         " HKStart=",   " AudEn=", " TotLn=",
      "nan", " Notes=", "32767 ", " InfoAvailable=",  " NoLstPly=",      "IntroEndHW=", " KillDt="};
  std::mt19937 random(7);
  for (int round = 0; round < 3000; ++round) {
    std::string text = "x";
    for (auto length = random() % 40; length > 0; --length) text += pieces[random() % std::size(pieces)];
    cHDItem item, again;
    EXPECT_TRUE(item.SetSerialisation(text));
    EXPECT_TRUE(again.SetSerialisation(item.Serialisation())) << text;
  }
}

TEST(ItemTextReading, AHostileMegabyteIsReadInPasses) {
  std::string text = kShort + "NoLstPly=2000000000";
  for (int i = 0; text.size() < 1000000; ++i) text += " LstPl=1 Lst LstPly0=\" LstPlyRe" + std::to_string(i);
  cHDItem item;
  EXPECT_TRUE(item.SetSerialisation(text + " LstPly32767=45000"));
  EXPECT_EQ(item.NumberLastPlays(), 1);
}

TEST(ItemTextReading, AnItemMayBeSetFromItsOwnField) {
  cHDItem item;
  item.SetReference(kShort + "Ref=\"a\" ITitle=\"a title that is longer than small texts are\"");
  item.SetSerialisation(item.Reference());
  EXPECT_EQ(item.ItemTitle(), "a title that is longer than small texts are");
}

}  // namespace
}  // namespace qm
