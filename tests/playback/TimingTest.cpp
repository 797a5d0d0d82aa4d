#include <gtest/gtest.h>

#include <tuple>

#include "playback/PlayerRig.h"

namespace qm::test {
namespace {

TEST(Timing, PositionMovesSectionAndClocks) {
  // SecondsRemainingExtro and PercentagePlayed at a position.
  const std::tuple<float, enPlayerSection, float, float> rows[] = {
      {0, epsPreIntro, 90, 0},
      {0.5f, epsPreIntro, 89.5f, 0.5555556f},
      {1, epsDuringIntro, 89, 1.1111112f},
      {10, epsMain, 80, 11.111111f},
      {90, epsExtro, 0, 100},
      {100, epsExtro, 0, 100},
  };
  PlayerRig rig;
  rig.GoTo(psPlaying);
  for (const auto& [position, section, extro, percent] : rows) {
    rig.PlayTo(position);
    EXPECT_EQ(rig.player->Section(), section) << position;
    EXPECT_EQ(rig.player->SecondsPlayed(), position);
    EXPECT_EQ(rig.player->SecondsRemaining(), 100 - position);
    EXPECT_EQ(rig.player->SecondsRemainingExtro(), extro) << position;
    EXPECT_FLOAT_EQ(rig.player->PercentagePlayed(), percent) << position;
    EXPECT_FLOAT_EQ(rig.player->TotalPercentagePlayed(), position);
  }
  rig.a->SetAudioStart(1, 100);
  EXPECT_EQ(rig.player->TotalPercentagePlayed(), 0);  // no way to go is no fault
  rig.player->CloseItem();
  rig.TakeHeard();
  rig.PlayTo(50);
  EXPECT_EQ(rig.TakeHeard(), "");
  EXPECT_EQ(rig.player->Section(), epsEmpty);
}

TEST(Timing, OddItems) {
  const struct {
    float introStart, introEnd, hookStart, hookEnd, extro, audioEnd;
    enPlayerSection section;  // at 5 seconds
    const char* marks;        // in the order in which they are set
  } rows[] = {
      {0, 0, 0, 30, 0, 100, epsExtro, "Mark(42@30) Mark(41@0)"},
      {0, 0, -1, 30, 90, 100, epsMain, "Mark(61@90) Mark(42@30) Mark(41@-1)"},
      {6, 8, 20, 0, 90, 100, epsPreIntro, "Mark(61@90) Mark(32@8) Mark(31@6)"},
      {-1, -1, 0, 0, 90, 100, epsMain, "Mark(61@90)"},
      {2, 8, 0, 0, 90, 0, epsEmpty, "Mark(61@90) Mark(32@8) Mark(31@2)"},
  };
  for (const auto& row : rows) {
    PlayerRig rig;
    rig.a->SetIntroEnd(1, row.introEnd);
    rig.a->SetIntroStart(1, row.introStart);
    rig.a->SetHookEnd(1, row.hookEnd);
    rig.a->SetHookStart(1, row.hookStart);
    rig.a->SetExtro(1, row.extro);
    EXPECT_TRUE(rig.player->OpenItem(rig.a));
    EXPECT_EQ(rig.script->TakeCalls(), std::string("Open(a.wav) AudioEnd(100) AudioStart(0) ") + row.marks);
    rig.a->SetAudioEnd(1, row.audioEnd);
    rig.PlayTo(5);
    EXPECT_EQ(rig.player->Section(), row.section) << row.introStart << " " << row.extro;
  }
}

TEST(Timing, NotificationsBecomeEvents) {
  PlayerRig rig;
  rig.GoTo(psPlaying);
  std::string levels, errorText;
  rig.player->events.LevelChanged.connect([&](std::int16_t left, std::int16_t right) {
    levels = rig.heard + std::to_string(left) + std::to_string(right);
  });
  rig.player->events.PlayerEvent.connect(
      [&](std::int32_t, std::string&, float&, float&, std::string& text, auto&&...) { errorText += text; });
  auto& control = rig.Control();
  control.Level(-7, 32767);
  EXPECT_EQ(levels, "-732767");  // before the event of the same
  control.Error(12, "no device");
  EXPECT_EQ(errorText, "no device");
  control.LoopRestart();
  control.LoopCompleted();
  control.VolumeStart(4);
  control.VolumeEnd(4);
  rig.player->SetPlaySpeed(1.5f);
  rig.player->SetTimeStretchRatio(0.5f);
  for (const std::int32_t mark : {21, 31, 32, 41, 42, 61, 11, 91, 255}) control.Mark(mark, 9);
  EXPECT_EQ(rig.TakeHeard(),
            "AudioLevelChanged=-7/32767 Error=12 LoopRestart LoopCompleted VolumeChangeStartNotify=4 "
            "VolumeChangeEndNotify=4 PlaySpeedChanged=1.5 TimeStretchRationChanged=0.5 SweeperStartReached=9 "
            "IntroStartReached=9 IntroEndReached=9 HookStartReached=9 HookEndReached=9 ExtroReached=9");
}

TEST(Timing, FadeTellsWhenItFires) {
  PlayerRig rig;
  EXPECT_FALSE(rig.player->Fade(5, 2, pvcFadeOut));
  rig.GoTo(psPlaying);
  rig.player->SetInitialVolume(80);
  rig.player->SetPlayVolume(30);
  rig.script->calls.clear();
  EXPECT_TRUE(rig.player->Fade(500, 2, pvcFadeOut));
  EXPECT_EQ(rig.script->TakeCalls(), "AddVolumeChange(3,100,2,80,0,65)");  // not past the audio
  rig.TakeHeard();
  rig.Control().VolumeNotify(pvcEarlyFade);
  EXPECT_FALSE(rig.player->FadeNotified());
  rig.Control().VolumeNotify(pvcFadeOut);
  EXPECT_EQ(rig.TakeHeard(), "VolumeChangeNotify=4 FadingOut VolumeChangeNotify=3");
  EXPECT_TRUE(rig.player->FadeActive() && rig.player->FadeNotified());
  rig.player->CueItem();
  EXPECT_EQ(rig.script->TakeCalls(), "Cue Volume(80) RemoveVolumeChange(3)");

  rig.script->failing = {"AddVolumeChange"};
  EXPECT_FALSE(rig.player->Fade(5, 2, pvcFadeOut));
  rig.Control().VolumeNotify(pvcFadeOut);
  EXPECT_FALSE(rig.player->FadeActive() || rig.player->FadeNotified());
}

TEST(Timing, Volumes) {
  PlayerRig rig;
  rig.player->SetInitialVolume(150);
  EXPECT_EQ(rig.player->InitialVolume(), 100);
  EXPECT_EQ(rig.script->TakeCalls(), "");  // the control is there already
  rig.player->SetPlayVolume(-5);
  EXPECT_EQ(rig.player->PlayVolume(), 0);
  rig.script->control->SetVolume(66.5f);
  EXPECT_EQ(rig.player->PlayVolume(), 66);
  rig.TakeHeard();
  rig.player->PlayItem(rig.a, 40);
  EXPECT_EQ(rig.TakeHeard(),
            "QueryPlay(a) QueryOpen(a) Opening VolumeChanged=40 Opened QueryCue(a) Cued Playing=0/-1");
  rig.owner->settings->SetGeneralVolume(90);
  rig.player->CloseItem();
  EXPECT_EQ(rig.player->InitialVolume(), 90);
  EXPECT_EQ(rig.TakeHeard(), "QueryClose(a) Closing VolumeChanged=90 Closed");
}

TEST(InitPlayer, TellsTheControlBuffersAndDevice) {
  using Row = std::tuple<std::int16_t, std::int16_t, std::int32_t, std::int32_t, enVSBufferSize, std::int32_t,
                         const char*>;
  const Row rows[] = {
      // number, list index, total and length of the platform's buffers in ms, size, device, what is told
      {2, 0, 0, 0, vsbsExtended, 49, "(2) BufferLength(500) BufferCount(16) DeviceType(0) DeviceNumber(49)"},
      {2, 3, 0, 0, vsbsLarge, 101, "(203) BufferLength(1000) BufferCount(4) DeviceType(2) DeviceNumber(1)"},
      {2, 0, 2000, 100, vsbsStandard, 149,
       "(2) BufferLength(100) BufferCount(20) DeviceType(2) DeviceNumber(49)"},
      {2, 0, 9000, 100, vsbsLarge, 0, "(2) BufferLength(1000) BufferCount(9) DeviceNumber(0)"},
      {2, 0, 1000, 300, vsbsStandard, 50, "(2) BufferLength(300) BufferCount(3)"},
      {2, 0, 0, 0, vsbsStandard, 150, "(2) BufferLength(250) BufferCount(16)"},
      {-4, 0, 0, 0, vsbsStandard, 9, "(-4) BufferLength(250) BufferCount(16) DeviceType(0) DeviceNumber(4)"},
      {0, 0, 0, 0, vsbsStandard, 9, "(0) BufferLength(250) BufferCount(16) DeviceNumber(0)"},
  };
  for (const auto& [number, listIndex, total, length, size, device, calls] : rows) {
    PlayerRig rig;
    rig.sound->streaming.bufferTotal = total, rig.sound->streaming.bufferLength = length;
    rig.owner->settings->SetMaxPlayers(4);
    rig.owner->settings->SetPlayerSoundDevice(2, device);
    rig.owner->settings->SetVellanStreamBufferSize(size);
    EXPECT_TRUE(rig.player->InitPlayer(number, rig.owner->settings, listIndex));
    EXPECT_EQ(rig.script->TakeCalls(), std::string("PlayerId") + calls);
    EXPECT_EQ(rig.player->Reference(), number < 0 ? 0 : number);
  }
  PlayerRig rig;
  rig.player->InitPlayer(1, nullptr);
  EXPECT_EQ(rig.script->TakeCalls(), "PlayerId(1) InitialiseEngine");
}

}  // namespace
}  // namespace qm::test
