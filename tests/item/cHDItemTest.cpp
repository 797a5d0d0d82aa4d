#include "item/cHDItem.h"

#include <gmock/gmock.h>

#include <chrono>

#include "item/ItemFields.h"
#include "item/cHDItemMark.h"
#include "item/cHDItemTimeExtra.h"
#include "kits/common/Clock.h"
#include "kits/common/Dates.h"
#include "kits/sound/cAudioFormat.h"

namespace qm {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

TEST(cHDItem, TotalLengthKeepsEveryAudioEndWithinIt) {
  cHDItem item;
  for (const auto& [total, audioEnd] :
       {std::pair{30.f, 30.f}, {20, 20}, {50, 20}, {0, 0}, {40, 40}, {-1, -1}}) {
    item.SetTotalLength(total);
    for (std::int32_t set = 1; set <= 3; ++set) EXPECT_EQ(item.AudioEnd(set), audioEnd) << total;
    EXPECT_EQ(item.TotalLength(), total);
    EXPECT_EQ(item.ScheduledLength(), -1);
  }
}

TEST(cHDItem, EndsPullBackWhatLiesBehindThemInTheirSet) {
  cHDItem item;
  item.SetLoopStart(65);
  item.SetAudioEnd(1, 30);
  EXPECT_EQ(item.LoopStart(), 65) << "its end is not set yet";
  item.SetTotalLength(100);
  item.SetAudioEnd(1, 100);
  item.SetLoopEnd(75);
  for (std::int32_t set = 1; set <= 3; ++set) {
    item.SetIntroStart(set, 65);
    item.SetIntroEnd(set, 60);
    item.SetHookEnd(set, 70);
    item.SetHookStart(set, 40);
    item.SetExtro(set, 90);
  }
  item.SetAudioEnd(2, 50);
  item.SetHookEnd(3, 30);
  item.SetHookStart(3, 35);  // a start moves nothing
  const auto marks = [&](std::int32_t set) {
    return std::vector<float>{item.IntroStart(set), item.IntroEnd(set), item.HookStart(set),
                              item.HookEnd(set),    item.Extro(set),    item.AudioEnd(set)};
  };
  EXPECT_THAT(marks(1), ElementsAre(60, 60, 40, 70, 90, 100));
  EXPECT_THAT(marks(2), ElementsAre(50, 50, 40, 50, 50, 50));
  EXPECT_THAT(marks(3), ElementsAre(60, 60, 35, 30, 90, 100));
  EXPECT_EQ(item.LoopEnd(), 75);
  item.SetAudioEnd(1, 62);
  EXPECT_THAT(marks(1), ElementsAre(60, 60, 40, 62, 62, 62));
  EXPECT_EQ(item.LoopStart(), 62);
  EXPECT_EQ(item.LoopEnd(), 62);
}

TEST(cHDItem, LengthsAndDescriptionAreWorkedOut) {
  cHDItem item;
  EXPECT_EQ(item.FullDescription(), "");
  item.SetAudioEnd(1, 10);
  item.SetAudioStart(1, -1);
  EXPECT_EQ(item.AudioLength(1), 10);
  item.SetAudioStart(1, 4);
  EXPECT_EQ(item.AudioLength(1), 6);
  item.SetHookStart(2, 5);
  EXPECT_EQ(item.HookLength(2), -5);
  item.SetIntroEnd(3, 7.5f);
  EXPECT_EQ(item.IntroLength(3), 7.5f);
  EXPECT_EQ(item.AudioLength(0) + item.IntroLength(4) + item.HookLength(4), 0);
  item.SetItemDescription(3, " Live ");
  item.SetArtistName(1, "  ");
  item.SetArtistName(2, "Duo");
  item.SetItemTitle(" A Song");
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
  for (const auto& [before, after] : {std::pair<std::int16_t, std::int16_t>{0, 1},
                                      {30, 31},
                                      {31, 33},
                                      {32000, 32001},
                                      {32001, 2},
                                      {32767, 2}}) {
    cHDItem item;
    item.SetVersion(before);
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
  item.SetTotalLength(200);
  item.SetAudioEnd(1, 180);
  item.AddLastPlay(SerialDateTime(AddSeconds(now, -100000)), "studio 2");
  item.AddLastPlay(SerialDateTime(AddSeconds(now, -600)), " Studio 1 ");
  struct Case {
    std::int16_t mode;
    float value;
    const char* reference;
    bool recently;
  };
  const Case cases[] = {
      {0, 1000, "", false},           {1, 599, "", false},  {1, 601, "", true},  {1, 601, "studio 1", true},
      {1, 601, "studio 3", false},    {2, 3.3f, "", false}, {2, 3.4f, "", true}, {3, 1000, "", false},
      {1, 200000, "studio 2", false},  // never more than a day
  };
  for (const Case& c : cases)
    EXPECT_EQ(item.WasPlayedRecently(c.mode, c.value, c.reference, &clock), c.recently)
        << c.mode << " " << c.value << " " << c.reference;
  item.SetAudioStart(1, 180);
  EXPECT_FALSE(item.WasPlayedRecently(1, 1000, "", &clock));
}

TEST(cHDItem, ComparisonLooksAtFormatExtrasAndOnRequestPlays) {
  const auto first = std::make_shared<cHDItem>(), second = std::make_shared<cHDItem>();
  EXPECT_FALSE(first->IsSame(nullptr, false));
  second->AddMarker(std::make_shared<cHDItemMark>());
  EXPECT_TRUE(first->IsSame(second, true));
  first->AddLastPlay(45000, "x");
  EXPECT_FALSE(first->IsSame(second, true));
  second->AddLastPlay(45000, "X");
  EXPECT_FALSE(first->IsSame(second, true));
  EXPECT_TRUE(first->IsSame(second, false));
  for (const ItemExtra& row : ItemExtras()) {
    const auto one = (first.get()->*row.get)(3), other = (second.get()->*row.get)(3);
    one->SetHardwareLine(1);
    EXPECT_FALSE(first->IsSame(second, false)) << row.name;
    other->SetHardwareLine(1);
    EXPECT_TRUE(first->IsSame(second, false)) << row.name;
  }
  first->ExtroExtra(1)->SetHardwareAction(2);
  EXPECT_FALSE(first->IsSame(second, false));
  second->ExtroExtra(1)->SetHardwareAction(2);
  first->ExtroExtra(1)->SetCommandName("Go");
  second->ExtroExtra(1)->SetCommandName("go");
  EXPECT_FALSE(first->IsSame(second, false));
  second->ExtroExtra(1)->SetCommandName("Go");
  EXPECT_TRUE(first->IsSame(second, false));
  first->AudioFormat()->SetSampleRate(44100);
  EXPECT_FALSE(first->IsSame(second, false));
}

TEST(cHDItemTimeExtra, TextLosesTheCommandName) {
  cHDItemTimeExtra extra, back;
  EXPECT_EQ(extra.Serialisation(), "");
  extra.SetHardwareLine(3);
  extra.SetHardwareAction(2);
  extra.SetCommandName("open \"B\"");
  EXPECT_EQ(extra.Serialisation(), "HardwareLine=3 HardwareAction=2 CommandName=\"open %22B%22\"");
  back.SetSerialisation(extra.Serialisation());
  EXPECT_EQ(back.Serialisation(), "HardwareLine=3 HardwareAction=2 CommandName=\"2\"");
}

}  // namespace
}  // namespace qm
