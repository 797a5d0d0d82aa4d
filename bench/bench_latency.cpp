// From the key to the sound: what a command takes to be heard on a live device, and what the program takes to start.
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <vector>

#include "Bench.h"
#include "kits/sound/ctlVellanPlayer.h"
#include "kits/sound/devices/ClockOutput.h"
#include "kits/sound/devices/LiveDevice.h"
#include "kits/sound/engine/AudioEngine.h"

namespace qm::bench {
namespace {

constexpr double kAdvance = 0.05;
constexpr std::size_t kPeriod = 256;

// Notes when the first sample that is not silence is pulled.
class Watch final : public FrameSource {
 public:
  void Pull(float* interleaved, std::size_t count) noexcept override {
    source->Pull(interleaved, count);
    if (heardAt.load() > 0) return;
    if (std::any_of(interleaved, interleaved + 2 * count, [](float sample) { return sample != 0; }))
      heardAt = WallSeconds();
  }
  FrameSource* source = nullptr;
  std::atomic<double> heardAt{0};
};

class WatchedClock : public ClockOutput {
 public:
  explicit WatchedClock(Watch& watch) : m_watch(watch) {}
  bool Start(FrameSource& source, std::string& errorText) override {
    m_watch.source = &source;
    return ClockOutput::Start(m_watch, errorText);
  }

 private:
  Watch& m_watch;
};

double KeyToSound(const std::string& wav) {
  std::vector<double> delays;
  for (int round = 0; round < 20; ++round) {
    Watch watch;
    auto engine = AudioEngine::Create({}, kAdvance);
    engine->AddOutput(MakeLiveDevice("clock", std::make_unique<WatchedClock>(watch), kAdvance));
    auto player = engine->CreatePlayer();
    player->SetDeviceType(2);
    player->SetDeviceNumber(1);
    if (player->Open(wav) != 0) std::exit(1);
    player->Cue();
    for (int i = 0; i < 10 + round; ++i) {
      poll(nullptr, 0, 7);
      engine->Pump();
    }
    const double pressed = WallSeconds();
    player->Play();
    while (watch.heardAt.load() == 0) {
      poll(nullptr, 0, 1);
      engine->Pump();
    }
    delays.push_back(watch.heardAt - pressed);
  }
  std::sort(delays.begin(), delays.end());
  return delays[delays.size() - 2];
}

// Seconds from starting the program to its report that the item plays.
double ProgramStart(const Inputs& inputs, const std::string& wav) {
  const std::string fifo = inputs.File("events");
  if (mkfifo(fifo.c_str(), 0600) != 0) std::exit(1);
  std::vector<double> starts;
  for (int round = 0; round < 9; ++round) {
    const double started = WallSeconds();
    const std::string command = std::string(QM_PROGRAM) + " play --device null --events '" + fifo + "' '" + wav +
                                "' >/dev/null 2>&1 </dev/null &";
    if (std::system(command.c_str()) != 0) std::exit(1);
    const int from = open(fifo.c_str(), O_RDONLY);
    std::string text;
    char buffer[4096];
    for (ssize_t n = 0; text.find("\"pePlaying\"") == std::string::npos && (n = read(from, buffer, sizeof buffer)) > 0;)
      text.append(buffer, static_cast<std::size_t>(n));
    starts.push_back(WallSeconds() - started);
    while (read(from, buffer, sizeof buffer) > 0) {
    }
    close(from);
  }
  std::sort(starts.begin(), starts.end());
  return starts[starts.size() / 2];
}

int Run() {
  const Inputs inputs;
  const std::string wav = inputs.Make("a.wav", 1, "-c:a pcm_s16le");
  if (wav.empty()) return 1;
  const double allowed = kAdvance + static_cast<double>(kPeriod) / 44100;
  Row("key to sound, against advance and one period", KeyToSound(wav) / allowed, " times", "at most 1");
  Row("program start to playing, WAV", ProgramStart(inputs, wav) * 1000, " ms",
      "below 150 ms with the advance of 50 ms");
  return 0;
}

}  // namespace
}  // namespace qm::bench

int main() { return qm::bench::Run(); }
