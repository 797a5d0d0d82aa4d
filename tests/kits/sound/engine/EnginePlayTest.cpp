#include <gtest/gtest.h>

#include "kits/sound/engine/EngineBench.h"

// Playing through the offline device, checked sample by sample.
namespace qm {
namespace {

using test::EngineBench;
using test::Noise16;
using test::Record;
using Lines = std::vector<std::string>;

TEST(EnginePlay, PassesTheSamplesBetweenAudioStartAndAudioEndUnchanged) {
  EngineBench bench;
  const auto noise = Noise16(2 * 44100);
  auto player = bench.Player();
  Lines lines;
  Record(*player, *bench.engine, lines);
  ASSERT_EQ(player->Open(bench.Wav("a", noise)), 0);
  player->SetAudioEnd(0.75f);
  player->SetAudioStart(0.25f);
  ASSERT_TRUE(player->Cue());
  EXPECT_EQ(player->SecondsPlayed(), 0.25f);
  ASSERT_TRUE(player->Play());
  bench.Run();
  ASSERT_EQ(bench.HeardFrames(), 22050u);
  for (std::size_t i = 0; i < 22050; ++i)
    for (std::size_t c = 0; c < 2; ++c) ASSERT_EQ(bench.Heard16(i, c), noise[(11025 + i) * 2 + c]) << i;
  EXPECT_EQ(lines, (Lines{"22050 AudioEnd"}));
  EXPECT_EQ(player->SecondsPlayed(), 0.75f);
  EXPECT_EQ(player->SecondsRemaining(), 0);
}

// Marks on awkward positions: the position told with each is at or behind it, in single precision.
TEST(EnginePlay, TellsEachMarkAtItsExactFrameWithItsPositionFirst) {
  struct Row {
    float seconds;
    std::int64_t frame;
  };
  const Row rows[] = {
      {0.1f, 4410}, {0.333333f, 14700}, {0.5000113f, 22050}, {0.69999f, 30870}, {1.0f, 44100}};
  EngineBench bench;
  const std::string path = bench.Wav("a", Noise16(2 * 44100));
  for (const Row& row : rows) {
    auto player = bench.Player();
    ASSERT_EQ(player->Open(path), 0);
    player->AddPositionEvent({row.seconds, 61, 5});
    const std::int64_t start = bench.engine->Frame();
    float told = -1;
    std::int64_t frame = -1;
    player->events.Position.connect([&] { told = player->SecondsPlayed(); });
    player->events.Mark.connect([&](std::int32_t id, std::int32_t tag) {
      EXPECT_EQ(id, 61);
      EXPECT_EQ(tag, 5);
      EXPECT_EQ(frame, -1) << "once";
      frame = bench.engine->Frame() - start;
      EXPECT_GE(told, row.seconds);
      EXPECT_GE(player->SecondsPlayed(), row.seconds);
      EXPECT_LT(told, row.seconds + 1e-4f);
    });
    player->Cue();
    player->Play();
    bench.Run();
    EXPECT_EQ(frame, row.frame) << row.seconds;
  }
}

// Several frames of the file fall on one of a slower device: each mark still comes, and comes once.
TEST(EnginePlay, TellsEachMarkOnceWhateverTheRates) {
  for (const std::int32_t deviceRate : {8000, 44100, 48000, 96000}) {
    EngineBench bench(deviceRate);
    auto player = bench.Player();
    ASSERT_EQ(player->Open(bench.Wav("a", Noise16(2 * 4800), 48000)), 0);
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

TEST(EnginePlay, TellsPositionsTwentyFiveTimesASecondWithLevels) {
  EngineBench bench;
  auto player = bench.Player();
  ASSERT_EQ(player->Open(bench.SineWav("a", 2, 441, 0.5)), 0);
  std::vector<float> positions;
  std::vector<std::int16_t> levels;
  player->events.Position.connect([&] { positions.push_back(player->SecondsPlayed()); });
  player->events.Level.connect([&](std::int16_t left, std::int16_t right) {
    EXPECT_EQ(left, right);
    levels.push_back(left);
  });
  player->Cue();
  player->Play();
  bench.Run();
  ASSERT_EQ(positions.size(), 50u);
  for (std::size_t i = 0; i < positions.size(); ++i)
    EXPECT_FLOAT_EQ(positions[i], 0.04f * static_cast<float>(i + 1));
  ASSERT_EQ(levels.size(), 50u);
  for (const std::int16_t level : levels) EXPECT_NEAR(level, 16384, 40);
}

// One control's mark starts another: every sample of the sum is where it belongs.
TEST(EnginePlay, StartsAnotherPlayerOnTheVeryFrameOfAMark) {
  for (const float extro : {0.3f, 0.4321987f, 0.5f}) {
    EngineBench bench;
    const auto first = Noise16(2 * 22050, 0.4, 1), second = Noise16(2 * 22050, 0.4, 2);
    auto one = bench.Player(), two = bench.Player();
    ASSERT_EQ(one->Open(bench.Wav("1", first)), 0);
    ASSERT_EQ(two->Open(bench.Wav("2", second)), 0);
    one->AddPositionEvent({extro, 61, 0});
    one->events.Mark.connect([&](std::int32_t, std::int32_t) { two->Play(); });
    one->Cue();
    two->Cue();
    one->Play();
    bench.Run();
    const auto start = static_cast<std::size_t>(std::rint(static_cast<double>(extro) * 44100));
    ASSERT_EQ(bench.HeardFrames(), start + 22050);
    for (std::size_t i = 0; i < bench.HeardFrames(); ++i) {
      const std::int32_t expected =
          (i < 22050 ? first[2 * i] : 0) + (i >= start ? second[2 * (i - start)] : 0);
      ASSERT_EQ(bench.Heard16(i), expected) << i;
    }
  }
}

TEST(EnginePlay, GoesOnWithTheNextFileAtTheFrameOfTheEnd) {
  EngineBench bench;
  const auto noise = Noise16(2 * 30000);
  const std::string path = bench.Wav("a", noise);
  auto player = bench.Player();
  int runs = 0;
  player->events.AudioEnd.connect([&] {
    if (++runs == 3) return;
    EXPECT_TRUE(player->Close());
    EXPECT_EQ(player->Open(path), 0);
    EXPECT_TRUE(player->Play());
  });
  ASSERT_EQ(player->Open(path), 0);
  player->Play();
  bench.Run();
  ASSERT_EQ(bench.HeardFrames(), 90000u);
  for (std::size_t i = 0; i < 90000; ++i) ASSERT_EQ(bench.Heard16(i), noise[2 * (i % 30000)]) << i;
}

TEST(EnginePlay, LoopsWithoutLosingOrDoublingASample) {
  EngineBench bench;
  const auto noise = Noise16(2 * 44100);
  auto player = bench.Player();
  Lines lines;
  Record(*player, *bench.engine, lines);
  ASSERT_EQ(player->Open(bench.Wav("a", noise)), 0);
  player->SetLoopStart(0.2f);
  player->SetLoopEnd(0.5f);
  player->SetUseLoop(true);
  player->SetLoopCount(3);
  player->AddPositionEvent({0.3f, 31, 0});
  player->AddPositionEvent({0.6f, 61, 0});
  player->Cue();
  player->Play();
  bench.Run();
  std::size_t at = 0;
  const auto expect = [&](std::size_t from, std::size_t to) {
    for (std::size_t i = from; i < to; ++i, ++at) ASSERT_EQ(bench.Heard16(at), noise[2 * i]) << at;
  };
  expect(0, 22050);
  expect(8820, 22050);
  expect(8820, 44100);
  EXPECT_EQ(at, bench.HeardFrames());
  EXPECT_EQ(lines, (Lines{"13230 Mark 31", "22050 LoopRestart", "26460 Mark 31", "35280 LoopRestart",
                          "39690 Mark 31", "48510 LoopCompleted", "52920 Mark 61", "70560 AudioEnd"}));
}

TEST(EnginePlay, ALoopReleasedRunsToTheEndOfItsPass) {
  EngineBench bench;
  const auto noise = Noise16(2 * 44100);
  auto player = bench.Player();
  Lines lines;
  Record(*player, *bench.engine, lines);
  ASSERT_EQ(player->Open(bench.Wav("a", noise)), 0);
  player->SetLoopStart(0.2f);
  player->SetLoopEnd(0.5f);
  player->SetUseLoop(true);
  player->SetLoopCount(1000);
  player->Cue();
  int turns = 0;
  player->events.LoopRestart.connect([&] {
    EXPECT_TRUE(player->InLoop());
    if (++turns == 2) player->SetUseLoop(false);
  });
  player->Play();
  bench.Run();
  // Two turns were heard; the pass under way ends at the loop's end and goes on without a seam.
  ASSERT_EQ(bench.HeardFrames(), 44100u + 2 * 13230);
  for (std::size_t i = 35280; i < bench.HeardFrames(); ++i)
    ASSERT_EQ(bench.Heard16(i), noise[2 * (i - 35280 + 8820)]) << i;
}

TEST(EnginePlay, ResamplesAndStretchesToTheExactLength) {
  struct Row {
    std::uint32_t fileRate;
    std::int32_t deviceRate;
    float speed;
    float stretch;
  };
  const Row rows[] = {{44100, 48000, 1, 1},       {48000, 44100, 1, 1},    {8000, 44100, 1, 1},
                      {44100, 44100, 1.06f, 1},   {44100, 44100, 1, 1.1f}, {22050, 48000, 1, 0.9f},
                      {44100, 48000, 0.5f, 1.25f}};
  for (const Row& row : rows) {
    EngineBench bench(row.deviceRate);
    auto player = bench.Player();
    Lines lines;
    Record(*player, *bench.engine, lines);
    ASSERT_EQ(player->Open(bench.SineWav("a", 1.5, 500, 0.5, row.fileRate)), 0);
    player->SetPlaySpeed(row.speed);
    player->SetTimeStretchRatio(row.stretch);
    player->AddPositionEvent({0.75f, 61, 0});
    player->Cue();
    player->Play();
    bench.Run();
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

TEST(EnginePlay, AFileThatBreaksOffIsAnErrorAndThenTheEnd) {
  EngineBench bench;
  const std::string path = bench.Wav("a", Noise16(2 * 44100));
  auto player = bench.Player();
  Lines lines;
  Record(*player, *bench.engine, lines);
  ASSERT_EQ(player->Open(path), 0);
  player->AddPositionEvent({0.9f, 61, 0});
  std::filesystem::resize_file(path, 44 + 4 * 20000);
  player->Cue();
  player->Play();
  bench.Run();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_TRUE(lines[0].starts_with("20000 Error ")) << lines[0];
  EXPECT_EQ(lines[1], "20000 AudioEnd");
}

TEST(EnginePlay, RefusesWhatItCannotOpenAndSaysWhy) {
  EngineBench bench;
  test::WriteBytes(bench.folder.File("empty.wav"), "");
  auto player = bench.Player();
  std::string said;
  player->events.Error.connect([&](std::int32_t number, const std::string& text) {
    EXPECT_NE(number, 0);
    said = text;
  });
  for (const char* name : {"missing.wav", "empty.wav", ""}) {
    said.clear();
    EXPECT_NE(player->Open(bench.folder.File(name)), 0) << name;
    EXPECT_NE(said, "") << name;
    EXPECT_FALSE(player->Play());
  }
  player->SetDeviceNumber(7);
  said.clear();
  EXPECT_NE(player->Open(bench.Wav("a", Noise16(200))), 0);
  EXPECT_NE(said, "");
}

// A control may be closed or destroyed from any of its notifications.
TEST(EnginePlay, SurvivesItsOwnEndFromWithinAnyNotification) {
  EngineBench bench;
  const std::string path = bench.Wav("a", Noise16(2 * 44100));
  for (int destroyed = 0; destroyed < 2; ++destroyed) {
    for (int which = 0; which < 4; ++which) {
      std::unique_ptr<ctlVellanPlayer> player = bench.Player();
      bool over = false;
      const auto end = [&] {
        over = true;
        if (destroyed) {
          player.reset();
        } else {
          player->Close();
        }
      };
      ASSERT_EQ(player->Open(path), 0);
      player->AddPositionEvent({0.5f, 31, 0});
      player->AddPositionEvent({0.5f, 61, 0});
      if (which == 0) player->events.Position.connect(end);
      if (which == 1) player->events.Level.connect([&](std::int16_t, std::int16_t) { end(); });
      if (which == 2) player->events.Mark.connect([&](std::int32_t, std::int32_t) { end(); });
      if (which == 3) player->events.AudioEnd.connect(end);
      player->Cue();
      player->Play();
      bench.Run();
      EXPECT_TRUE(over);
    }
  }
}

}  // namespace
}  // namespace qm
