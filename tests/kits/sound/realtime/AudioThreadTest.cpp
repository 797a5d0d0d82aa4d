#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

#include "AudioThreadGuard.h"
#include "kits/sound/devices/DeviceBench.h"
#include "kits/sound/devices/LiveDevice.h"
#include "kits/sound/engine/RandomHost.h"
#include "kits/sound/record/PushedInput.h"
#include "kits/sound/record/RecordBench.h"
#include "kits/sound/record/RecordingFeed.h"

// The promise of the audio thread: it copies, and does nothing else.
namespace qm {
namespace {

using test::AudioThreadGuard;

// The output's thread pulls blocks of all sizes, each under the guard.
TEST(AudioThread, OnlyCopiesWhateverThePlayersDo) {
  test::OutputScript output;
  test::DeviceBench bench(
      std::make_unique<LiveDevice>("guarded", std::make_unique<test::ScriptedOutput>(output, "guarded")));
  std::vector<std::string> paths;
  for (std::uint32_t rate : {22050u, 44100u, 48000u})
    for (std::uint32_t channels : {1u, 2u}) {
      paths.push_back(bench.folder.File(std::to_string(rate) + "-" + std::to_string(channels) + ".wav"));
      test::WriteBytes(paths.back(), test::Wav16(test::Noise16(rate * channels * 2, 0.1), rate, channels));
    }
  std::atomic<std::uint64_t> pulls{0}, soundingFrames{0};
  const std::jthread audio([&](std::stop_token stop) {
    std::vector<float> block(1024 * 2);
    std::minstd_rand random(7);
    while (!stop.stop_requested()) {
      const std::size_t frames = 1 + random() % 1024;
      {
        const AudioThreadGuard guard;
        output.gate.Pull(block.data(), frames, 2);
      }
      ++pulls;
      for (std::size_t i = 0; i < frames; ++i) soundingFrames += block[i * 2] != 0;
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
  });
  test::RandomHost host(*bench.engine, paths, 1);
  // A few commands to each pull, so that neither side has it to itself on any machine.
  std::uint64_t seen = 0;
  for (int rounds = 0; rounds < 1200 || soundingFrames < 50000; ++rounds) {
    ASSERT_LT(rounds, 100000) << "nothing sounds";
    for (int i = 0; i < 4; ++i) {
      host.DoSomething();
      if (host.Below(4) == 0) bench.engine->Pump();
    }
    while (pulls == seen) std::this_thread::yield();
    seen = pulls;
  }
}

TEST(RecordThread, TakesSoundWithoutAnyCall) {
  if (!AudioThreadGuard::Works()) GTEST_SKIP() << "needs a build without a sanitizer";
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
      const AudioThreadGuard guard;
      device->taker.load()->Push(block.data(), frames, eigNone);
      pushed += frames;
    }
  }).join();
  const std::uint64_t lost = bench.control->FramesLost();
  bench.control->Close(erkKeep);
  EXPECT_NEAR(bench.control->Position(), static_cast<double>(kFrames - lost) / 44100, 1e-3);
}

// Each must be caught, or the test above proves nothing.
TEST(AudioThreadDeathTest, TheGuardCatchesEachKindOfCall) {
  if (!AudioThreadGuard::Works()) GTEST_SKIP() << "a sanitizer has taken the guard's place";
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  static std::mutex mutex;
  static std::condition_variable condition;
  static std::atomic<int> number{0};
  static void* volatile block;
  const struct {
    const char* caught;
    void (*call)();
  } rows[] = {{"malloc", [] { block = std::malloc(1); }},
              {"malloc", [] { block = new int; }},
              {"malloc", [] { block = new std::vector<float>(3); }},
              {"calloc", [] { block = std::calloc(1, 1); }},
              {"free", [] { std::free(block); }},
              {"pthread_mutex_lock", [] { mutex.lock(); }},
              {"pthread_mutex_trylock", [] { (void)mutex.try_lock(); }},
              {"pthread_cond_broadcast", [] { condition.notify_all(); }},
              {"nanosleep", [] { std::this_thread::sleep_for(std::chrono::milliseconds(1)); }},
              {"sched_yield", [] { number.wait(0); }},
              {"syscall", [] { (void)syscall(SYS_gettid); }},
              {"clock_gettime", [] { (void)std::chrono::steady_clock::now(); }}};
  block = std::malloc(1);
  for (const auto& row : rows)
    EXPECT_DEATH(
        {
          const AudioThreadGuard guard;
          row.call();
        },
        std::string("the audio thread called .*") + row.caught)
        << row.caught;
}

}  // namespace
}  // namespace qm
