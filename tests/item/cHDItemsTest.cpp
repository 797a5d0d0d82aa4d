#include "item/cHDItems.h"

#include <gtest/gtest.h>

#include <functional>

#include "audio/cPeakFile.h"
#include "item/cHDItem.h"
#include "support/SoundFixtures.h"

namespace qm {
namespace {

std::shared_ptr<cHDItem> Item(const std::string& reference, float extro, float end, float ratio = 1) {
  auto item = std::make_shared<cHDItem>();
  item->SetReference(reference);
  item->SetTotalLength(end);
  item->SetExtro(1, extro);
  item->SetTimeStretchRatio(ratio);
  return item;
}

std::shared_ptr<cHDItem> Hooked(const std::string& reference) {
  auto item = Item(reference, 90, 100);
  item->SetHookStart(1, 20);
  item->SetHookEnd(1, 35);
  return item;
}

TEST(ItemList, LengthsOfAnEntryFollowItsTypeAndStretch) {
  struct {
    std::shared_ptr<cHDItem> item;
    enListItemType type;
    float main, total;
    int hooks, separators;
  } const rows[] = {
      {Item("full", 170, 180), hlitFull, 170, 180, 0, 0},
      {Item("stretched", 170, 180, 0.9f), hlitFull, 153, 162, 0, 0},
      {Item("no ratio", 170, 180, 0), hlitFull, 170, 180, 0, 0},
      {Item("no extro", -1, 180), hlitFull, 0, 181, 0, 0},
      {Item("extro behind", 190, 180), hlitFull, 190, 190, 0, 0},
      {Hooked("hook"), hlitHook, 15, 15, 1, 0},
      {Hooked("both"), static_cast<enListItemType>(hlitFull | hlitHook), 90, 100, 1, 0},
      {Item("separator", 5, 6), hlitSeparator, 0, 0, 0, 1},
  };
  for (const auto& row : rows) {
    cHDItems list;
    ASSERT_TRUE(list.AddItem(row.item, row.type)) << row.item->Reference();
    const auto sum = list.TotalHDItem();
    for (const float main : {list.MainLength(), sum->Extro(1)})
      EXPECT_FLOAT_EQ(main, row.main) << row.item->Reference();
    for (const float total : {list.TotalLength(), sum->TotalLength(), sum->AudioEnd(1)})
      EXPECT_FLOAT_EQ(total, row.total) << row.item->Reference();
    EXPECT_EQ(list.HookCount(), row.hooks);
    EXPECT_EQ(list.SeparatorCount(), row.separators);
  }
}

TEST(ItemList, EveryChangeTellsOnceAndABadOneChangesNothing) {
  const auto d = Item("D", 1, 2);
  const std::string same = "1|A|1|B|1|C";
  const struct {
    std::function<bool(cHDItems&)> change;
    std::string after;
    int changes;
  } rows[] = {
      {[&](auto& list) { return list.AddItem(Hooked("D"), hlitHook); }, same + "|2|D", 1},
      {[&](auto& list) { return !list.AddItem(nullptr); }, same, 0},
      {[&](auto& list) { return !list.AddItem(d, hlitHook); }, same, 0},  // it has no hook
      {[&](auto& list) { return list.InsertItem(1, d); }, "1|D|" + same, 1},
      {[&](auto& list) { return list.InsertItem(4, d); }, same + "|1|D", 1},
      {[&](auto& list) { return !list.InsertItem(5, d) && !list.InsertItem(0, d); }, same, 0},
      {[&](auto& list) { return list.ReplaceItem(2, d, hlitSeparator); }, "1|A|4|D|1|C", 1},
      {[&](auto& list) { return list.UpdateItemHDItem(3, d); }, "1|A|1|B|1|D", 1},
      {[&](auto& list) { return list.RemoveItem(2); }, "1|A|1|C", 1},
      {[&](auto& list) { return !list.ReplaceItem(4, d) && !list.RemoveItem(4); }, same, 0},
      {[&](auto& list) { return list.MoveItem(1, 3); }, "1|B|1|C|1|A", 0},
      {[&](auto& list) { return list.MoveItem(3, 1); }, "1|C|1|A|1|B", 0},
      {[&](auto& list) { return list.MoveItem(2, 2) && !list.MoveItem(1, 4); }, same, 0},
      {[&](auto& list) { return list.ClearItems(), true; }, "", 1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    cHDItems list;
    for (const char* name : {"A", "B", "C"}) list.AddItem(Item(name, 9, 10));
    int changes = 0;
    list.events.Changed.connect([&] { ++changes; });
    EXPECT_TRUE(row.change(list));
    EXPECT_EQ(list.Serialisation(), row.after);
    EXPECT_EQ(changes, row.changes);
  }
}

TEST(ItemList, TotalsStandWhenAChangeIsToldAndGoStaleWithAMove) {
  cHDItems list;
  float total = -1;
  list.events.Changed.connect([&] { total = list.TotalLength(); });
  list.AddItem(Item("A", 5, 10));
  list.AddItem(Item("B", 9, 10));
  EXPECT_FLOAT_EQ(total, 15);
  list.MoveItem(1, 2);
  EXPECT_FLOAT_EQ(list.TotalLength(), 15);
  list.UpdateItemHDItem(1, Item("C", 9, 10));
  EXPECT_FLOAT_EQ(total, 19);
  for (int entry = 0; entry < 2; ++entry) list.RemoveItem(1);
  EXPECT_EQ(total, 0);
  total = -1;
  list.ClearItems();
  EXPECT_EQ(total, -1) << "clearing an empty list tells nothing";
}

TEST(ItemList, EntriesAreFoundByReferenceTypeAndTag) {
  cHDItems list;
  list.AddItem(Hooked("abc"), hlitHook, 7);
  list.AddItem(Item("ABC", 9, 10), hlitFull, 7, "sched", 12.5);
  list.AddItem(Item("other", 3, 10), hlitFull, 8);
  EXPECT_EQ(list.GetHDIndexByReference("  aBc "), 1);
  EXPECT_EQ(list.GetHDIndexByReference("abc", hlitFull | hlitSeparator), 2);
  EXPECT_EQ(list.GetHDIndexByReference("abc", hlitSeparator), std::nullopt);
  EXPECT_EQ(list.GetHDIndexByReference("none"), std::nullopt);
  EXPECT_FLOAT_EQ(list.GetTotalImpactLengthByTag(7), 24);
  EXPECT_TRUE(list.SetItemTag(1, 8));
  EXPECT_FALSE(list.SetItemTag(4, 8));
  EXPECT_FLOAT_EQ(list.GetTotalImpactLengthByTag(8), 18);
  EXPECT_EQ(list.HDListItem(2).SchedulerReference, "sched");
  EXPECT_EQ(list.HDListItem(2).LogReference, 12.5);
  list.ClearAllTags();
  EXPECT_EQ(list.HDListItem(2).Tag, 0);
  EXPECT_EQ(list.HDListItem(4).HDItem, nullptr);
  EXPECT_EQ(list.HDReference(), "HookList");
}

TEST(ItemList, PeakFilesAreReadWhenAskedFor) {
  const test::TempFolder folder;
  const auto item = Item("A", 1, 2);
  item->SetAudioFileName(folder.File("a.wav"));
  test::WriteBytes(item->AudioFileName(), test::Wav16(test::Noise16(88200), 44100, 1));
  cHDItems list;
  list.AddItem(item);
  list.SetAutoReadPeakFiles(true);
  for (const auto& added : {item, Item("no file", 1, 2)}) list.AddItem(added);
  for (const std::int32_t index : {1, 3}) EXPECT_EQ(list.HDListItem(index).PeakFile, nullptr);
  ASSERT_NE(list.HDListItem(2).PeakFile, nullptr);
  EXPECT_EQ(list.HDListItem(2).PeakFile->Header().AudioNumberSamples, 88200);
}

}  // namespace
}  // namespace qm
