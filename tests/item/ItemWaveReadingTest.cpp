#include "FieldFixture.h"
#include "RiffFixture.h"
#include "item/ItemMetadata.h"

namespace qm {
namespace {

using namespace test;
using namespace std::string_literals;

struct Read {
  const char* name;
  std::string behind;
  std::string fields;  // of a file of 20 seconds
  enHDFileFlags flags = llfAutoDetect;
};

const std::string kOurs = "Quillmere CartChunk Interface";
constexpr std::size_t kProducer = 488, kUserDef = 616;

std::string Bext(const std::string& description, const std::string& history = "") {
  return Chunk(
      "bext",
      Laid(602, '\0',
           {{0, description}, {256, "Studio 1"}, {320, "2021/02/03"}, {330, "04-05-06"}, {346, "\x21\x03"}}) +
          history);
}

std::string Texts() {
  return Info(Chunk("INAM", "list") + Chunk("IART", "artist") + Chunk("ICRD", "1999-05-01")) +
         Id3(Frame("TIT2", "\0id3"s) + Frame("TPE2", "\0second"s));
}

const Read kRead[] = {
    {"nothing", "",
     "TotalLength=20;AudioStart1=0;AudioEnd1=20;AudioEnd3=20;Extro2=20;IntroStart1=0;IntroEnd1=0;HookStart1="
     "0;HookEnd3=0;LoopStart=0;LoopEnd=0;ScheduledLength=0"},
    {"id3OverList", Texts(), "ItemTitle=id3;ArtistName1=artist;ArtistName2=second;Year=1999"},
    {"listOnly", Texts(), "ItemTitle=list;ArtistName2=", llfListInfoChunk},
    {"cartOverAll", Texts() + Cart({{4, "cart"}}) + Bext("bext", "A=PCM"),
     "ItemTitle=cart;ArtistName1=;ItemDescription1=;Originator=;CodingHistory=A=PCM"},
    {"blankVersion", Texts() + Cart({{0, "    "}, {4, "cart"}}) + Bext("bext"), "ItemTitle=id3;Originator="},
    {"bextDescribes", Bext("  about  "),
     "ItemTitle=;ItemDescription1=about;Originator=Studio 1;"
     "OriginationDate=44230;OriginationTime=14706;Version=801"},
    {"bextNamesByFlag", Bext("about") + Cart({{4, "cart"}}), "ItemTitle=about;ItemDescription1=", llfBext},
    {"bextCutShort", Chunk("bext", "short"), "ItemDescription1=short;Version=0"},
    {"cartFields",
     Cart({{4, "T\xEFtle\0rubbish"s},
           {68, std::string(64, 'a')},
           {132, "cut "},
           {452, "2021/02/03"},
           {462, "01:02:03"},
           {470, "0000-00-00"},
           {480, "        "}}),
     "ItemTitle=T\xC3\xAFtle;CutID=cut;AirStartDate=44230;AirStartTime=3723;AirEndDate=0;AirEndTime=0;"
     "ArtistName1=" +
         std::string(64, 'a'),
     llfCartChunk},
    {"cartEndsEarly", Chunk("cart", Laid(500, ' ', {{0, "0101"}, {4, "short"}})),
     "ItemTitle=short;Extro1=20"},
    {"tagText",
     Cart({}, {},
          "<storeref>abc</STOREREF>\r\n<COMPOSER>\"J. \xC5\x81\" B\"</COMPOSER><PERFORMER>Caf\xE9</PERFORMER>"
          "<PRS>77</PRS><MUSICDURATION>1:02.50</MUSICDURATION><SCHEDULEDLENGTH>90</SCHEDULEDLENGTH>"
          "<BACKCOLOUR>&H000000FF</BACKCOLOUR><ENDING>SlowFade</ENDING><NOTES>no end\0<ISRC>x</ISRC>"s),
     "OnlineStoreReference=abc;Composer=J. \xC5\x81;"
     "Performer=Caf\xC3\xA9;RecordingNumber=77;CopyrightMusicDuration=62.5;ScheduledLength=90;"
     "BackColour=255;EndType=8;StudioNotes=;ISRC="},
    {"copyrightFromTitle", Cart({{4, "Song"}, {68, "Band"}}, {}, "<COMPOSER>Own</COMPOSER>"),
     "ProductTitle=Song;MusicTitle=Song;Composer=Own;Performer=Band", llfCartChunk | llfCopyrightFromTitle},
    {"userDefOverEnding",
     Cart({{kProducer, kOurs}, {kUserDef, "BackColor=&H00FF0000& EndingType=Sustain"}}, {},
          "<ENDING>S</ENDING>"),
     "EndType=0;BackColour=16711680"},
    {"userDefOfOthers", Cart({{kUserDef, "EndingType=Ends"}}, {}, "<ENDING>S</ENDING>"), "EndType=4"},
    {"timersWithGaps",
     Cart({{kProducer, kOurs}},
          {Timer("audS", 500), Timer("AUDx", 18000), Timer("    ", 0xFFFFFFFF), Timer("int1", 1000),
           Timer("INTe", 2000), Timer("EOD ", 4000), Timer("sec9", 16000), Timer("SEG2", 15000)}),
     "AudioStart1=0.5;AudioEnd1=18;IntroStart1=1;IntroEnd1=2;Extro1=15;Extro2=20"},
    {"timersPastTheEnd",
     Cart({}, {Timer("AUDe", 0xFFFFFFFE), Timer("INTe", 0x80000001), Timer("MRK1", 30000), Timer("MRK2", 1)}),
     "AudioEnd1=20;IntroEnd1=20;HookStart1=0.001;HookEnd1=0.001"},
    {"ourLoop", Cart({{kProducer, kOurs}}, {Timer("MRK3", 3000), Timer("MRK4", 2000)}),
     "LoopStart=4.5;LoopEnd=4.6"},
    {"loopOfOthers", Cart({}, {Timer("MRK3", 5000), Timer("MRK4", 9000)}), "LoopStart=0;LoopEnd=0"},
    {"rcsMedia",
     Cart({{kProducer, "RCS Master"}}, {Timer("SEG1", 3000)},
          "<m:Media trimStart=\"2\" trimEnd=\"99\"\n runTime=\"10.5\" hookStart=\"1\" hookEnd=\"0.5\" "
          "intro1=\"1\" intro2=\"2\" intro3=\"30\" />"),
     "AudioStart1=2;AudioEnd1=20;Extro1=12.5;HookStart1=3;HookEnd1=3;IntroStart1=3;IntroEnd1=12.5;Extro2=20"},
    {"mediaOfOthers", Cart({}, {}, "<m:Media trimStart=\"2\"/>"), "AudioStart1=0"},
    {"firstOfTwo", Cart({{4, "first"}}) + Cart({{4, "second"}}), "ItemTitle=first"},
};

TEST(WaveReading, GivesTheItemItsFields) {
  for (const Read& row : kRead) {
    cHDItem item;
    ResetMarks(item);
    ASSERT_TRUE(LoadItemWave(item, RiffMemory(WaveWith(row.behind)), row.flags)) << row.name;
    RepairMarks(item);
    ExpectFields(item, row.fields, row.name);
  }
}

TEST(Repair, LeavesMarksInOrder) {
  cHDItem item;
  ResetMarks(item);
  SetFields(
      item,
      "TotalLength=10;Extro1=12;IntroEnd1=15;IntroStart1=11;HookStart1=8;AudioEnd2=7;Extro2=5;IntroEnd2=6");
  RepairMarks(item);
  ExpectFields(
      item, "Extro1=10;IntroEnd1=10;IntroStart1=10;HookStart1=8;HookEnd1=8;AudioEnd2=7;Extro2=5;IntroEnd2=5");
}

}  // namespace
}  // namespace qm
