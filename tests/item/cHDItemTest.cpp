#include "item/cHDItem.h"

#include <chrono>

#include "FieldFixture.h"
#include "item/ItemFields.h"
#include "item/cHDItemMark.h"
#include "item/cHDItemTimeExtra.h"
#include "kits/common/Clock.h"
#include "kits/common/Dates.h"
#include "kits/sound/cAudioFormat.h"

namespace qm {
namespace {

using namespace std::chrono_literals;
using namespace test;

TEST(cHDItem, TotalLengthKeepsEveryAudioEndWithinIt) {
  cHDItem item;
  for (const auto& [total, end] :
       {std::pair{"30", "30"}, {"20", "20"}, {"50", "20"}, {"0", "0"}, {"40", "40"}, {"-1", "-1"}}) {
    SetFields(item, std::string("TotalLength=") + total);
    for (const char* field : {"AudioEnd1", "AudioEnd2", "AudioEnd3"})
      EXPECT_EQ(FieldText(item, field), end) << total;
    EXPECT_EQ(FieldText(item, "TotalLength"), total);
    EXPECT_EQ(item.ScheduledLength(), -1);
  }
}

TEST(cHDItem, EndsPullBackWhatLiesBehindThemInTheirSet) {
  cHDItem item;
  SetFields(item, "LoopStart=65;AudioEnd=30");
  EXPECT_EQ(item.LoopStart(), 65) << "its end is not set yet";
  SetFields(item, "TotalLength=100;AudioEnd=100;LoopEnd=75");
  for (const char* set : {"1", "2", "3"})
    for (const char* mark : {"IntroStart=65", "IntroEnd=60", "HookEnd=70", "HookStart=40", "Extro=90"})
      SetFields(item, std::string(mark).insert(std::string(mark).find('='), set));
  SetFields(item, "AudioEnd2=50;HookEnd3=30;HookStart3=35");  // a start moves nothing
  ExpectFields(item,
               "IntroStart1=60;IntroEnd1=60;HookStart1=40;HookEnd1=70;Extro1=90;AudioEnd1=100;LoopEnd=75;"
               "IntroStart2=50;IntroEnd2=50;HookStart2=40;HookEnd2=50;Extro2=50;AudioEnd2=50;"
               "IntroStart3=60;IntroEnd3=60;HookStart3=35;HookEnd3=30;Extro3=90;AudioEnd3=100");
  item.SetAudioEnd(1, 62);
  ExpectFields(item,
               "IntroStart1=60;IntroEnd1=60;HookStart1=40;HookEnd1=62;Extro1=62;AudioEnd1=62;LoopStart=62;"
               "LoopEnd=62");
}

TEST(cHDItem, LengthsAndDescriptionAreWorkedOut) {
  cHDItem item;
  EXPECT_EQ(item.FullDescription(), "");
  SetFields(item, "AudioEnd=10;AudioStart=-1;HookStart2=5;IntroEnd3=7.5");
  EXPECT_EQ(item.AudioLength(1), 10);
  item.SetAudioStart(1, 4);
  EXPECT_EQ(item.AudioLength(1), 6);
  EXPECT_EQ(item.HookLength(2), -5);
  EXPECT_EQ(item.IntroLength(3), 7.5f);
  EXPECT_EQ(item.AudioLength(0) + item.IntroLength(4) + item.HookLength(4), 0);
  SetFields(item, "ItemDescription3= Live ;ArtistName1=  ;ArtistName2=Duo;ItemTitle= A Song");
  EXPECT_EQ(item.FullDescription(), "A Song Duo Live");
}

TEST(cHDItem, EndTypeAsAWordOfEachLength) {
  struct Case {
    std::int32_t endType;
    const char* words[4];
  };
  const Case cases[] = {
      {ietNonSpecific, {"", "", "", "nonspecific"}},
      {ietEnd, {"E", "End", "Ends", "end"}},
      {ietFades, {"F", "Fade", "Fades", "fades"}},
      {ietSustain, {"S", "Sust", "Sustain", "sustain"}},
      {ietSlowFade, {"SF", "Slow", "Slow Fade", "slowfade"}},
      {ietNonSpecific, {"fading", "", " ", "0"}},
      {ietSlowFade, {"slow FADES", "sf", "SLOW", "SlowFade"}},
  };
  cHDItem item, back;
  for (const Case& c : cases) {
    for (const enItemDescType length : {hedShort, hedMedium, hedLong, hedData}) {
      item.SetEndType(static_cast<enItemEndType>(c.endType));
      if (&c < cases + 5) {
        EXPECT_EQ(item.EndTypeDescription(length), c.words[length]);
      }
      back.SetEndTypeDescription(hedShort, c.words[length]);
      EXPECT_EQ(back.EndType(), c.endType) << c.words[length];
    }
  }
}

TEST(cHDItem, VersionsSkipOneAndThirtyOne) {
  cHDItem item;
  for (const auto& [before, after] :
       {std::pair{0, 1}, {30, 31}, {31, 33}, {32000, 32001}, {32001, 2}, {32767, 2}}) {
    item.SetVersion(static_cast<std::int16_t>(before));
    item.IncrementVersion();
    EXPECT_EQ(item.Version(), after) << before;
  }
}

TEST(cHDItem, PlayHistoryStandsAsItWasAdded) {
  cHDItem item;
  EXPECT_EQ(item.AddLastPlay(0, "x"), 0);
  EXPECT_EQ(item.AddLastPlay(45000.5, "b"), 1);
  EXPECT_EQ(item.AddLastPlay(44000, "a"), 2);
  EXPECT_EQ(item.AddLastPlay(46000, ""), 3);
  for (const std::int32_t index : {0, 4, 2}) EXPECT_EQ(item.RemoveLastPlay(index), index == 2);
  EXPECT_EQ(item.NumberLastPlays(), 2);
  EXPECT_EQ(item.LastPlayReference(1), "b");
  EXPECT_EQ(item.LastPlay(2), 46000);
  EXPECT_EQ(item.LastPlay(3), 0);
  EXPECT_EQ(item.LastPlayReference(0), "");
}

TEST(cHDItem, WasPlayedRecentlyCountsBackFromNow) {
  // A January noon, so that a day back crosses no change of the clocks.
  ManualClock clock(std::chrono::sys_days{2024y / 1 / 15} + 12h);
  const tyLogDateTime now = DateTimeNow(clock);
  cHDItem item;
  SetFields(item, "TotalLength=200;AudioEnd=180");
  item.AddLastPlay(SerialDateTime(AddSeconds(now, -100000)), "studio 2");
  item.AddLastPlay(SerialDateTime(AddSeconds(now, -600)), " Studio 1 ");
  const struct {
    std::int16_t mode;
    float value;
    const char* reference;
    bool recently;
  } cases[] = {
      {0, 1000, "", false},           {1, 599, "", false},  {1, 601, "", true},  {1, 601, "studio 1", true},
      {1, 601, "studio 3", false},    {2, 3.3f, "", false}, {2, 3.4f, "", true}, {3, 1000, "", false},
      {1, 200000, "studio 2", false},  // never more than a day
  };
  for (const auto& c : cases)
    EXPECT_EQ(item.WasPlayedRecently(c.mode, c.value, c.reference, &clock), c.recently)
        << c.mode << " " << c.value << " " << c.reference;
  item.SetAudioStart(1, 180);
  EXPECT_FALSE(item.WasPlayedRecently(1, 1000, "", &clock));
}

TEST(cHDItem, ComparisonLooksAtFormatExtrasAndOnRequestPlays) {
  const auto first = std::make_shared<cHDItem>(), second = std::make_shared<cHDItem>();
  const auto same = [&](bool plays = false) { return first->IsSame(second, plays); };
  EXPECT_FALSE(first->IsSame(nullptr, false));
  second->AddMarker(std::make_shared<cHDItemMark>());
  EXPECT_TRUE(same(true));
  first->AddLastPlay(45000, "x");
  EXPECT_FALSE(same(true));
  second->AddLastPlay(45000, "X");
  EXPECT_FALSE(same(true));
  EXPECT_TRUE(same());
  for (const ItemExtra& row : ItemExtras()) {
    const auto one = (first.get()->*row.get)(3), other = (second.get()->*row.get)(3);
    one->SetHardwareLine(1);
    EXPECT_FALSE(same()) << row.name;
    other->SetHardwareLine(1);
    one->SetHardwareAction(2);
    EXPECT_FALSE(same()) << row.name;
    other->SetHardwareAction(2);
    one->SetCommandName("Go");
    other->SetCommandName("go");
    EXPECT_FALSE(same()) << row.name;
    other->SetCommandName("Go");
    EXPECT_TRUE(same()) << row.name;
  }
  first->AudioFormat()->SetSampleRate(44100);
  EXPECT_FALSE(same());
}

TEST(cHDItemTimeExtra, TextOfOnlyWhatIsSet) {
  cHDItemTimeExtra extra;
  EXPECT_EQ(extra.Serialisation(), "");
  extra.SetHardwareLine(3);
  extra.SetHardwareAction(2);
  extra.SetCommandName("open \"B\"");
  EXPECT_EQ(extra.Serialisation(), "HardwareLine=3 HardwareAction=2 CommandName=\"open %22B%22\"");
}

}  // namespace
}  // namespace qm
