#include <gtest/gtest.h>

#include <limits>
#include <tuple>

#include "playback/PlayerRig.h"

namespace qm::test {
namespace {

std::string Marks(const cHDItem& item) {
  std::string text;
  for (const float value : {item.AudioStart(1), item.IntroStart(1), item.IntroEnd(1), item.HookStart(1),
                            item.HookEnd(1), item.Extro(1), item.AudioEnd(1)})
    AddWord(text, NumberText(value));
  return text;
}

TEST(Parameters, MarksMoveTheirNeighbours) {
  // Audio start, intro start and end, hook start and end, extro, audio end; what the control is told.
  const std::tuple<enChangeHDItemParam, float, const char*, const char*> rows[] = {
      {hipAudioStart, 95, "95 95 95 20 30 95 100", "Mark(61@95) Mark(32@95) Mark(31@95) AudioStart(95)"},
      {hipAudioStart, -3, "0 1 10 20 30 90 100", "AudioStart(0)"},
      {hipIntroStart, 500, "0 100 100 20 30 100 100", "Mark(61@100) Mark(32@100) Mark(31@100)"},
      {hipIntroStart, 0, "0 0 10 20 30 90 100", "RemoveMark(31)"},
      {hipIntroEnd, 0.5f, "0 0.5 0.5 20 30 90 100", "Mark(31@0.5) Mark(32@0.5)"},
      {hipHookStart, 40, "0 1 10 40 40 90 100", "Mark(42@40) Mark(41@40)"},
      {hipHookEnd, 15, "0 1 10 15 15 90 100", "Mark(41@15) Mark(42@15)"},
      {hipExtro, 5, "0 1 10 20 30 5 100", "Mark(61@5)"},
      {hipAudioEnd, 8, "0 1 8 8 8 8 8", "Mark(32@8) Mark(61@8) AudioEnd(8)"},
      {hipAudioEnd, -1, "0 0 0 0 0 0 0", "RemoveMark(31) RemoveMark(32) RemoveMark(61) AudioEnd(0)"},
  };
  for (const auto& [param, setting, marks, calls] : rows) {
    PlayerRig rig;
    rig.GoTo(psCued);
    EXPECT_TRUE(rig.player->ChangeHDItemParameter(param, setting));
    EXPECT_EQ(Marks(*rig.a), marks) << param << "=" << setting;
    EXPECT_EQ(rig.script->TakeCalls(), calls) << param << "=" << setting;
    EXPECT_EQ(rig.player->Section(), rig.a->AudioEnd(1) > 0 ? epsPreIntro : epsEmpty);
    EXPECT_TRUE(rig.heard.find("PositionChanged") != std::string::npos) << rig.heard;
  }
}

TEST(Parameters, LoopAnswersFalseWhateverItDoes) {
  // Start and end before; then start, end and passes.
  const std::tuple<float, float, enChangeHDItemParam, float, const char*, const char*> rows[] = {
      {-1, -1, hipLoopStart, 10, "10 10.5 3", "LoopStart(10) LoopEnd(10.5) UseLoop(1) UseLoop(1)"},
      {5, 50, hipLoopStart, 2, "4.5 50 3", "LoopStart(4.5) UseLoop(1)"},
      {5, 50, hipLoopStart, 0, "0 0 3", "UseLoop(0) LoopStart(0) LoopEnd(0)"},
      {8, 50, hipLoopEnd, 3, "4.5 5 3", "LoopEnd(5) LoopStart(4.5) UseLoop(1) UseLoop(1)"},
      {5, 50, hipLoopEnd, 0, "0 0 0", "UseLoop(0) LoopStart(0) LoopEnd(0)"},
      {5, 50, hipLoopNumberLoops, 2.4f, "5 50 2", "UseLoop(1) LoopCount(2)"},
      {5, 50, hipLoopNumberLoops, 0, "5 50 1000", "UseLoop(1) LoopCount(1000)"},
      {-1, 50, hipLoopNumberLoops, 9, "-1 50 0", "UseLoop(0) LoopCount(0)"},
      {5, 50, hipLoopPlayToEnd, -1, "5 50 3", ""},
  };
  for (const auto& [start, end, param, setting, loop, calls] : rows) {
    PlayerRig rig;
    rig.GoTo(psCued);
    rig.a->SetLoopStart(start), rig.a->SetLoopEnd(end), rig.a->SetLoopNumberLoops(3);
    EXPECT_FALSE(rig.player->ChangeHDItemParameter(param, setting));
    EXPECT_EQ(rig.script->TakeCalls(), calls) << param << "=" << setting;
    std::string after = NumberText(rig.a->LoopStart());
    AddWord(after, NumberText(rig.a->LoopEnd()));
    AddWord(after, NumberText(rig.a->LoopNumberLoops()));
    EXPECT_EQ(after, loop) << param << "=" << setting;
    EXPECT_EQ(rig.a->LoopPlayToEnd(), param == hipLoopPlayToEnd);
    EXPECT_EQ(rig.TakeHeard(), "");
  }
}

TEST(Parameters, RefusedAndContradictingSettings) {
  PlayerRig rig;
  EXPECT_FALSE(rig.player->ChangeHDItemParameter(hipExtro, 50));  // nothing open
  rig.GoTo(psCued);
  for (const std::int32_t param : {-1, 0, 12, 1000})
    EXPECT_FALSE(rig.player->ChangeHDItemParameter(static_cast<enChangeHDItemParam>(param), 50));
  for (const float setting : {std::numeric_limits<float>::infinity(), std::nanf("")})
    EXPECT_FALSE(rig.player->ChangeHDItemParameter(hipExtro, setting));
  EXPECT_EQ(rig.script->TakeCalls() + rig.TakeHeard(), "");
  // Marks that stand the wrong way round do not push each other for ever.
  rig.a->SetIntroStart(1, 20);
  rig.a->SetHookStart(1, 60);
  EXPECT_TRUE(rig.player->ChangeHDItemParameter(hipIntroEnd, 15));
  EXPECT_TRUE(rig.player->ChangeHDItemParameter(hipHookEnd, 40));
  EXPECT_EQ(Marks(*rig.a), "0 15 15 40 40 90 100");
  // A listener that replaces the item at the first of them ends the change there.
  rig.onEvent = [&](std::int32_t event) {
    if (event == pePositionChanged) rig.player->PlayItem(rig.b);
  };
  EXPECT_FALSE(rig.player->ChangeHDItemParameter(hipAudioStart, 95));
  EXPECT_EQ(Marks(*rig.a), "0 15 15 40 40 95 100");
  EXPECT_EQ(Marks(*rig.b), "0 1 10 20 30 90 100");
}

}  // namespace
}  // namespace qm::test
