#include "item/cHDItem.h"

#include <gmock/gmock.h>

#include <array>
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
using ::testing::ElementsAre;

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
  const std::pair<enItemEndType, std::array<const char*, 4>> cases[] = {
      {ietNonSpecific, {"", "", "", "nonspecific"}},
      {ietEnd, {"E", "End", "Ends", "end"}},
      {ietFades, {"F", "Fade", "Fades", "fades"}},
      {ietSustain, {"S", "Sust", "Sustain", "sustain"}},
      {ietSlowFade, {"SF", "Slow", "Slow Fade", "slowfade"}},
  };
  cHDItem item;
  const auto expectRead = [&](const char* word, enItemEndType type) {
    item.SetEndTypeDescription(hedShort, word);
    EXPECT_EQ(item.EndType(), type) << word;
  };
  for (const auto& [type, words] : cases) {
    for (const enItemDescType length : {hedShort, hedMedium, hedLong, hedData}) {
      item.SetEndType(type);
      EXPECT_EQ(item.EndTypeDescription(length), words[length]);
      expectRead(words[length], type);
    }
  }
  for (const char* word : {"slow FADES", "sf", "SLOW", "SlowFade"}) expectRead(word, ietSlowFade);
  for (const char* word : {"fading", " ", "0"}) expectRead(word, ietNonSpecific);
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
    for (const char* text : {"HardwareLine=1", "HardwareAction=2"}) {
      one->SetSerialisation(text);
      EXPECT_FALSE(same()) << row.name << text;
      other->SetSerialisation(text);
      EXPECT_TRUE(same()) << row.name << text;
    }
    one->SetCommandName("Go");
    other->SetCommandName("go");
    EXPECT_FALSE(same()) << row.name;
    other->SetCommandName("Go");
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

std::shared_ptr<cHDItemMark> Mark(std::int32_t sample, const char* title, std::int32_t type = himtOther) {
  const auto mark = std::make_shared<cHDItemMark>();
  mark->SetStartSample(sample);
  mark->SetTitle(title);
  mark->SetMarkerType(type);
  return mark;
}

std::string Titles(const std::vector<std::shared_ptr<cHDItemMark>>& marks) {
  std::string titles;
  for (const auto& mark : marks) titles += mark->Title() + " ";
  return titles;
}

TEST(cHDItemMarkers, StaySortedAndAreReplacedInPlace) {
  cHDItem item;
  EXPECT_EQ(item.AddMarker(nullptr), -1);
  EXPECT_EQ(item.AddMarker(Mark(10, "b")), 1);
  EXPECT_EQ(item.AddMarker(Mark(-5, "a", himtHook)), 1);
  EXPECT_EQ(item.AddMarker(Mark(10, "c", himtHook)), 3);
  EXPECT_EQ(item.AddMarker(Mark(7, "d")), 2);
  EXPECT_EQ(Titles(item.Markers()), "a d b c ");
  EXPECT_EQ(Titles(item.Markers(himtHook)), "a c ");
  EXPECT_EQ(item.NumberMarkers(himtHook), 2);
  EXPECT_EQ(item.GetFirstMarkerByType(himtHook), item.Marker(1));
  EXPECT_EQ(item.GetFirstMarkerByType(himtExtro), nullptr);

  const auto late = Mark(99, "late");
  item.SetMarker(1, late);
  item.SetMarker(2, nullptr);
  item.SetMarker(5, late);
  late->SetTitle("renamed");
  EXPECT_EQ(Titles(item.Markers()), "renamed d b c ");
  EXPECT_EQ(item.AddMarker(Mark(50, "e")), 1);  // in front of the first that lies behind it
  for (const std::int32_t index : {0, 6, 1}) EXPECT_EQ(item.RemoveMarker(index), index == 1);
  EXPECT_EQ(Titles(item.Markers()), "renamed d b c ");
  EXPECT_EQ(item.Marker(5), nullptr);
}

TEST(cHDItemMarkers, ComeFromTimingInSamplesOnceTheAudioIsKnown) {
  cHDItem item;
  item.AddMarker(Mark(1, "old"));
  item.SetTotalLength(100);
  EXPECT_FALSE(item.CreateMarkersFromTiming());
  EXPECT_EQ(item.NumberMarkers(), 0);
  item.AudioFormat()->SetSampleRate(1000);
  SetFields(item, "IntroEnd=12.5;IntroStart=2;HookStart2=5;Extro3=0.0625;LoopStart=30;LoopEnd=40");
  for (int twice = 0; twice < 2; ++twice) ASSERT_TRUE(item.CreateMarkersFromTiming());
  std::vector<std::string> found;
  for (const auto& mark : item.Markers())
    found.push_back(mark->Title() + ": " + std::to_string(mark->StartSample()) + " " +
                    std::to_string(mark->Duration()) + " " + std::to_string(mark->MarkerType()) + " " +
                    std::to_string(mark->MarkerColour()));
  // 62.5 samples: the even neighbour
  EXPECT_THAT(found, ElementsAre("Extro 3: 62 0 101 255", "Intro 1: 2000 10500 1 65280",
                                 "Hook 2: 5000 -5000 11 12632256", "Loop: 30000 10000 21 16711680"));
  item.SetTotalLength(0);
  EXPECT_FALSE(item.CreateMarkersFromTiming());
}

}  // namespace
}  // namespace qm
