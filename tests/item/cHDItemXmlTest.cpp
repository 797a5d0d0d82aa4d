#include "FieldFixture.h"
#include "item/cHDItemTimeExtra.h"
#include "kits/common/Files.h"
#include "kits/common/XmlDocument.h"

namespace qm {
namespace {

TEST(cHDItemXml, AFreshItem) {
  EXPECT_EQ(cHDItem().XML()->ToText(),
            "<hditem><Extro1><End>0</End></Extro1><Extro2><End>0</End></Extro2><Extro3><End>0</End></Extro3>"
            "<AudioLength>-1</AudioLength><TotalLength>0</TotalLength><NumberPictures>0</NumberPictures>"
            "<Origin><Date>1899-12-30T00:00:00</Date></Origin></hditem>");
}

TEST(cHDItemXml, AFullItemInItsOrder) {
  const std::string path = TemporaryFileName("wav");
  ASSERT_TRUE(WriteFileAtomically(path, "12345"));
  cHDItem item;
  test::SetFields(
      item,
      "Reference=R&1;Version=2;ItemTitle=Title\x01;ArtistName2=Artist;ItemDescription3=Description;"
      "AirStartDate=45351;AirStartTime=3661.5;AirEndTime=60;KillDate=45352;TotalLength=100;AudioStart=0.5;"
      "IntroEnd=10;IntroStart=2.5;HookEnd3=9;LoopStart=1;LoopEnd=2;LoopNumberLoops=3;LoopPlayToEnd=1;Extro="
      "90;"
      "Extro3=100;AudioEnd=95;ScheduledLength=96;EndType=slowfade;OriginalSource=CD;AudioFileExists=1;"
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
          "<OnlineStoreReference>os</OnlineStoreReference><RightsMangementRef>rm</"
          "RightsMangementRef><LastPlay1>"
          "<PlayedAt>2023-03-15T12:00:00</PlayedAt><TerminalRef>4</TerminalRef></LastPlay1><LastPlay2>"
          "<PlayedAt>2023-03-16T00:00:00</PlayedAt></LastPlay2></hditem>");
  DeleteFile(path);
}

}  // namespace
}  // namespace qm
