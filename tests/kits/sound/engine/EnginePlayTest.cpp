#include <gtest/gtest.h>

#include "kits/sound/engine/EngineBench.h"

// Playing through the offline device, checked sample by sample.
namespace qm {
namespace {

using test::EngineBench;
using test::Noise16;
using test::Record;
using Lines = std::vector<std::string>;

// A second of noise in a player that is listened to.
class EnginePlay : public testing::Test {
 protected:
  EnginePlay() { Record(*player, *bench.engine, lines); }
  void SetLoop(std::int32_t count) {
    player->SetLoopStart(0.2f);
    player->SetLoopEnd(0.5f);
    player->SetUseLoop(true);
    player->SetLoopCount(count);
  }
  // These parts of the file, one after the other, and nothing else.
  void ExpectHeard(const std::vector<std::pair<std::size_t, std::size_t>>& parts) {
    std::size_t at = 0;
    for (const auto& [from, to] : parts)
      for (std::size_t i = from; i < to; ++i, ++at)
        for (std::size_t c = 0; c < 2; ++c) ASSERT_EQ(bench.Heard16(at, c), noise[2 * i + c]) << at;
    EXPECT_EQ(at, bench.HeardFrames());
  }

  EngineBench bench;
  const std::vector<std::int16_t> noise = Noise16(2 * 44100);
  const std::string path = bench.Wav("a", noise);
  std::unique_ptr<ctlVellanPlayer> player = bench.Player(path);
  Lines lines;
};

TEST_F(EnginePlay, PassesTheSamplesBetweenAudioStartAndAudioEndUnchanged) {
  player->SetAudioEnd(0.75f);
  player->SetAudioStart(0.25f);
  ASSERT_TRUE(player->Cue());
  EXPECT_EQ(player->SecondsPlayed(), 0.25f);
  ASSERT_TRUE(player->Play());
  bench.Run();
  ExpectHeard({{11025, 33075}});
  EXPECT_EQ(lines, (Lines{"22050 AudioEnd"}));
  EXPECT_EQ(player->SecondsPlayed(), 0.75f);
  EXPECT_EQ(player->SecondsRemaining(), 0);
}

// Marks on awkward positions: the position told with each is at or behind it, in single precision.
TEST_F(EnginePlay, TellsEachMarkAtItsExactFrameWithItsPositionFirst) {
  for (const auto& [seconds, frame] :
       {std::pair{0.1f, 4410}, {0.333333f, 14700}, {0.5000113f, 22050}, {0.69999f, 30870}, {1.0f, 44100}}) {
    auto marked = bench.Player(path);
    marked->AddPositionEvent({seconds, 61, 5});
    const std::int64_t start = bench.engine->Frame();
    float told = -1;
    std::int64_t at = -1;
    marked->events.Position.connect([&] { told = marked->SecondsPlayed(); });
    marked->events.Mark.connect([&, seconds = seconds](std::int32_t id, std::int32_t tag) {
      EXPECT_EQ(std::pair(id, tag), std::pair(61, 5));
      EXPECT_EQ(at, -1) << "once";
      at = bench.engine->Frame() - start;
      EXPECT_GE(told, seconds);
      EXPECT_GE(marked->SecondsPlayed(), seconds);
      EXPECT_LT(told, seconds + 1e-4f);
    });
    bench.PlayOut(*marked);
    EXPECT_EQ(at, frame) << seconds;
  }
}

// Several frames of the file fall on one of a slower device: each mark still comes, and comes once.
TEST(EngineRates, TellEachMarkOnce) {
  for (const std::int32_t deviceRate : {8000, 44100, 48000, 96000}) {
    EngineBench bench(deviceRate);
    auto player = bench.Player(bench.Wav("a", Noise16(2 * 4800), 48000));
    std::vector<int> told(40);
    for (std::int32_t id = 0; id < 40; ++id)
      player->AddPositionEvent({0.02f + static_cast<float>(id) / 48000, id, 0});
    player->events.Mark.connect([&](std::int32_t id, std::int32_t) {
      ++told[static_cast<std::size_t>(id)];
      if (id % 7 == 0) player->SetPlaySpeed(player->PlaySpeed() * 1.01f);
    });
    player->Cue();
    player->Play();
    for (int pumps = 0; pumps < 1000 && bench.engine->Pump(); ++pumps) {
    }
    EXPECT_EQ(told, std::vector<int>(40, 1)) << deviceRate;
  }
}

TEST_F(EnginePlay, TellsPositionsTwentyFiveTimesASecondWithLevels) {
  ASSERT_EQ(player->Open(bench.SineWav("sine", 2, 441, 0.5)), 0);
  int positions = 0, levels = 0;
  player->events.Position.connect(
      [&] { EXPECT_FLOAT_EQ(player->SecondsPlayed(), 0.04f * static_cast<float>(++positions)); });
  player->events.Level.connect([&](std::int16_t left, std::int16_t right) {
    EXPECT_EQ(left, right);
    EXPECT_NEAR(left, 16384, 40);
    ++levels;
  });
  bench.PlayOut(*player);
  EXPECT_EQ(positions, 50);
  EXPECT_EQ(levels, 50);
}

TEST_F(EnginePlay, GoesOnWithTheNextFileAtTheFrameOfTheEnd) {
  int runs = 0;
  player->events.AudioEnd.connect([&] {
    if (++runs == 3) return;
    EXPECT_TRUE(player->Close());
    EXPECT_EQ(player->Open(path), 0);
    EXPECT_TRUE(player->Play());
  });
  player->Play();
  bench.Run();
  ExpectHeard({{0, 44100}, {0, 44100}, {0, 44100}});
}

TEST_F(EnginePlay, LoopsWithoutLosingOrDoublingASample) {
  SetLoop(3);
  player->AddPositionEvent({0.3f, 31, 0});
  player->AddPositionEvent({0.6f, 61, 0});
  bench.PlayOut(*player);
  ExpectHeard({{0, 22050}, {8820, 22050}, {8820, 44100}});
  EXPECT_EQ(lines, (Lines{"13230 Mark 31", "22050 LoopRestart", "26460 Mark 31", "35280 LoopRestart",
                          "39690 Mark 31", "48510 LoopCompleted", "52920 Mark 61", "70560 AudioEnd"}));
}

TEST_F(EnginePlay, ALoopReleasedRunsToTheEndOfItsPass) {
  SetLoop(1000);
  int turns = 0;
  player->events.LoopRestart.connect([&] {
    EXPECT_TRUE(player->InLoop());
    if (++turns == 2) player->SetUseLoop(false);
  });
  bench.PlayOut(*player);
  ExpectHeard({{0, 22050}, {8820, 22050}, {8820, 44100}});
}

TEST(EngineRates, ResampleAndStretchToTheExactLength) {
  const struct {
    std::uint32_t fileRate;
    std::int32_t deviceRate;
    float speed, stretch;
  } rows[] = {{44100, 48000, 1, 1},       {48000, 44100, 1, 1},    {8000, 44100, 1, 1},
              {44100, 44100, 1.06f, 1},   {44100, 44100, 1, 1.1f}, {22050, 48000, 1, 0.9f},
              {44100, 48000, 0.5f, 1.25f}};
  for (const auto& row : rows) {
    EngineBench bench(row.deviceRate);
    auto player = bench.Player(bench.SineWav("a", 1.5, 500, 0.5, row.fileRate));
    Lines lines;
    Record(*player, *bench.engine, lines);
    player->SetPlaySpeed(row.speed);
    player->SetTimeStretchRatio(row.stretch);
    player->AddPositionEvent({0.75f, 61, 0});
    bench.PlayOut(*player);
    const double ratio = static_cast<double>(row.deviceRate) /
                         (row.fileRate * static_cast<double>(row.speed)) * static_cast<double>(row.stretch);
    const auto mark = std::llrint(std::rint(0.75 * row.fileRate) * ratio),
               end = std::llrint(1.5 * row.fileRate * ratio);
    EXPECT_EQ(lines, (Lines{std::to_string(mark) + " Mark 61", std::to_string(end) + " AudioEnd"}));
    ASSERT_EQ(bench.HeardFrames(), static_cast<std::size_t>(end));
    // The tone, at speed times its pitch, fills the file: zero crossings count it.
    int crossings = 0;
    for (std::size_t i = 1; i < bench.HeardFrames(); ++i)
      crossings += bench.heard[2 * i - 2] < 0 && bench.heard[2 * i] >= 0;
    const double expected = 500 * static_cast<double>(row.speed) * static_cast<double>(end) / row.deviceRate;
    EXPECT_NEAR(crossings, expected, 0.02 * expected) << row.fileRate << " to " << row.deviceRate;
  }
}

TEST_F(EnginePlay, AFileThatBreaksOffIsAnErrorAndThenTheEnd) {
  player->AddPositionEvent({0.9f, 61, 0});
  std::filesystem::resize_file(path, 44 + 4 * 20000);
  bench.PlayOut(*player);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_TRUE(lines[0].starts_with("20000 Error ")) << lines[0];
  EXPECT_EQ(lines[1], "20000 AudioEnd");
}

TEST_F(EnginePlay, RefusesWhatItCannotOpenAndSaysWhy) {
  test::WriteBytes(bench.folder.File("empty.wav"), "");
  for (const char* name : {"missing.wav", "empty.wav", ""}) {
    lines.clear();
    EXPECT_NE(player->Open(bench.folder.File(name)), 0) << name;
    EXPECT_EQ(lines.size(), 1u) << name;
    EXPECT_FALSE(player->Play());
  }
  player->SetDeviceNumber(7);
  EXPECT_NE(player->Open(path), 0);
  ASSERT_EQ(lines.size(), 2u);
  for (const std::string& line : lines) EXPECT_GT(line.size(), std::string("0 Error ").size());
}

// A control may be closed or destroyed from any of its notifications.
TEST_F(EnginePlay, SurvivesItsOwnEndFromWithinAnyNotification) {
  for (int which = 0; which < 8; ++which) {
    player = bench.Player(path);
    bool over = false;
    const auto end = [&](auto...) {
      over = true;
      if (which < 4)
        player.reset();
      else
        player->Close();
    };
    player->AddPositionEvent({0.5f, 31, 0});
    player->AddPositionEvent({0.5f, 61, 0});
    if (which % 4 == 0) player->events.Position.connect(end);
    if (which % 4 == 1) player->events.Level.connect(end);
    if (which % 4 == 2) player->events.Mark.connect(end);
    if (which % 4 == 3) player->events.AudioEnd.connect(end);
    bench.PlayOut(*player);
    EXPECT_TRUE(over) << which;
  }
}

}  // namespace
}  // namespace qm
