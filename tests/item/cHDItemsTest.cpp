#include "item/cHDItems.h"

#include <gtest/gtest.h>

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

constexpr auto kBoth = static_cast<enListItemType>(hlitFull | hlitHook);

// The list as its serialisation, and how often it told of a change.
struct Heard {
  cHDItems list;
  int changes = 0;
  Heard() {
    list.events.Changed.connect([this] { ++changes; });
    for (const char* name : {"A", "B", "C"}) list.AddItem(Item(name, 9, 10));
    changes = 0;
  }
};

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
      {Hooked("both"), kBoth, 90, 100, 1, 0},
      {Item("separator", 5, 6), hlitSeparator, 0, 0, 0, 1},
  };
  for (const auto& row : rows) {
    cHDItems list;
    ASSERT_TRUE(list.AddItem(row.item, row.type)) << row.item->Reference();
    EXPECT_FLOAT_EQ(list.MainLength(), row.main) << row.item->Reference();
    EXPECT_FLOAT_EQ(list.TotalLength(), row.total) << row.item->Reference();
    EXPECT_FLOAT_EQ(list.TotalHDItem()->TotalLength(), row.total) << row.item->Reference();
    EXPECT_FLOAT_EQ(list.TotalHDItem()->AudioEnd(1), row.total) << row.item->Reference();
    EXPECT_FLOAT_EQ(list.TotalHDItem()->Extro(1), row.main) << row.item->Reference();
    EXPECT_EQ(list.HookCount(), row.hooks);
    EXPECT_EQ(list.SeparatorCount(), row.separators);
  }
}

TEST(ItemList, EveryChangeTellsOnceAndABadOneChangesNothing) {
  struct {
    const char* what;
    bool (*change)(cHDItems&);
    bool result;
    const char* after;
    int changes;
  } const rows[] = {
      {"add", [](cHDItems& list) { return list.AddItem(Hooked("D"), hlitHook); }, true, "1|A|1|B|1|C|2|D", 1},
      {"add nothing", [](cHDItems& list) { return list.AddItem(nullptr); }, false, "1|A|1|B|1|C", 0},
      {"no hook", [](cHDItems& list) { return list.AddItem(Item("D", 1, 2), hlitHook); }, false,
       "1|A|1|B|1|C", 0},
      {"insert", [](cHDItems& list) { return list.InsertItem(1, Item("D", 1, 2)); }, true, "1|D|1|A|1|B|1|C",
       1},
      {"insert behind", [](cHDItems& list) { return list.InsertItem(4, Item("D", 1, 2)); }, true,
       "1|A|1|B|1|C|1|D", 1},
      {"insert beyond", [](cHDItems& list) { return list.InsertItem(5, Item("D", 1, 2)); }, false,
       "1|A|1|B|1|C", 0},
      {"insert at 0", [](cHDItems& list) { return list.InsertItem(0, Item("D", 1, 2)); }, false,
       "1|A|1|B|1|C", 0},
      {"replace", [](cHDItems& list) { return list.ReplaceItem(2, Item("D", 1, 2), hlitSeparator); }, true,
       "1|A|4|D|1|C", 1},
      {"replace beyond", [](cHDItems& list) { return list.ReplaceItem(4, Item("D", 1, 2)); }, false,
       "1|A|1|B|1|C", 0},
      {"update", [](cHDItems& list) { return list.UpdateItemHDItem(3, Item("D", 1, 2)); }, true,
       "1|A|1|B|1|D", 1},
      {"remove", [](cHDItems& list) { return list.RemoveItem(2); }, true, "1|A|1|C", 1},
      {"remove beyond", [](cHDItems& list) { return list.RemoveItem(4); }, false, "1|A|1|B|1|C", 0},
      {"move up", [](cHDItems& list) { return list.MoveItem(1, 3); }, true, "1|B|1|C|1|A", 0},
      {"move down", [](cHDItems& list) { return list.MoveItem(3, 1); }, true, "1|C|1|A|1|B", 0},
      {"move nowhere", [](cHDItems& list) { return list.MoveItem(2, 2); }, true, "1|A|1|B|1|C", 0},
      {"move beyond", [](cHDItems& list) { return list.MoveItem(1, 4); }, false, "1|A|1|B|1|C", 0},
      {"clear", [](cHDItems& list) { return list.ClearItems(), true; }, true, "", 1},
  };
  for (const auto& row : rows) {
    Heard heard;
    EXPECT_EQ(row.change(heard.list), row.result) << row.what;
    EXPECT_EQ(heard.list.Serialisation(), row.after) << row.what;
    EXPECT_EQ(heard.changes, row.changes) << row.what;
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
  list.RemoveItem(1);
  list.RemoveItem(1);
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
  EXPECT_EQ(list.GetHDIndexByReference("abc", hlitFull), 2);
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
  auto item = Item("A", 1, 2);
  item->SetAudioFileName(folder.File("a.wav"));
  test::WriteBytes(item->AudioFileName(), test::Wav16(test::Noise16(88200), 44100, 1));
  cHDItems list;
  list.AddItem(item);
  list.SetAutoReadPeakFiles(true);
  list.AddItem(item);
  list.AddItem(Item("no file", 1, 2));
  EXPECT_EQ(list.HDListItem(1).PeakFile, nullptr);
  ASSERT_NE(list.HDListItem(2).PeakFile, nullptr);
  EXPECT_EQ(list.HDListItem(2).PeakFile->Header().AudioNumberSamples, 88200);
  EXPECT_EQ(list.HDListItem(3).PeakFile, nullptr);
}

}  // namespace
}  // namespace qm
