#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

#include "AudioThreadGuard.h"
#include "kits/sound/ctlVellanPlayer.h"
#include "kits/sound/devices/LiveDevice.h"
#include "kits/sound/engine/AudioEngine.h"
#include "support/SoundFixtures.h"

// The promise of the audio thread: it copies, and does nothing else.
namespace qm {
namespace {

using test::AudioThreadGuard;

// What the output's thread has seen.
struct Sighting {
  std::atomic<std::uint64_t> pulls{0};
  std::atomic<std::uint64_t> soundingFrames{0};
};

// Pulls blocks of all sizes as fast as they come, each under the guard.
class GuardedOutput : public Output {
 public:
  explicit GuardedOutput(Sighting& sighting) : m_sighting(sighting) {}
  ~GuardedOutput() override { Close(eocDrop); }
  const std::string& Name() const override { return m_name; }
  bool Open(const OutputShape&, enOutputMatch, std::string&) override { return true; }
  const OutputShape& Shape() const override { return m_shape; }
  bool Start(FrameSource& source, std::string&) override {
    m_thread = std::jthread([this, &source](std::stop_token stop) { Run(stop, source); });
    return true;
  }
  void Close(enOutputClose) override { m_thread = {}; }
  bool Alive() override { return true; }
  std::string FaultText() const override { return {}; }

 private:
  void Run(std::stop_token stop, FrameSource& source) {
    std::vector<float> block(4096 * 2);
    std::minstd_rand random(7);
    while (!stop.stop_requested()) {
      const std::size_t frames = 1 + random() % 1024;
      {
        const AudioThreadGuard guard;
        source.Pull(block.data(), frames);
      }
      ++m_sighting.pulls;
      for (std::size_t i = 0; i < frames; ++i) m_sighting.soundingFrames += block[i * 2] != 0;
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
  }

  Sighting& m_sighting;
  const std::string m_name = "guarded";
  const OutputShape m_shape{.format = {.sampleRate = 48000, .channels = 2}, .periodFrames = 512};
  std::jthread m_thread;
};

// Sixteen players that do anything at any time.
class Presenters {
 public:
  explicit Presenters(AudioEngine& engine) : m_engine(engine) {
    const std::uint32_t rates[] = {22050, 44100, 48000};
    for (std::uint32_t rate : rates)
      for (std::uint32_t channels : {1u, 2u}) {
        m_files.push_back(m_folder.File(std::to_string(rate) + "-" + std::to_string(channels) + ".wav"));
        test::WriteBytes(m_files.back(),
                         test::Wav16(test::Noise16(rate * channels * 2, 0.1), rate, channels));
      }
    for (auto& player : m_players) {
      player = engine.CreatePlayer();
      player->SetDeviceType(2);
      player->SetDeviceNumber(1);
      player->Open(m_files[m_random() % m_files.size()]);
    }
  }

  void DoSomething() {
    ctlVellanPlayer& player = *m_players[m_random() % m_players.size()];
    m_commands[m_random() % m_commands.size()](*this, player);
    if (m_random() % 4 == 0) m_engine.Pump();
  }

 private:
  using Command = void (*)(Presenters&, ctlVellanPlayer&);

  float Chance(float most) { return most * static_cast<float>(m_random() % 1000) / 1000.0f; }

  static const std::array<Command, 13> m_commands;

  AudioEngine& m_engine;
  test::TempFolder m_folder;
  std::vector<std::string> m_files;
  std::minstd_rand m_random{1};
  std::array<std::unique_ptr<ctlVellanPlayer>, 16> m_players;
};

const std::array<Presenters::Command, 13> Presenters::m_commands = {
    [](Presenters&, ctlVellanPlayer& player) { player.Play(); },
    [](Presenters&, ctlVellanPlayer& player) { player.Play(); },
    [](Presenters&, ctlVellanPlayer& player) { player.Play(); },
    [](Presenters&, ctlVellanPlayer& player) { player.Pause(); },
    [](Presenters&, ctlVellanPlayer& player) { player.Cue(); },
    [](Presenters& all, ctlVellanPlayer& player) { player.Seek(static_cast<double>(all.Chance(100))); },
    [](Presenters& all, ctlVellanPlayer& player) { player.SetVolume(all.Chance(100)); },
    [](Presenters& all, ctlVellanPlayer& player) { player.SetPlaySpeed(0.5f + all.Chance(1.5f)); },
    [](Presenters& all, ctlVellanPlayer& player) {
      player.SetLoopStart(all.Chance(1));
      player.SetLoopEnd(player.LoopStart() + 0.01f + all.Chance(0.5f));
      player.SetUseLoop(all.m_random() % 2 == 0);
    },
    [](Presenters&, ctlVellanPlayer& player) { player.ExitLoop(); },
    [](Presenters& all, ctlVellanPlayer& player) {
      player.AddPositionEvent(
          {.Position = all.Chance(2), .EventId = static_cast<std::int32_t>(all.m_random() % 8)});
    },
    [](Presenters& all, ctlVellanPlayer& player) {
      player.AddVolumeChange(
          {.Reference = 1, .StartTime = all.Chance(2), .Duration = all.Chance(1), .StartVolume = 100});
    },
    [](Presenters& all, ctlVellanPlayer& player) {
      player.Close();
      player.Open(all.m_files[all.m_random() % all.m_files.size()]);
      player.Play();
    },
};

TEST(AudioThread, OnlyCopiesWhateverThePlayersDo) {
  Sighting sighting;
  auto engine = AudioEngine::Create({}, 0.05);
  engine->AddOutput(std::make_unique<LiveDevice>("guarded", std::make_unique<GuardedOutput>(sighting)));
  Presenters presenters(*engine);
  // A few commands to each pull, so that neither side has it to itself on any machine.
  std::uint64_t seen = 0;
  for (int rounds = 0; rounds < 1200 || sighting.soundingFrames < 50000; ++rounds) {
    ASSERT_LT(rounds, 100000) << "nothing sounds";
    for (int i = 0; i < 4; ++i) presenters.DoSomething();
    while (sighting.pulls == seen) std::this_thread::yield();
    seen = sighting.pulls;
  }
}

// Each must be caught, or the test above proves nothing.
TEST(AudioThreadDeathTest, TheGuardCatchesEachKindOfCall) {
  if (!AudioThreadGuard::Works()) GTEST_SKIP() << "a sanitizer has taken the guard's place";
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  static std::mutex mutex;
  static std::condition_variable condition;
  static std::atomic<int> number{0};
  static void* volatile block;
  struct Row {
    const char* caught;
    void (*call)();
  };
  const Row rows[] = {
      {"malloc", [] { block = std::malloc(1); }},
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
      {"clock_gettime", [] { (void)std::chrono::steady_clock::now(); }},
  };
  block = std::malloc(1);
  for (const Row& row : rows)
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
