#include <gmock/gmock.h>

#include "FieldFixture.h"
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
  test::SetFields(item, "IntroEnd=12.5;IntroStart=2;HookStart2=5;Extro3=0.0625;LoopStart=30;LoopEnd=40");
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
