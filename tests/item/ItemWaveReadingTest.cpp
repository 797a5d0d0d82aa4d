#include <gtest/gtest.h>

#include "RiffFixture.h"
#include "item/ItemFieldAccess.h"
#include "item/ItemMetadata.h"
#include "item/cHDItem.h"

namespace qm {
namespace {

using namespace test;
using namespace std::string_literals;

struct Read {
  const char* name;
  std::string behind;
  enHDFileFlags flags;
  std::string fields;  // of a file of 20 seconds

  friend std::ostream& operator<<(std::ostream& out, const Read& row) { return out << row.name; }
};

class WaveReading : public testing::TestWithParam<Read> {};

TEST_P(WaveReading, GivesTheItemItsFields) {
  cHDItem item;
  ResetMarks(item);
  ASSERT_TRUE(LoadItemWave(item, RiffMemory(WaveWith(GetParam().behind)), GetParam().flags));
  RepairMarks(item);
  for (const auto& [field, text] : SplitFields(GetParam().fields))
    EXPECT_EQ(FieldText(item, field), text) << field;
}

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
    {"nothing", "", llfAutoDetect,
     "TotalLength=20;AudioStart1=0;AudioEnd1=20;AudioEnd3=20;Extro2=20;IntroStart1=0;IntroEnd1=0;HookStart1="
     "0;HookEnd3=0;LoopStart=0;LoopEnd=0;ScheduledLength=0"},
    {"id3OverList", Texts(), llfAutoDetect, "ItemTitle=id3;ArtistName1=artist;ArtistName2=second;Year=1999"},
    {"listOnly", Texts(), llfListInfoChunk, "ItemTitle=list;ArtistName2="},
    {"cartOverAll", Texts() + Cart({{4, "cart"}}) + Bext("bext", "A=PCM"), llfAutoDetect,
     "ItemTitle=cart;ArtistName1=;ItemDescription1=;Originator=;CodingHistory=A=PCM"},
    {"blankVersion", Texts() + Cart({{0, "    "}, {4, "cart"}}) + Bext("bext"), llfAutoDetect,
     "ItemTitle=id3;Originator="},
    {"bextDescribes", Bext("  about  "), llfAutoDetect,
     "ItemTitle=;ItemDescription1=about;Originator=Studio "
     "1;OriginationDate=44230;OriginationTime=14706;Version=801"},
    {"bextNamesByFlag", Bext("about") + Cart({{4, "cart"}}), llfBext, "ItemTitle=about;ItemDescription1="},
    {"bextCutShort", Chunk("bext", "short"), llfAutoDetect, "ItemDescription1=short;Version=0"},
    {"cartFields",
     Cart({{4, "T\xEFtle\0rubbish"s},
           {68, std::string(64, 'a')},
           {132, "cut "},
           {260, "Advert"},
           {324, "Jingle"},
           {388, "out"},
           {452, "2021/02/03"},
           {462, "01:02:03"},
           {470, "0000-00-00"},
           {480, "        "},
           {1024, "http"}}),
     llfCartChunk,
     "ItemTitle=T\xC3\xAFtle;ArtistName1=" + std::string(64, 'a') +
         ";CutID=cut;ContentTypeInfo=Advert;CategoryInfo=Jingle;OutCue=out;AirStartDate=44230;AirStartTime="
         "3723;"
         "AirEndDate=0;AirEndTime=0;URL=http"},
    {"cartEndsEarly", Chunk("cart", Laid(500, ' ', {{0, "0101"}, {4, "short"}})), llfAutoDetect,
     "ItemTitle=short;Extro1=20"},
    {"tagText",
     Cart({}, {},
          "<storeref>abc</STOREREF>\r\n<COMPOSER>\"J. \xC5\x81\" B\"</COMPOSER><PERFORMER>Caf\xE9</PERFORMER>"
          "<PRS>77</PRS><MUSICDURATION>1:02.50</MUSICDURATION><SCHEDULEDLENGTH>90</SCHEDULEDLENGTH>"
          "<BACKCOLOUR>&H000000FF</BACKCOLOUR><ENDING>SlowFade</ENDING><NOTES>no end\0<ISRC>x</ISRC>"s),
     llfAutoDetect,
     "OnlineStoreReference=abc;Composer=J. "
     "\xC5\x81;Performer=Caf\xC3\xA9;RecordingNumber=77;CopyrightMusicDuration=62.5;ScheduledLength=90;"
     "BackColour=255;EndType=8;StudioNotes=;ISRC="},
    {"copyrightFromTitle", Cart({{4, "Song"}, {68, "Band"}}, {}, "<COMPOSER>Own</COMPOSER>"),
     llfCartChunk | llfCopyrightFromTitle, "ProductTitle=Song;MusicTitle=Song;Composer=Own;Performer=Band"},
    {"userDefOverEnding",
     Cart({{kProducer, kOurs}, {kUserDef, "BackColor=&H00FF0000& EndingType=Sustain"}}, {},
          "<ENDING>S</ENDING>"),
     llfAutoDetect, "EndType=0;BackColour=16711680"},
    {"userDefOfOthers", Cart({{kUserDef, "EndingType=Ends"}}, {}, "<ENDING>S</ENDING>"), llfAutoDetect,
     "EndType=4"},
    {"timersWithGaps",
     Cart({{kProducer, kOurs}},
          {Timer("audS", 500), Timer("AUDx", 18000), Timer("    ", 0xFFFFFFFF), Timer("int1", 1000),
           Timer("INTe", 2000), Timer("EOD ", 4000), Timer("sec9", 16000), Timer("SEG2", 15000)}),
     llfAutoDetect, "AudioStart1=0.5;AudioEnd1=18;IntroStart1=1;IntroEnd1=2;Extro1=15;Extro2=20"},
    {"timersPastTheEnd",
     Cart({}, {Timer("AUDe", 0xFFFFFFFE), Timer("INTe", 0x80000001), Timer("MRK1", 30000), Timer("MRK2", 1)}),
     llfAutoDetect, "AudioEnd1=20;IntroEnd1=20;HookStart1=0.001;HookEnd1=0.001"},
    {"ourLoop", Cart({{kProducer, kOurs}}, {Timer("MRK3", 3000), Timer("MRK4", 2000)}), llfAutoDetect,
     "LoopStart=4.5;LoopEnd=4.6"},
    {"loopOfOthers", Cart({}, {Timer("MRK3", 5000), Timer("MRK4", 9000)}), llfAutoDetect,
     "LoopStart=0;LoopEnd=0"},
    {"rcsMedia",
     Cart({{kProducer, "RCS Master"}}, {Timer("SEG1", 3000)},
          "<m:Media trimStart=\"2\" trimEnd=\"99\"\n runTime=\"10.5\" hookStart=\"1\" hookEnd=\"0.5\" "
          "intro1=\"1\" "
          "intro2=\"2\" intro3=\"30\" />"),
     llfAutoDetect,
     "AudioStart1=2;AudioEnd1=20;Extro1=12.5;HookStart1=3;HookEnd1=3;IntroStart1=3;IntroEnd1=12.5;Extro2=20"},
    {"mediaOfOthers", Cart({}, {}, "<m:Media trimStart=\"2\"/>"), llfAutoDetect, "AudioStart1=0"},
    {"firstOfTwo", Cart({{4, "first"}}) + Cart({{4, "second"}}), llfAutoDetect, "ItemTitle=first"},
};
INSTANTIATE_TEST_SUITE_P(Every, WaveReading, testing::ValuesIn(std::begin(kRead), std::end(kRead)),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Repair, LeavesMarksInOrder) {
  cHDItem item;
  ResetMarks(item);
  item.SetTotalLength(10);
  item.SetExtro(1, 12);
  item.SetIntroEnd(1, 15);
  item.SetIntroStart(1, 11);
  item.SetHookStart(1, 8);
  item.SetAudioEnd(2, 7);
  item.SetExtro(2, 5);
  item.SetIntroEnd(2, 6);
  RepairMarks(item);
  EXPECT_EQ(
      FieldText(item, "Extro1") + " " + FieldText(item, "IntroEnd1") + " " + FieldText(item, "IntroStart1"),
      "10 10 10");
  EXPECT_EQ(FieldText(item, "HookStart1") + " " + FieldText(item, "HookEnd1"), "8 8");
  EXPECT_EQ(
      FieldText(item, "AudioEnd2") + " " + FieldText(item, "Extro2") + " " + FieldText(item, "IntroEnd2"),
      "7 5 5");
}

}  // namespace
}  // namespace qm
