#include <gtest/gtest.h>

#include <set>

#include "item/ItemFieldAccess.h"
#include "item/ItemFields.h"
#include "item/cHDItem.h"
#include "item/cHDItemTimeExtra.h"
#include "kits/common/TagText.h"
#include "kits/common/Version.h"

namespace qm {
namespace {

const std::string kVersions = " AppVer=v" + LibraryVersion() + " SerVer=3.005011";

// Every field as its number in the order of the interface, marks such that none pulls another back.
void FillAll(cHDItem& item) {
  item.SetTotalLength(500);
  for (const ItemField& field : ItemFields()) {
    if (field.id == eifInfoAvailable || field.id == eifTotalLength || field.id == eifAudioEnd) continue;
    for (std::int32_t index = 1; index <= field.count; ++index) {
      const double number = field.id + index;
      if (field.IsText())
        field.setText(item, index, field.key + std::string(" \"") + std::to_string(index));
      else
        field.setNumber(item, index, number);
    }
  }
  item.SetInfoAvailable(hiafull);
  item.AddLastPlay(45000.25, "7");
  item.AddLastPlay(-1, "studio");
  item.AddLastPlay(45001, "8b c");
}

TEST(ItemTextWriting, AFreshAndAFullItemInTheOrderThatReadersKnow) {
  cHDItem item;
  EXPECT_EQ(item.Serialisation(), "Ref=\"\" InfAvail=3" + kVersions + " TSRatio=1 ContTypNo=-1 CatNo=-1");
  FillAll(item);
  for (const ItemExtra& extra : ItemExtras()) (item.*extra.get)(2)->SetHardwareLine(9);
  item.ExtroExtra(3)->SetCommandName("go");
  item.SetKillDate(45351);
  item.SetPictureFileName("  cover front.png ");
  EXPECT_EQ(
      item.Serialisation(),
      "Ref=\"Ref %221\" InfAvail=65535" + kVersions +
          " GUID=\"GUID %221\" AudFName=\"AudFName %221\" AudFType=7 OrigSource=\"OrigSource %221\" AudFLn=5 "
          "AudFEx=1 ITitle=\"ITitle %221\" OtherInf=\"OtherInf %221\" AName1=\"AName %221\" AName2=\"AName "
          "%222\" AName3=\"AName %223\" IDesc1=\"IDesc %221\" IDesc2=\"IDesc %222\" IDesc3=\"IDesc %223\" "
          "Year=13 NoLstPly=3 LstPly1=45000.25 LstPly3=45001 LstPlyRef1=7 LstPlyRef3=8b c PlayVol=11 "
          "TSRatio=12 StNotes=\"StNotes %221\" StNotesFName=\"StNotesFName %221\" WNotes=\"WNotes %221\" "
          "DNotes=\"DNotes %221\" URL=\"URL %221\" OStRef=\"OStRef %221\" CField1=\"CField %221\" "
          "CField2=\"CField %222\" CField3=\"CField %223\" EnType=20 RManRef=\"RManRef %221\" "
          "PTitle=\"PTitle "
          "%221\" MTitle=\"MTitle %221\" RecLabel=\"RecLabel %221\" RecNo=\"RecNo %221\" ISRC=\"ISRC %221\" "
          "Composer=\"Composer %221\" Performer=\"Performer %221\" Publisher=\"Publisher %221\" "
          "CCode=\"CCode "
          "%221\" CTDur=31 CMDur=32 CrDt=33 CrTm=34 LastModDt=35 LastModTm=36 AirStDt=39 AirStTm=40 "
          "AirEnDt=41 "
          "AirEnTm=42 KillDt=2024-02-29 NoPics=44 PicFName=cover front.png ContTypInf=\"ContTypInf %221\" "
          "ContTypNo=47 TypInf=\"TypInf %221\" TypNo=51 CatInf=\"CatInf %221\" CatNo=49 CodHis=\"CodHis "
          "%221\" "
          "Client=\"Client %221\" OutCue=\"OutCue %221\" Ver=55 CutID=\"CutID %221\" Org=\"Org %221\" "
          "OrgRef=\"OrgRef %221\" OrgDT=59 OrgTM=60 ProdAppName=\"ProdAppName %221\" ProdAppVer=\"ProdAppVer "
          "%221\" AudSt1=74 AudSt2=75 AudStEx2=\"HardwareLine=9\" AudSt3=76 InSt1=76 InSt2=77 "
          "InStEx2=\"HardwareLine=9\" InSt3=78 InEn1=77 InEn2=78 InEnExtra2=\"HardwareLine=9\" InEn3=79 "
          "Ex1=80 "
          "Ex2=81 ExEx2=\"HardwareLine=9\" Ex3=82 ExEx3=\"CommandName=%22go%22\" AudEn1=500 AudEn2=500 "
          "AudEnEx2=\"HardwareLine=9\" AudEn3=500 HKSt1=78 HKEn1=79 HKSt2=79 HKEn2=80 "
          "HKStEx2=\"HardwareLine=9\" HKEnEx2=\"HardwareLine=9\" HKSt3=80 HKEn3=81 LPSt=63 LPEn=64 "
          "LPNoLoops=65 LPPToEn=1 TotLn=500 SchLn=70 BKCol=67 TXCol=68");
}

TEST(ItemTextWriting, ReadersLoseWhatTheyHaveAlwaysLostAndNothingElse) {
  const std::set<std::string> lost = {"DABNotes", "BackColour", "TextColour", "StudioNotesFileName",
                                      "PictureFileName"};
  const auto item = std::make_shared<cHDItem>(), back = std::make_shared<cHDItem>();
  FillAll(*item);
  ASSERT_TRUE(back->SetSerialisation(item->Serialisation()));
  for (const ItemField& field : ItemFields()) {
    if (field.comparison == ifcApart) continue;
    for (std::int32_t index = 1; index <= field.count; ++index)
      EXPECT_EQ(FieldText(*back, field, index) != FieldText(*item, field, index), lost.contains(field.name))
          << field.name << index << ": " << FieldText(*back, field, index);
  }
}

TEST(ItemTextWriting, GroupsThatAreNotAvailableAreNotWritten) {
  cHDItem item;
  FillAll(item);
  item.SetReference("a\r\nb\t\"");
  const std::pair<std::int32_t, std::vector<std::string>> groups[] = {
      {hiaCaptions, {"ITitle", "IDesc3", "Year"}},
      {hiaTiming, {"AudSt1", "HKEn3", "TotLn", "LPPToEn"}},
      {hiaCopyright, {"Composer", "CTDur"}},
      {hiaPictures, {"NoPics"}},
      {hiaStudioNotes | hiaOtherNotes, {}}};
  for (const auto& [available, own] : groups) {
    item.SetInfoAvailable(static_cast<enInfoAvailable>(available));
    const std::string text = item.Serialisation();
    EXPECT_EQ(text.find_first_of("\r\n\t"), std::string::npos);
    for (const auto& [group, keys] : groups)
      for (const std::string& key : keys) EXPECT_EQ(GetTagValue(text, key) != "", group == available) << key;
    for (const char* key : {"StNotes", "PicFName", "CField2", "BKCol", "NoLstPly"})
      EXPECT_NE(GetTagValue(text, key), "") << key;
  }
}

TEST(ItemTextWriting, ConditionsOfSingleFields) {
  const struct {
    const char *field, *value, *key, *written;
  } cases[] = {
      {"HookStart", "5", "HKSt1", ""},  // without an end there is no hook
      {"HookEnd2", "5", "HKSt2", "0"},
      {"LoopStart", "0", "LPSt", ""},
      {"AudioStart", "-1", "AudSt1", ""},
      {"ScheduledLength", "0", "SchLn", "0"},
      {"ScheduledLength", "-2", "SchLn", "-2"},
      {"TypeNumber", "-5", "TypNo", "-5"},
      {"ContentTypeNumber", "0", "ContTypNo", ""},
      {"TimeStretchRatio", "0", "TSRatio", ""},
      {"BackColour", "0", "BKCol", "0"},
      {"PictureFileName", "  ", "PicFName", ""},
      {"ItemTitle", " ", "ITitle", " "},
      {"InfoAvailable", "0", "InfAvail", ""},
  };
  for (const auto& c : cases) {
    cHDItem item;
    ASSERT_EQ(SetFieldText(item, c.field, c.value), sfrSet) << c.field;
    const std::string text = item.Serialisation();
    EXPECT_EQ(GetTagValue(text, c.key), c.written) << c.field << "=" << c.value;
    EXPECT_EQ(text.find(std::string(" ") + c.key + "=") != std::string::npos, *c.written != 0) << c.field;
  }
}

}  // namespace
}  // namespace qm
