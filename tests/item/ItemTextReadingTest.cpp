#include <gtest/gtest.h>

#include <random>
#include <set>

#include "item/ItemFieldAccess.h"
#include "item/ItemFields.h"
#include "item/cHDItem.h"
#include "item/cHDItemTimeExtra.h"

namespace qm {
namespace {

TEST(ItemTextReading, AnEmptyTextIsRefusedAndChangesNothing) {
  cHDItem item;
  item.SetItemTitle("kept");
  for (const char* text : {"", "\r\n\t "}) EXPECT_FALSE(item.SetSerialisation(text));
  EXPECT_EQ(item.ItemTitle(), "kept");
}

TEST(ItemTextReading, FieldsFromTheirKeysAndTheWordsThatSwitchThem) {
  struct Case {
    const char* pairs;
    const char* field;
    const char* value;
    float lengthBefore = 20;
  };
  const Case cases[] = {
      {"ITitle=\"a = b %22c%22\"", "ItemTitle", "a = b \"c\""},
      {"Year=1999x", "Year", "1999"},
      {"Ver=99999", "Version", "32767"},
      {"AudFEx=-1", "AudioFileExists", "1"},
      {"LPPToEn=2", "LoopPlayToEnd", "1"},
      {"PicFName=a%22b.png", "PictureFileName", "a%22b.png"},
      {"PicFName=cover front.png", "PictureFileName", "cover"},
      {"DNotes=\"lost\"", "DABNotes", ""},
      {"DABNotes=\"read\"", "DABNotes", "read"},
      {"KillDt=2024-02-29", "KillDate", "45351"},
      {"ContTyp=\"old\" ContTypInf=\"new\"", "ContentTypeInfo", "new"},
      {"", "ContentTypeNumber", "0"},
      {"BKCol=255", "BackColour", "-2147483633"},
      {"BKCol=255 ITitle=\"the BackColour\"", "BackColour", "255"},
      {"TXCol=255 TextColour", "TextColour", "255"},
      {"TextColour=7", "TextColour", "0"},
      {"InfAvail=17", "InfoAvailable", "17"},
      {"", "InfoAvailable", "3"},
      {"AudSt1=1 AudStEx2=\"HardwareLine=3\"", "AudioStart", "0"},
      {"AudSt1=1 AudStEx1=\"2.5 HardwareLine=3\"", "AudioStart", "2.5"},
      {"AudSt1=1 ITitle=\"AudStEx\"", "AudioStart", "0"},
      {"InSt2=5 InEn2=4", "IntroStart2", "4"},
      {"InSt1=1 InEn1=4 InEx1=2 InEx3=3", "IntroStart", "2"},
      {"InSt1=1 InEn1=4 InEx1=2 InEx3=3", "IntroEnd", "3"},
      {"InSt2=1 InEn2=4 InEx1=2 InEx3=3", "IntroEnd2", "0"},
      {"InEn2=4 InEnExtra2=\"HardwareLine=3\"", "IntroEnd2", "4"},
      {"HKSt=2 HKEn=5 HKSt1=1 HKEn1=4", "HookEnd", "4"},
      {"HKStart=0 HKSt=2 HKEn=5 HKSt1=1 HKEn1=4", "HookEnd", "5"},
      {"Ex1=8 ExEx3=\"HardwareLine=3\"", "Extro", "0"},
      {"Ex1=8 ExEx1=7", "Extro", "7"},
      {"AudEn=7 AudEn1=8 AudEn3=9", "AudioEnd", "7"},
      {"AudEn=7 AudEn1=8 AudEn3=9", "AudioEnd3", "20"},
      {"", "LoopStart", "0"},
      {"HKEx1=7 AudStEx1=8 Ex1=4", "Extro", "4"},
      {"InfAvail=1 AudSt1=3", "AudioStart", "0"},
      {"AudEn1=18 TotLn=15", "AudioEnd", "15"},
      {"AudEn1=18 TotLn=15 LPEn=17", "LoopEnd", "17"},  // the loop is read behind it
      {"AudEn1=12 TotLn=15", "AudioEnd", "15", 0},      // the first length moves every end to it
  };
  for (const Case& c : cases) {
    // The length is known before, so that the text's does not move every end, and the first of a key counts.
    cHDItem item;
    item.SetTotalLength(c.lengthBefore);
    item.SetSerialisation("SerVer=3.005011 " + std::string(c.pairs) +
                          " TotLn=20 AudEn1=20 AudEn2=20 AudEn3=20");
    EXPECT_EQ(FieldText(item, c.field), c.value) << c.pairs;
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
  ASSERT_TRUE(item.SetSerialisation("SerVer=3.005011 TSRatio=0 PicFName= SchLn="));
  for (const ItemField& field : ItemFields()) {
    if (field.id == eifInfoAvailable) continue;
    const bool empty = field.kind == ifkColour ? IsDefault(item, field, 1)
                       : field.IsText()        ? field.text(item, 1).empty()
                                               : field.number(item, 1) == 0;
    EXPECT_NE(empty, stays.contains(field.name)) << field.name;
  }
  item.SetSerialisation("SerVer=3.005011 SchLn=0");
  EXPECT_EQ(item.ScheduledLength(), 0);
}

TEST(ItemTextReading, ExtrasFromTheKeysOfReaders) {
  // In the order of the table of extras.
  const char* keys[] = {"AudStEx", "AudEnEx", "InStartEx", "InEndEx", "HKStEx", "HKEnEx", "ExEx"};
  std::string text = "SerVer=3.005011";
  for (int row = 0; row < 7; ++row)
    text += std::string(" ") + keys[row] + "2=\"HardwareLine=" + std::to_string(10 + row) +
            " HardwareAction=4 CommandName=%22go%22\"";
  cHDItem item;
  item.SetSerialisation(text);
  for (const ItemExtra& row : ItemExtras())
    EXPECT_EQ((item.*row.get)(2)->Serialisation(),
              "HardwareLine=" + std::to_string(10 + (&row - ItemExtras().data())) +
                  " HardwareAction=4 CommandName=\"4\"")
        << row.name;
  item.SetSerialisation("SerVer=3.005011 InStEx2=\"HardwareLine=3\" InEnExtra2=\"HardwareLine=3\"");
  for (const ItemExtra& row : ItemExtras()) EXPECT_EQ((item.*row.get)(2)->Serialisation(), "") << row.name;
}

TEST(ItemTextReading, PlaysCollect) {
  cHDItem item;
  item.AddLastPlay(40000, "1");
  const std::string pairs = "NoLstPly=3 LstPly1=45000.25 LstPlyRef1=7 LstPly3=45001 LstPlyRef2=9 LstPly4=1";
  item.SetSerialisation("SerVer=3.005011 " + pairs);
  item.SetSerialisation("SerVer=3.005011 " + pairs);
  ASSERT_EQ(item.NumberLastPlays(), 5);
  EXPECT_EQ(item.LastPlay(1), 40000);
  EXPECT_EQ(item.LastPlay(4), 45000.25);
  EXPECT_EQ(item.LastPlayReference(4), "7");
  EXPECT_EQ(item.LastPlayReference(5), "");
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
      " ",        "=",        "\"",        "SerVer=3.005011 ", "InfAvail=65535 ", "LstPly1=", "1e999",
      " Ref=",    " AudStEx", " InEx1=",   " HKStart=",        " AudEn=",         " TotLn=",  "-5",
      "\"%22",    "\xFF",     " Notes=",   " InfoAvailable=",  " NoLstPly=",      "32767 ",   "IntroEndHW=",
      " KillDt=", "nan",      " ExEx2=\"", " BackColour",      "2000000000 ",     " SchLn=",  " TSRatio="};
  std::mt19937 random(7);
  for (int round = 0; round < 3000; ++round) {
    std::string text = "x";
    for (auto length = random() % 40; length > 0; --length) text += pieces[random() % std::size(pieces)];
    cHDItem item;
    EXPECT_TRUE(item.SetSerialisation(text));
    // What was read can be written, and that read again.
    cHDItem again;
    EXPECT_TRUE(again.SetSerialisation(item.Serialisation())) << text;
  }
}

TEST(ItemTextReading, AHostileMegabyteIsReadInPasses) {
  std::string text = "SerVer=3.005011 NoLstPly=2000000000";
  for (int i = 0; text.size() < 1000000; ++i) text += " LstPl=1 Lst LstPly0=\" LstPlyRe" + std::to_string(i);
  cHDItem item;
  EXPECT_TRUE(item.SetSerialisation(text + " LstPly32767=45000"));
  EXPECT_EQ(item.NumberLastPlays(), 1);
}

TEST(ItemTextReading, AnItemMayBeSetFromItsOwnField) {
  cHDItem item;
  item.SetReference("SerVer=3.005011 Ref=\"a\" ITitle=\"a title that is longer than small texts are\"");
  item.SetSerialisation(item.Reference());
  EXPECT_EQ(item.ItemTitle(), "a title that is longer than small texts are");
}

}  // namespace
}  // namespace qm
