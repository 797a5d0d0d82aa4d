#include <set>

#include "FieldFixture.h"
#include "item/ItemFields.h"
#include "item/cHDItemTimeExtra.h"
#include "kits/common/Files.h"
#include "kits/common/TagText.h"
#include "kits/common/Version.h"
#include "kits/common/XmlDocument.h"

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
  cHDItem item;
  // Without an end there is no hook.
  test::SetFields(item,
                  "HookStart=5;HookEnd2=5;LoopStart=0;AudioStart=-1;TypeNumber=-5;BackColour=0;"
                  "ContentTypeNumber=0;TimeStretchRatio=0;PictureFileName=  ;ItemTitle= ");
  for (const char* length : {"0", "-2"}) {
    SetFieldText(item, "ScheduledLength", length);
    EXPECT_EQ(item.Serialisation(), "Ref=\"\" InfAvail=3" + kVersions +
                                        " ITitle=\" \" TypNo=-5 CatNo=-1 HKSt2=0 HKEn2=5 SchLn=" + length +
                                        " BKCol=0");
  }
  item.SetInfoAvailable(static_cast<enInfoAvailable>(0));
  EXPECT_EQ(item.Serialisation(), "Ref=\"\"" + kVersions + " TypNo=-5 CatNo=-1 BKCol=0");
}

TEST(ItemXml, AFreshAndAFullItemInItsOrder) {
  cHDItem item;
  EXPECT_EQ(item.XML()->ToText(),
            "<hditem><Extro1><End>0</End></Extro1><Extro2><End>0</End></Extro2><Extro3><End>0</End></Extro3>"
            "<AudioLength>-1</AudioLength><TotalLength>0</TotalLength><NumberPictures>0</NumberPictures>"
            "<Origin><Date>1899-12-30T00:00:00</Date></Origin></hditem>");
  const std::string path = TemporaryFileName("wav");
  ASSERT_TRUE(WriteFileAtomically(path, "12345"));
  test::SetFields(
      item,
      "Reference=R&1;Version=2;ItemTitle=Title\x01;ArtistName2=Artist;ItemDescription3=Description;"
      "AirStartDate=45351;AirStartTime=3661.5;AirEndTime=60;KillDate=45352;TotalLength=100;AudioStart=0.5;"
      "IntroEnd=10;IntroStart=2.5;HookEnd3=9;LoopStart=1;LoopEnd=2;LoopNumberLoops=3;LoopPlayToEnd=1;"
      "Extro=90;Extro3=100;AudioEnd=95;ScheduledLength=96;EndType=slowfade;OriginalSource=CD;AudioFileExists="
      "1;"
      "AudioFileLength=1;CreatedDate=45000;BackColour=2575;TextColour=-2147483643;ProducerAppName=App;"
      "ProducerAppVersion=1;ContentTypeInfo=Song;TypeInfo=T;CategoryInfo=C;CutID=Cut;URL=u;Year=1999;"
      "StudioNotes=s;StudioNotesFileName=f;DABNotes=d;WebNotes=w;NumberPictures=1;PictureFileName=p;"
      "CopyrightCode=c;CopyrightMusicDuration=1.5;ISRC=i;Originator=o;OriginatorReference=or;"
      "OriginationDate=45000;CustomField2=x;OnlineStoreReference=os;RightsManagementReference=rm");
  item.SetAudioFileName(path);
  item.IntroStartExtra(1)->SetHardwareLine(3);
  item.IntroEndExtra(1)->SetHardwareLine(4);
  item.HookEndExtra(3)->SetHardwareLine(5);
  item.ExtroExtra(1)->SetHardwareLine(6);
  item.AddLastPlay(45000.5, "4");
  item.AddLastPlay(45001, "0");
  EXPECT_EQ(
      item.XML()->ToText(),
      "<hditem><Reference>R&amp;1</Reference><Version>2</Version><ItemTitle>Title</ItemTitle><Artist2>"
      "<Name>Artist</Name></Artist2><Description3>Description</Description3>"
      "<AirStart>2024-02-29T01:01:01</AirStart><AirEnd>1899-12-30T00:01:00</AirEnd><Kill>2024-03-01</Kill>"
      "<AudioStart1>0.5</AudioStart1><Intro1><Start>2.5</Start><StartHardware>3</StartHardware><End>10</End>"
      "<EndHardware>4</EndHardware><Length>7.5</Length></Intro1><Hook><End>9</End>"
      "<EndHardware>5</EndHardware><Length>9</Length></Hook><Loop><Start>1</Start>"
      "<NumberLoops>3</NumberLoops><PlayToEnd>True</PlayToEnd><End>2</End></Loop><Extro1><Start>90</Start>"
      "<StartHardware>6</StartHardware><End>100</End><Length>10</Length></Extro1><Extro2><Start>0</Start>"
      "<End>100</End><Length>100</Length></Extro2><Extro3><End>100</End></Extro3><AudioEnd1>95</AudioEnd1>"
      "<AudioLength>94.5</AudioLength><TotalLength>100</TotalLength><ScheduledLength>96</ScheduledLength>"
      "<EndType>slowfade</EndType><OriginalSource>CD</OriginalSource><UNCFilename>" +
          path +
          "</UNCFilename><FileLength>5</FileLength><Created>2023-03-15T00:00:00</Created>"
          "<BackColour>#000a0f</BackColour><TextColour>COLOR_WINDOW</TextColour>"
          "<ProducerAppName>App</ProducerAppName><ProducerAppVersion>1</ProducerAppVersion>"
          "<ContentType>Song</ContentType><Type>T</Type><Category>C</Category><CutID>Cut</CutID><URL>u</URL>"
          "<Year>1999</Year><StudioNotes>s</StudioNotes><StudioNotesFilename>f</StudioNotesFilename>"
          "<DABNotes>d</DABNotes><Webnotes>w</Webnotes><NumberPictures>1</NumberPictures>"
          "<PictureFileName>p</PictureFileName><Copyright><Code>c</Code><MusicDuration>1.5</MusicDuration>"
          "<ISRC>i</ISRC></Copyright><Origin><Name>o</Name><Reference>or</Reference>"
          "<Date>2023-03-15T00:00:00</Date></Origin><CustomField2>x</CustomField2>"
          "<OnlineStoreReference>os</OnlineStoreReference>"
          "<RightsMangementRef>rm</RightsMangementRef><LastPlay1>"
          "<PlayedAt>2023-03-15T12:00:00</PlayedAt><TerminalRef>4</TerminalRef></LastPlay1><LastPlay2>"
          "<PlayedAt>2023-03-16T00:00:00</PlayedAt></LastPlay2></hditem>");
  DeleteFile(path);
}

}  // namespace
}  // namespace qm
