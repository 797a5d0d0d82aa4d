#include <gtest/gtest.h>

#include <random>

#include "playback/PlayerRig.h"

namespace qm::test {
namespace {

constexpr const char* kControlCalls[] = {"Open", "Cue", "Play", "Pause", "Seek", "Close", "AddVolumeChange"};
constexpr std::int32_t kQueries[] = {peQueryOpen, peQueryCue,   peQueryPlay,    peQueryPause,
                                     peQuerySeek, peQueryClose, peLinkQueryPlay};
constexpr std::int32_t kMarks[] = {peSweeperStartReached, peIntroStartReached, peHookEndReached,
                                   peExtroReached};

// Two players whose listeners call anything from anywhere, over controls that fail now and then.
class WildWalk {
 public:
  enum class UnLocking { No, Yes };

  WildWalk(std::uint32_t seed, UnLocking unlocking) : m_random(seed), m_unlocking(unlocking) {
    for (auto& rig : m_rigs) Renew(rig);
  }

  void Step() {
    for (auto& rig : m_rigs) {
      if (!rig->player || !rig->script->control) Renew(rig);
      rig->script->failing.clear(), rig->script->warning.clear();
      if (Chance(6)) (Chance(4) ? rig->script->warning : rig->script->failing).insert(AnyOf(kControlCalls));
      rig->veto = Chance(8) ? AnyOf(kQueries) : 0;
      rig->heard.clear();
    }
    Act();
    for (auto& rig : m_rigs) Check(*rig);
  }

  // Whatever has happened, a player that is unlocked can play a fresh item and close it.
  void Recover() {
    m_quiet = true;
    for (auto& rig : m_rigs) {
      if (!rig->player || !rig->script->control) Renew(rig);
      rig->veto = 0;
      rig->script->failing.clear(), rig->script->warning.clear();
      rig->player->RemoveSweeperPlayerLink(false);
      if (rig->player->Status() == psLocked) rig->player->UnLockPlayer();
      const auto fresh = MakeItem("fresh");
      EXPECT_TRUE(rig->player->PlayItem(fresh)) << rig->heard;
      EXPECT_TRUE(rig->player->SeekItem(70)) << rig->heard;
      EXPECT_TRUE(rig->player->CloseItem()) << rig->heard;
      EXPECT_EQ(rig->player->HDItem(), nullptr);
    }
    m_quiet = false;
  }

  int Reentries() const { return m_reentries; }

 private:
  std::size_t Pick(std::size_t count) { return m_random() % count; }
  template <class T, std::size_t Count>
  T AnyOf(T (&list)[Count]) {
    return list[Pick(Count)];
  }
  bool Chance(std::size_t outOf) { return Pick(outOf) == 0; }

  void Renew(std::unique_ptr<PlayerRig>& rig) {
    rig = std::make_unique<PlayerRig>();
    rig->script->tellErrors = true;
    rig->owner->settings->SetUsePlayerDucking(Chance(2));
    rig->onEvent = [this, raw = rig.get()](std::int32_t event) { OnEvent(*raw, event); };
  }

  void OnEvent(PlayerRig& rig, std::int32_t event) {
    if (!rig.player) return;
    EXPECT_NE(rig.script->control, nullptr) << "said behind a termination: " << rig.heard;
    const enPlayerStatus status = rig.player->Status();
    const bool telling = event == pePlaying || event == pePaused || event == peClosed || event == peLocked;
    EXPECT_TRUE(!telling || status == event) << rig.heard;  // the same numbers
    EXPECT_TRUE(event != peClosed || !rig.player->HDItem()) << rig.heard;
    if (m_quiet || m_depth >= 4 || !Chance(3)) return;
    ++m_reentries;
    ++m_depth;
    Act();
    --m_depth;
  }

  void Act() {
    PlayerRig& rig = *m_rigs[Pick(2)];
    if (!rig.player || !rig.script->control) return;
    const std::size_t what = Pick(10);
    if (what < 6) return Operate(rig);
    if (what < 8) return Notify(rig);
    what == 8 ? Change(rig) : Link(rig);
  }

  void Operate(PlayerRig& rig) {
    const auto& [name, run] = *std::next(Operations().begin(), Pick(Operations().size()));
    if (m_unlocking == UnLocking::Yes || name != "UnLock()" || rig.player->Status() == psLocked) run(rig);
  }

  void Notify(PlayerRig& rig) {
    rig.script->position = static_cast<float>(Pick(101));
    auto& control = rig.Control();
    const std::function<void()> choices[] = {[&] { control.Position(); },
                                             [&] { control.VolumeNotify(pvcFadeOut); },
                                             [&] { control.AudioEnd(); },
                                             [&] { control.Error(1, "gone"); },
                                             [&] { control.Level(1, 2); },
                                             [&] { control.Mark(AnyOf(kMarks), 0); },
                                             [&] { control.Mark(AnyOf(kMarks), 0); }};
    AnyOf(choices)();
  }

  void Change(PlayerRig& rig) {
    auto& player = *rig.player;
    const auto volume = static_cast<std::int16_t>(Pick(101));
    const std::function<void()> choices[] = {
        [&] { player.SetInitialVolume(volume); },
        [&] { player.SetPlayVolume(volume); },
        [&] { player.SetPlayHookMode(Chance(2)); },
        [&] { player.SetReservation(1, "x"); },
        [&] { player.ClearReservation(); },
        [&] { player.Fade(5, 1, pvcFadeOut); },
        [&] { player.TerminatePlayer(); },
        [&] { rig.player.reset(); },
        [&] { player.ChangeHDItemParameter(static_cast<enChangeHDItemParam>(1 + Pick(11)), volume); }};
    AnyOf(choices)();
  }

  void Link(PlayerRig& rig) {
    const auto other = m_rigs[rig.player == m_rigs[0]->player ? 1 : 0]->player;
    if (Chance(4)) return rig.player->RemoveSweeperPlayerLink(Chance(2));
    if (Chance(4)) return rig.player->ClearPlayerLink();
    rig.player->AddSweeperPlayerLink(other);
  }

  void Check(PlayerRig& rig) {
    if (!rig.player) {
      EXPECT_EQ(rig.script->control, nullptr) << "kept alive: " << rig.heard;
      return;
    }
    const enPlayerStatus status = rig.player->Status();
    const bool open = status != psClosed && status != psLocked;
    EXPECT_TRUE(!open || rig.player->HDItem()) << rig.heard;
    EXPECT_TRUE(open || m_unlocking == UnLocking::Yes || !rig.player->HDItem()) << rig.heard;
    EXPECT_TRUE(rig.script->control || !rig.player->HDItem()) << rig.heard;
  }

  std::mt19937 m_random;
  UnLocking m_unlocking;
  std::unique_ptr<PlayerRig> m_rigs[2];
  int m_depth = 0, m_reentries = 0;
  bool m_quiet = false;
};

TEST(Reentrancy, AnyListenerMayCallAnything) {
  for (const auto unlocking : {WildWalk::UnLocking::No, WildWalk::UnLocking::Yes}) {
    WildWalk walk(20240517, unlocking);
    for (int step = 0; step < 20000; ++step) {
      walk.Step();
      if (step % 50 == 49) walk.Recover();
      if (testing::Test::HasFailure()) FAIL() << "at step " << step;
    }
    EXPECT_GT(walk.Reentries(), 8000);
  }
}

}  // namespace
}  // namespace qm::test
