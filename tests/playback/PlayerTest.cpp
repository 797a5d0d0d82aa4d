#include <gtest/gtest.h>

#include <tuple>

#include "item/cHDItems.h"
#include "kits/common/TagText.h"
#include "playback/PoolRig.h"

// The facade: what goes to which of its players, and the records it makes.
namespace qm {
namespace {

using test::MakeItem;
using test::PoolRig;

struct PlayerFacade : ::testing::Test {
  PoolRig rig{2};
  cPlayer& player = rig.Player(1);
  std::string logs;  // text of the record that stands at each peClosing

  void SetUp() override {
    player.events.PlayerEvent.connect([this](std::int32_t event, auto&&...) {
      if (event == peClosing) logs += player.PreviousItemPlayLog()->Serialisation(plsoBasic) + "\n";
    });
  }
  void AddToList(const char* name) { ASSERT_TRUE(player.ListAddItem(MakeItem(name), hlitFull)); }
};

TEST_F(PlayerFacade, TheListTakesTheTransportOver) {
  EXPECT_FALSE(player.ListRemoveItem(1)) << "no list yet";
  EXPECT_FALSE(player.ListAddList(nullptr));
  EXPECT_FALSE(player.ListAddList(std::make_shared<cHDItems>()));
  EXPECT_FALSE(player.ListMode());
  AddToList("a");
  auto items = std::make_shared<cHDItems>();
  items->AddItem(MakeItem("b"));
  EXPECT_TRUE(player.ListAddList(items));
  EXPECT_FALSE(player.ListAddList(nullptr));
  EXPECT_TRUE(player.ListMode()) << "what is there stays";
  ASSERT_TRUE(player.CueItem(MakeItem("ignored")));
  EXPECT_EQ(player.HDReference(), "List");
  EXPECT_EQ(player.BasePlayer()->Status(), psClosed);
  EXPECT_FALSE(player.OpenItem(MakeItem("c")));
  EXPECT_FALSE(player.SeekItem(5));
  EXPECT_FALSE(player.SeekItemPercent(5));
  ASSERT_TRUE(player.PlayItem());
  EXPECT_EQ(player.Status(), psPlaying);
  EXPECT_FLOAT_EQ(player.SecondsRemaining(), player.BaseListPlayer()->SecondsRemain());
  EXPECT_TRUE(player.PauseItem());
  EXPECT_TRUE(player.ListRemoveItem(2));
  EXPECT_TRUE(player.Fade(0, 5, pvcFadeOut)) << "closes at once";
  EXPECT_FALSE(player.ListMode());
  EXPECT_EQ(player.Status(), psClosed);
  EXPECT_EQ(player.PreviousHDItem()->Reference(), "List");
  ASSERT_TRUE(player.PlayItem(MakeItem("c")));
  player.CloseItem();
  EXPECT_EQ(player.PreviousHDItem()->Reference(), "c");
}

TEST_F(PlayerFacade, EachCloseLeavesARecord) {
  player.SetSchedulerReference("ignored before the item is open");
  ASSERT_TRUE(player.PlayItem(MakeItem("a")));
  player.SetLogReference(12.5);
  player.SetSchedulerReference("S \"1\"");
  player.SetPreviewMode(true);
  rig.PlayTo(1, 20);
  player.PauseItem();
  EXPECT_EQ(player.CurrentItemPlayLog()->Duration(), 20) << "what does not play does not count";
  player.CloseItem();
  AddToList("b");
  ASSERT_TRUE(player.PlayItem());
  player.CloseItem();
  const std::string start = DateTimeText(DateTimeNow(*rig.clock));
  EXPECT_EQ(logs, "HDRef=\"a\" StDt=" + start +
                      " Dur=20 Flags=4096 Player=1 LogRef=12.5 SchRef=\"S %221%22\"\n"
                      "HDRef=\"List\" StDt=" +
                      start + " Flags=16384 Player=1\n");
  EXPECT_EQ(player.PreviousItemPlayLog()->flags(), plfListMode) << "stands until the next close";
}

TEST_F(PlayerFacade, IsAskedForWhatItHolds) {
  ASSERT_TRUE(player.CueItem(MakeItem("Abc")));
  player.SetLogReference(5);
  const std::tuple<const char*, double, bool> rows[] = {
      {"aBC", -1, true}, {" abc ", 0, true}, {"abc", 5, true}, {"abc", 6, false},
      {"", 5, true},     {" ", -1, false},   {"", 0, false},   {"other", 5, false}};
  for (const auto& [reference, log, same] : rows)
    EXPECT_EQ(player.IsSameHDReference(reference, log), same) << reference << " " << log;
  player.CloseItem();
  EXPECT_FALSE(player.IsSameHDReference("abc"));
}

TEST_F(PlayerFacade, WithoutItsPlayersItIsEmpty) {
  const auto kept = rig.pool->Player(1);
  rig.pool->Terminate();
  EXPECT_EQ(kept->HDItem(), nullptr);
  EXPECT_EQ(kept->HDReference(), "");
  EXPECT_EQ(kept->Status(), 0);
  EXPECT_EQ(kept->CurrentItemPlayLog(), nullptr);
  EXPECT_EQ(kept->BaseListPlayer(), nullptr);
  EXPECT_FALSE(kept->PlayItem(MakeItem("a")));
  EXPECT_FALSE(kept->ListAddItem(MakeItem("a"), hlitFull));
}

TEST(PlayLog, ItsTextHoldsWhatSaysSomething) {
  cPlayLog log;
  EXPECT_EQ(log.Serialisation(), "");
  auto item = std::make_shared<cHDItem>();
  item->SetReference(" ");
  log.SetHardDiskItem(item);
  log.SetHardwareState("0000");
  EXPECT_EQ(log.Serialisation(plsoIncludeHardware), "");
  item->SetReference("A 1");
  log.SetStartDate(45250), log.SetStartTime(3600), log.SetDuration(1.5f);
  log.SetLoginName("Jo \"J\"");
  log.SetComputerID(-3), log.SetPlayerNumber(4);
  log.SetSchedulerReference("S"), log.SetLogReference(45250.25);
  log.SetHardwareState("010"), log.SetOnAirReference("O");
  log.Setflags(plfOnAir | plfHookMode);
  const std::string basic = "HDRef=\"A 1\" StDt=2023-11-20T01:00:00 Dur=1.5 Flags=8193 CompID=-3 Player=4 ";
  const std::string rest = "Login=\"Jo %22J%22\" LogRef=45250.25 OnAirRef=\"O\" SchRef=\"S\"";
  EXPECT_EQ(log.Serialisation(plsoBasic), basic + rest);
  EXPECT_EQ(log.Serialisation(plsoIncludeHardware), basic + rest + " HWState=010");
  const std::string full = log.Serialisation();
  EXPECT_EQ(GetTagValue(full, "HD.Ser", "=", true), item->Serialisation());
  EXPECT_EQ(GetTagValue(full, "HWState"), "010");
}

}  // namespace
}  // namespace qm
