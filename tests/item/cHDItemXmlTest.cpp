#include <gtest/gtest.h>

#include "item/cHDItem.h"
#include "item/cHDItemTimeExtra.h"
#include "kits/common/Files.h"
#include "kits/common/XmlDocument.h"

namespace qm {
namespace {

std::string Element(const std::string& name, const std::string& inner) {
  return "<" + name + ">" + inner + "</" + name + ">";
}

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
  item.SetReference("R&1");
  item.SetVersion(2);
  item.SetItemTitle("Title\x01");
  item.SetArtistName(2, "Artist");
  item.SetItemDescription(3, "Description");
  item.SetAirStartDate(45351);
  item.SetAirStartTime(3661.5f);
  item.SetAirEndTime(60);
  item.SetKillDate(45352);
  item.SetTotalLength(100);
  item.SetAudioStart(1, 0.5f);
  item.SetIntroEnd(1, 10);
  item.SetIntroStart(1, 2.5f);
  item.IntroStartExtra(1)->SetHardwareLine(3);
  item.IntroEndExtra(1)->SetHardwareLine(4);
  item.SetHookEnd(3, 9);
  item.HookEndExtra(3)->SetHardwareLine(5);
  item.SetLoopStart(1);
  item.SetLoopEnd(2);
  item.SetLoopNumberLoops(3);
  item.SetLoopPlayToEnd(true);
  item.SetExtro(1, 90);
  item.ExtroExtra(1)->SetHardwareLine(6);
  item.SetExtro(3, 100);
  item.SetAudioEnd(1, 95);
  item.SetScheduledLength(96);
  item.SetEndType(ietSlowFade);
  item.SetOriginalSource("CD");
  item.SetAudioFileName(path);
  item.SetAudioFileExists(true);
  item.SetAudioFileLength(1);
  item.SetCreatedDate(45000);
  item.SetBackColour(0x00A0F);
  item.SetTextColour(static_cast<std::int32_t>(0x80000005u));
  item.SetProducerAppName("App");
  item.SetProducerAppVersion("1");
  item.SetContentTypeInfo("Song");
  item.SetTypeInfo("T");
  item.SetCategoryInfo("C");
  item.SetCutID("Cut");
  item.SetURL("u");
  item.SetYear(1999);
  item.SetStudioNotes("s");
  item.SetStudioNotesFileName("f");
  item.SetDABNotes("d");
  item.SetWebNotes("w");
  item.SetNumberPictures(1);
  item.SetPictureFileName("p");
  item.SetCopyrightCode("c");
  item.SetCopyrightMusicDuration(1.5f);
  item.SetISRC("i");
  item.SetOriginator("o");
  item.SetOriginatorReference("or");
  item.SetOriginationDate(45000);
  item.SetCustomField(2, "x");
  item.SetOnlineStoreReference("os");
  item.SetRightsManagementReference("rm");
  item.AddLastPlay(45000.5, "4");
  item.AddLastPlay(45001, "0");
  EXPECT_EQ(
      item.XML()->ToText(),
      "<hditem><Reference>R&amp;1</Reference><Version>2</Version><ItemTitle>Title</ItemTitle>"
      "<Artist2><Name>Artist</Name></Artist2><Description3>Description</Description3>"
      "<AirStart>2024-02-29T01:01:01</AirStart><AirEnd>1899-12-30T00:01:00</AirEnd><Kill>2024-03-01</Kill>"
      "<AudioStart1>0.5</AudioStart1>"
      "<Intro1><Start>2.5</Start><StartHardware>3</StartHardware><End>10</End><EndHardware>4</EndHardware>"
      "<Length>7.5</Length></Intro1>"
      "<Hook><End>9</End><EndHardware>5</EndHardware><Length>9</Length></Hook>"
      "<Loop><Start>1</Start><NumberLoops>3</NumberLoops><PlayToEnd>True</PlayToEnd><End>2</End></Loop>"
      "<Extro1><Start>90</Start><StartHardware>6</StartHardware><End>100</End><Length>10</Length></Extro1>"
      "<Extro2><Start>0</Start><End>100</End><Length>100</Length></Extro2><Extro3><End>100</End></Extro3>"
      "<AudioEnd1>95</AudioEnd1><AudioLength>94.5</AudioLength><TotalLength>100</TotalLength>"
      "<ScheduledLength>96</ScheduledLength><EndType>slowfade</EndType><OriginalSource>CD</OriginalSource>" +
          Element("UNCFilename", path) +
          "<FileLength>5</FileLength><Created>2023-03-15T00:00:00</Created><BackColour>#000a0f</BackColour>"
          "<TextColour>COLOR_WINDOW</TextColour><ProducerAppName>App</ProducerAppName>"
          "<ProducerAppVersion>1</ProducerAppVersion><ContentType>Song</ContentType><Type>T</Type>"
          "<Category>C</Category><CutID>Cut</CutID><URL>u</URL><Year>1999</Year><StudioNotes>s</StudioNotes>"
          "<StudioNotesFilename>f</StudioNotesFilename><DABNotes>d</DABNotes><Webnotes>w</Webnotes>"
          "<NumberPictures>1</NumberPictures><PictureFileName>p</PictureFileName>"
          "<Copyright><Code>c</Code><MusicDuration>1.5</MusicDuration><ISRC>i</ISRC></Copyright>"
          "<Origin><Name>o</Name><Reference>or</Reference><Date>2023-03-15T00:00:00</Date></Origin>"
          "<CustomField2>x</CustomField2><OnlineStoreReference>os</OnlineStoreReference>"
          "<RightsMangementRef>rm</RightsMangementRef>"
          "<LastPlay1><PlayedAt>2023-03-15T12:00:00</PlayedAt><TerminalRef>4</TerminalRef></LastPlay1>"
          "<LastPlay2><PlayedAt>2023-03-16T00:00:00</PlayedAt></LastPlay2></hditem>");
  DeleteFile(path);
}

}  // namespace
}  // namespace qm
