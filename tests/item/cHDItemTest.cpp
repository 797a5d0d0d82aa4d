#include "item/cHDItem.h"

#include <gtest/gtest.h>

#include <chrono>

#include "item/cHDItemMark.h"
#include "item/cHDItemTimeExtra.h"
#include "kits/common/Clock.h"
#include "kits/common/Dates.h"
#include "kits/sound/cAudioFormat.h"

namespace qm {
namespace {

using namespace std::chrono_literals;

TEST(cHDItem, TotalLengthKeepsEveryAudioEndWithinIt) {
  struct Step {
    float total, audioEnd;
  };
  cHDItem item;
  for (const Step& step :
       {Step{30, 30}, Step{20, 20}, Step{50, 20}, Step{0, 0}, Step{40, 40}, Step{-1, -1}}) {
    item.SetTotalLength(step.total);
    for (std::int32_t set = 1; set <= 3; ++set) EXPECT_EQ(item.AudioEnd(set), step.audioEnd) << step.total;
    EXPECT_EQ(item.TotalLength(), step.total);
    EXPECT_EQ(item.ScheduledLength(), -1);
  }
}

TEST(cHDItem, AudioEndPullsBackWhatLiesBehindItInItsSet) {
  cHDItem item;
  item.SetTotalLength(100);
  for (std::int32_t set = 1; set <= 3; ++set) {
    item.SetIntroEnd(set, 60);
    item.SetIntroStart(set, 55);
    item.SetHookEnd(set, 70);
    item.SetHookStart(set, 40);
    item.SetExtro(set, 90);
  }
  item.SetLoopStart(65);
  item.SetLoopEnd(75);

  item.SetAudioEnd(2, 50);
  EXPECT_EQ(item.IntroEnd(2), 50);
  EXPECT_EQ(item.IntroStart(2), 50);
  EXPECT_EQ(item.HookEnd(2), 50);
  EXPECT_EQ(item.HookStart(2), 40);
  EXPECT_EQ(item.Extro(2), 50);
  EXPECT_EQ(item.LoopEnd(), 75);
  EXPECT_EQ(item.Extro(1), 90);
  EXPECT_EQ(item.AudioEnd(3), 100);

  item.SetAudioEnd(1, 62);
  EXPECT_EQ(item.LoopEnd(), 62);
  EXPECT_EQ(item.LoopStart(), 62);
  EXPECT_EQ(item.HookEnd(1), 62);
  EXPECT_EQ(item.IntroEnd(1), 60);
}

TEST(cHDItem, AudioEndLeavesALoopStartWhoseEndIsNotSetYet) {
  cHDItem item;
  item.SetLoopStart(5);
  item.SetAudioEnd(1, 30);
  EXPECT_EQ(item.LoopStart(), 5);
  EXPECT_EQ(item.LoopEnd(), -1);
}

TEST(cHDItem, AStartMovesNothingAndAnEndPullsBackItsStart) {
  cHDItem item;
  item.SetIntroStart(1, 10);
  EXPECT_EQ(item.IntroEnd(1), 0);
  item.SetIntroEnd(1, 8);
  EXPECT_EQ(item.IntroStart(1), 8);
  item.SetHookStart(3, 10);
  item.SetHookEnd(3, 4);
  EXPECT_EQ(item.HookStart(3), 4);
}

TEST(cHDItem, DerivedLengths) {
  cHDItem item;
  item.SetAudioEnd(1, 10);
  item.SetAudioStart(1, -1);
  EXPECT_EQ(item.AudioLength(1), 10);
  item.SetAudioStart(1, 4);
  EXPECT_EQ(item.AudioLength(1), 6);
  item.SetHookStart(2, 5);
  EXPECT_EQ(item.HookLength(2), -5);
  item.SetIntroEnd(3, 7.5f);
  EXPECT_EQ(item.IntroLength(3), 7.5f);
  for (const std::int32_t index : {0, 4}) {
    EXPECT_EQ(item.AudioLength(index), 0);
    EXPECT_EQ(item.IntroLength(index), 0);
    EXPECT_EQ(item.HookLength(index), 0);
  }
}

TEST(cHDItem, FullDescriptionSkipsWhatIsBlank) {
  cHDItem item;
  EXPECT_EQ(item.FullDescription(), "");
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
      {3, {"", "", "", ""}},
  };
  cHDItem item, back;
  for (const Case& c : cases) {
    for (const enItemDescType length : {hedShort, hedMedium, hedLong, hedData}) {
      item.SetEndType(static_cast<enItemEndType>(c.endType));
      EXPECT_EQ(item.EndTypeDescription(length), c.words[length]);
      back.SetEndTypeDescription(hedShort, c.words[length]);
      const bool known = *c.words[length] != 0;
      EXPECT_EQ(back.EndType(), known ? c.endType : ietNonSpecific) << c.words[length];
    }
  }
  EXPECT_EQ(item.EndTypeDescription(static_cast<enItemDescType>(9)), "");
  for (const char* word : {"slow FADES", "sf"}) {
    back.SetEndTypeDescription(hedLong, word);
    EXPECT_EQ(back.EndType(), ietSlowFade) << word;
  }
  back.SetEndTypeDescription(hedData, "fading");
  EXPECT_EQ(back.EndType(), ietNonSpecific);
}

TEST(cHDItem, VersionsSkipOneAndThirtyOne) {
  struct Case {
    std::int16_t before, after;
  };
  for (const Case& c : {Case{0, 1}, Case{29, 30}, Case{30, 31}, Case{31, 33}, Case{32000, 32001},
                        Case{32001, 2}, Case{32767, 2}}) {
    cHDItem item;
    item.SetVersion(c.before);
    item.IncrementVersion();
    EXPECT_EQ(item.Version(), c.after) << c.before;
  }
}

TEST(cHDItem, PlayHistoryStandsAsItWasAdded) {
  cHDItem item;
  EXPECT_EQ(item.AddLastPlay(0, "x"), 0);
  EXPECT_EQ(item.AddLastPlay(45000.5, "b"), 1);
  EXPECT_EQ(item.AddLastPlay(44000, "a"), 2);
  EXPECT_EQ(item.AddLastPlay(46000, ""), 3);
  EXPECT_FALSE(item.RemoveLastPlay(0));
  EXPECT_FALSE(item.RemoveLastPlay(4));
  EXPECT_TRUE(item.RemoveLastPlay(2));
  EXPECT_EQ(item.NumberLastPlays(), 2);
  EXPECT_EQ(item.LastPlay(1), 45000.5);
  EXPECT_EQ(item.LastPlayReference(1), "b");
  EXPECT_EQ(item.LastPlay(2), 46000);
  EXPECT_EQ(item.LastPlay(3), 0);
  EXPECT_EQ(item.LastPlayReference(0), "");
  item.ClearLastPlays();
  EXPECT_EQ(item.NumberLastPlays(), 0);
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
  EXPECT_TRUE(first->IsSame(second, false));
  EXPECT_FALSE(first->IsSame(second, true));
  second->AddLastPlay(45000, "X");
  EXPECT_FALSE(first->IsSame(second, true));

  first->AudioFormat()->SetSampleRate(44100);
  EXPECT_FALSE(first->IsSame(second, false));
  second->AudioFormat()->SetSampleRate(44100);
  EXPECT_TRUE(first->IsSame(second, false));

  const std::shared_ptr<cHDItemTimeExtra> extras[] = {
      first->AudioStartExtra(1), first->AudioEndExtra(2), first->IntroStartExtra(3), first->IntroEndExtra(1),
      first->HookStartExtra(2),  first->HookEndExtra(3),  first->ExtroExtra(1)};
  for (const auto& extra : extras) {
    extra->SetCommandName("go");
    EXPECT_FALSE(first->IsSame(second, false));
    extra->SetCommandName("");
    EXPECT_TRUE(first->IsSame(second, false));
  }
}

TEST(cHDItemTimeExtra, ComparesAllThreeFieldsExactly) {
  const auto one = std::make_shared<cHDItemTimeExtra>(), other = std::make_shared<cHDItemTimeExtra>();
  EXPECT_FALSE(one->IsSame(nullptr));
  one->SetHardwareLine(1);
  EXPECT_FALSE(one->IsSame(other));
  other->SetHardwareLine(1);
  one->SetHardwareAction(2);
  EXPECT_FALSE(one->IsSame(other));
  other->SetHardwareAction(2);
  one->SetCommandName("Go");
  other->SetCommandName("go");
  EXPECT_FALSE(one->IsSame(other));
}

TEST(cHDItemTimeExtra, TextLosesTheCommandName) {
  cHDItemTimeExtra extra, back;
  EXPECT_EQ(extra.Serialisation(), "");
  extra.SetHardwareLine(3);
  extra.SetHardwareAction(2);
  extra.SetCommandName("open \"B\"");
  EXPECT_EQ(extra.Serialisation(), "HardwareLine=3 HardwareAction=2 CommandName=\"open %22B%22\"");
  back.SetCommandName("before");
  back.SetSerialisation(extra.Serialisation());
  EXPECT_EQ(back.HardwareLine(), 3);
  EXPECT_EQ(back.HardwareAction(), 2);
  EXPECT_EQ(back.CommandName(), "2");
  back.SetSerialisation("");
  EXPECT_EQ(back.Serialisation(), "");
}

}  // namespace
}  // namespace qm
