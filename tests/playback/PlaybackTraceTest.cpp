#include <sstream>

#include "audio/TraceFixture.h"
#include "item/cHDItems.h"
#include "playback/PoolRig.h"

namespace qm {
namespace {

using test::MakeItem;
using test::PoolRig;

struct PlaybackTrace : test::TraceFixture {
  PoolRig rig{1};

  // Without the lines of the players below.
  std::string TakeLines() {
    std::string rest;
    std::istringstream stream(TakeTrace());
    for (std::string line; std::getline(stream, line, '|');)
      if (line.find("BasePlayer(") == line.npos) rest += std::string(Trim(line)) + "|";
    return rest;
  }
};

TEST_F(PlaybackTrace, EachStepOfThePoolAndItsPlayersIsTold) {
  TakeTrace();
  rig.pool->SetAudioSettings(nullptr);
  EXPECT_EQ(TakeLines(), "Started Set AudioSettings|Exit as no Object|");
  rig.pool->QuickPlayHDItem(nullptr);
  EXPECT_EQ(TakeLines(), "Start QuickPlayHDItem|Exit No HDItem|");
  rig.pool->QuickPlayHDItem(MakeItem("a"), 9);
  EXPECT_EQ(TakeLines(),
            "Start QuickPlayHDItem|a, Player=0|Using currently closed Player=1|Start cPlayer1.PlayItem,90|"
            "PlayHDItem.Reference=a|Finish cPlayer1.PlayItem,90|Finish QuickPlayHDItem (1)|");
  rig.pool->QuickCueHDItem(MakeItem("b"));
  EXPECT_EQ(TakeLines(), "Start QuickCueHDItem|b, Player=0|Exit as no available Player|");
  rig.Player(1).CueItem();
  EXPECT_EQ(TakeLines(), "Start cPlayer1.CueHDItem,-1|CueHDItem is [Nothing]|Finish cPlayer1.CueHDItem,-1|");
  rig.Player(1).SetInitialVolume(70);
  EXPECT_EQ(TakeLines(), "Start Set cPlayer1.InitialVolume,70|Finish Set cPlayer1.InitialVolume,70|");
  rig.Player(1).ListAddList(nullptr);
  EXPECT_EQ(TakeLines(), "Start cPlayer1.ListAddList|Exit : No List|");
  const auto list = rig.Player(1).BaseListPlayer();
  TakeTrace();
  auto item = MakeItem("a");
  list->AddItem(item, hlitFull);
  EXPECT_EQ(TakeLines(), "Start ListPlayer.AddItem|HDItem:" + item->Serialisation() +
                             "|Start ListPlayer.UpdateOverallLength|Finish ListPlayer.UpdateOverallLength|"
                             "Finish ListPlayer.AddItem|");
  list->CueItems();
  EXPECT_EQ(TakeLines(),
            "Start ListPlayer.CueItems|Start ListPlayer.StartRunning|Start ListPlayer.CueListItem|"
            "Player 1 Available|Calling Player.CueItem|Finish ListPlayer.CueListItem|"
            "Finish ListPlayer.StartRunning|Finish ListPlayer.CueItems|");
  SetDebugMode(10);
  rig.pool->CheckKeyPress('A', 3, item);
  rig.pool->CheckKeyPress(112, 6, nullptr);
  const std::string keys = TakeLines();  // with columns of times at this level
  EXPECT_NE(keys.find("Key:A &H41+SC HDItem:a|"), std::string::npos) << keys;
  EXPECT_NE(keys.find("Key:? &H70+CA HDItem:|"), std::string::npos) << keys;
  SetDebugMode(0);
  list->CloseItems();
  EXPECT_FALSE(FolderExists(m_temp.File("debug"))) << "nothing is written when it is off";
}

TEST_F(PlaybackTrace, EachOperationOfTheTransportIsTold) {
  test::PlayerRig one;
  one.GoTo(psOpen);
  one.veto = peQueryPause;
  TakeTrace();
  one.player->CueItem();
  one.player->PauseItem();
  const std::string text = TakeTrace();
  std::size_t at = 0;
  for (const char* line : {"Start BasePlayer(0).CueItem", "Finish BasePlayer(0).CueItem",
                           "Start BasePlayer(0).PauseItem", "Exit : Cancelled"})
    EXPECT_NE(at = text.find(line, at), std::string::npos) << line << " in " << text;
}

}  // namespace
}  // namespace qm
