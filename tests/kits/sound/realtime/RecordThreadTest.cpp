#include <gtest/gtest.h>

#include <random>
#include <thread>

#include "AudioThreadGuard.h"
#include "kits/sound/record/PushedInput.h"
#include "kits/sound/record/RecordBench.h"
#include "kits/sound/record/RecordingFeed.h"

// The promise of the audio thread holds for inputs: it copies, and does nothing else.
namespace qm {
namespace {

TEST(RecordThread, TakesSoundWithoutAnyCall) {
  if (!test::AudioThreadGuard::Works()) GTEST_SKIP() << "needs a build without a sanitizer";
  test::RecordBench bench;
  const auto device = std::make_shared<test::PushedDevice>();
  bench.UseFeed([device] {
    return MakeLiveFeed(std::make_unique<test::PushedInput>(device, OutputFormat{44100, 2}));
  });
  ASSERT_EQ(bench.control->Open(bench.To("out.ogg", test::FormatOf(aftOgg, 32000, 1, 64000))), 0);
  constexpr std::uint64_t kFrames = 700000;  // more than the ring holds, should nobody empty it
  std::thread([&] {
    std::vector<float> block(2048, 0.25f);
    std::minstd_rand random(5);
    for (std::uint64_t pushed = 0; pushed < kFrames;) {
      const std::size_t frames = std::min<std::uint64_t>(kFrames - pushed, 1 + random() % 1024);
      const test::AudioThreadGuard guard;
      device->taker.load()->Push(block.data(), frames, eigNone);
      pushed += frames;
    }
  }).join();
  const std::uint64_t lost = bench.control->FramesLost();
  bench.control->Close(erkKeep);
  EXPECT_NEAR(bench.control->Position(), static_cast<double>(kFrames - lost) / 44100, 1e-3);
}

}  // namespace
}  // namespace qm
