#include <gmock/gmock.h>

#include "item/cHDItem.h"
#include "item/cHDItemMark.h"
#include "kits/sound/cAudioFormat.h"

namespace qm {
namespace {

using ::testing::ElementsAre;

std::shared_ptr<cHDItemMark> Mark(std::int32_t sample, const char* title, std::int32_t type = himtOther) {
  const auto mark = std::make_shared<cHDItemMark>();
  mark->SetStartSample(sample);
  mark->SetTitle(title);
  mark->SetMarkerType(type);
  return mark;
}

std::vector<std::string> Titles(const std::vector<std::shared_ptr<cHDItemMark>>& marks) {
  std::vector<std::string> titles;
  for (const auto& mark : marks) titles.push_back(mark->Title());
  return titles;
}

TEST(cHDItemMarkers, StaySortedAndKeepTheOrderOfEqualPositions) {
  cHDItem item;
  EXPECT_EQ(item.AddMarker(nullptr), -1);
  EXPECT_EQ(item.AddMarker(Mark(10, "b")), 1);
  EXPECT_EQ(item.AddMarker(Mark(-5, "a", himtHook)), 1);
  EXPECT_EQ(item.AddMarker(Mark(10, "c", himtHook)), 3);
  EXPECT_EQ(item.AddMarker(Mark(7, "d")), 2);
  EXPECT_THAT(Titles(item.Markers()), ElementsAre("a", "d", "b", "c"));
  EXPECT_THAT(Titles(item.Markers(himtHook)), ElementsAre("a", "c"));
  EXPECT_EQ(item.NumberMarkers(), 4);
  EXPECT_EQ(item.NumberMarkers(himtHook), 2);
  EXPECT_EQ(item.GetFirstMarkerByType(himtHook), item.Marker(1));
  EXPECT_EQ(item.GetFirstMarkerByType(himtExtro), nullptr);
}

TEST(cHDItemMarkers, AreReplacedInPlaceAndShared) {
  cHDItem item;
  item.AddMarker(Mark(1, "a"));
  item.AddMarker(Mark(2, "b"));
  const auto late = Mark(99, "late");
  item.SetMarker(1, late);
  item.SetMarker(2, nullptr);
  item.SetMarker(3, late);
  EXPECT_THAT(Titles(item.Markers()), ElementsAre("late", "b"));
  late->SetTitle("renamed");
  EXPECT_EQ(item.AddMarker(Mark(50, "c")), 1);  // in front of the first that lies behind it

  EXPECT_FALSE(item.RemoveMarker(0));
  EXPECT_FALSE(item.RemoveMarker(4));
  EXPECT_TRUE(item.RemoveMarker(1));
  EXPECT_THAT(Titles(item.Markers()), ElementsAre("renamed", "b"));
  EXPECT_EQ(item.Marker(3), nullptr);
}

TEST(cHDItemMarkers, ComeFromTimingInSamplesOnceTheAudioIsKnown) {
  cHDItem item;
  item.AddMarker(Mark(1, "old"));
  item.SetTotalLength(100);
  EXPECT_FALSE(item.CreateMarkersFromTiming());
  EXPECT_EQ(item.NumberMarkers(), 0);
  item.AudioFormat()->SetSampleRate(1000);
  item.SetIntroEnd(1, 12.5f);
  item.SetIntroStart(1, 2);
  item.SetHookStart(2, 5);
  item.SetExtro(3, 0.0625f);  // 62.5 samples: the even neighbour
  item.SetLoopStart(30);
  item.SetLoopEnd(40);
  for (int twice = 0; twice < 2; ++twice) ASSERT_TRUE(item.CreateMarkersFromTiming());
  std::vector<std::string> found;
  for (const auto& mark : item.Markers())
    found.push_back(mark->Title() + ": " + std::to_string(mark->StartSample()) + " " +
                    std::to_string(mark->Duration()) + " " + std::to_string(mark->MarkerType()) + " " +
                    std::to_string(mark->MarkerColour()));
  EXPECT_THAT(found, ElementsAre("Extro 3: 62 0 101 255", "Intro 1: 2000 10500 1 65280",
                                 "Hook 2: 5000 -5000 11 12632256", "Loop: 30000 10000 21 16711680"));
  item.SetTotalLength(0);
  EXPECT_FALSE(item.CreateMarkersFromTiming());
}

}  // namespace
}  // namespace qm
