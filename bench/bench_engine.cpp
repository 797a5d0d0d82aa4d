// The mixing engine: frames mixed a second, what voices cost in real time, what resampling and stretching add.
#include <poll.h>

#include <memory>
#include <vector>

#include "Bench.h"
#include "kits/sound/ctlVellanPlayer.h"
#include "kits/sound/devices/ClockOutput.h"
#include "kits/sound/devices/LiveDevice.h"
#include "kits/sound/engine/AudioEngine.h"
#include "kits/sound/engine/OfflineDevice.h"

namespace qm::bench {
namespace {

constexpr int kRate = 44100;

class NoSink : public FrameSink {
 public:
  bool Open(const OutputFormat&, std::string&) override { return true; }
  bool Write(const float*, std::size_t, std::string&) override { return true; }
  bool Close(std::string&) override { return true; }
};

using Voices = std::vector<std::unique_ptr<ctlVellanPlayer>>;

Voices StartVoices(AudioEngine& engine, const std::vector<std::string>& paths, int count, float speed, float stretch) {
  Voices voices;
  for (int i = 0; i < count; ++i) {
    auto player = engine.CreatePlayer();
    player->SetDeviceType(2);
    player->SetDeviceNumber(1);
    if (player->Open(paths[static_cast<std::size_t>(i) % paths.size()]) != 0) std::exit(1);
    player->SetPlaySpeed(speed);
    player->SetTimeStretchRatio(stretch);
    player->SetVolume(100.f / static_cast<float>(count));
    player->Cue();
    voices.push_back(std::move(player));
  }
  for (auto& voice : voices) voice->Play();
  return voices;
}

// Processor seconds for one second of sound, offline.
double OfflineCost(const std::vector<std::string>& paths, int count, float speed = 1, float stretch = 1) {
  auto engine = AudioEngine::Create({});
  engine->AddOutput(std::make_unique<OfflineDevice>("none", std::make_unique<NoSink>(), OutputFormat{kRate, 2}));
  const Voices voices = StartVoices(*engine, paths, count, speed, stretch);
  const double before = ProcessSeconds();
  while (engine->Pump()) {
  }
  return (ProcessSeconds() - before) / (static_cast<double>(engine->Frame()) / kRate);
}

// Share of one core that playing in real time takes, pumped as a host would.
double LiveShare(const std::vector<std::string>& paths, int count, double seconds) {
  auto engine = AudioEngine::Create({});
  engine->AddOutput(MakeLiveDevice("clock", std::make_unique<ClockOutput>()));
  const Voices voices = StartVoices(*engine, paths, count, 1, 1);
  // What is read ahead once, at the start, is not what playing costs.
  const auto pumpFor = [&](double howLong) {
    const double end = WallSeconds() + howLong;
    while (WallSeconds() < end) {
      pollfd wait{engine->WaitDescriptor(), POLLIN, 0};
      poll(&wait, 1, 20);
      engine->Pump();
    }
  };
  pumpFor(1.5);
  const double processor = ProcessSeconds(), wall = WallSeconds();
  pumpFor(seconds);
  const double share = (ProcessSeconds() - processor) / (WallSeconds() - wall);
  const AudioEngine::Misses misses = engine->CountMisses();
  if (misses.dryCallbacks + misses.voicesNotReady > 0) std::printf("(missed deadlines: %llu)\n",
      static_cast<unsigned long long>(misses.dryCallbacks + misses.voicesNotReady));
  return share * 100;
}

int Run() {
  const Inputs inputs;
  const std::string wav = inputs.Make("a.wav", 60, "-c:a pcm_s16le", kRate);
  const std::string other = inputs.Make("b.wav", 60, "-c:a pcm_s16le", 48000);
  const std::vector<std::string> compressed = {
      inputs.Make("a.mp3", 60, "-b:a 192k"), inputs.Make("a.ogg", 60, "-c:a libvorbis -q:a 5"),
      inputs.Make("a.mp2", 60, "-b:a 256k"), inputs.Make("a.wma", 60, "-c:a wmav2 -b:a 128k")};
  if (wav.empty() || compressed.back().empty()) return 1;

  const double one = OfflineCost({wav}, 1);
  for (const int count : {1, 4, 16}) {
    const double cost = OfflineCost({wav}, count);
    Row("frames mixed a second, " + std::to_string(count) + (count == 1 ? " voice" : " voices"),
        kRate / cost / 1e6, " million");
    if (count > 1) Row("cost of " + std::to_string(count) + " voices against 1", cost / one, " times");
  }
  Row("16 voices in real time, WAV, of one core", LiveShare({wav}, 16, 10), " %", "below 10 %");
  Row("16 voices in real time, MP3, Ogg, MP2 and WMA, of one core", LiveShare(compressed, 16, 10), " %", "below 25 %");
  Row("resampling 48000 to 44100 Hz against plain playing", OfflineCost({other}, 1) / one, " times");
  Row("stretching by 1.1 against plain playing", OfflineCost({wav}, 1, 1, 1.1f) / one, " times");
  Row("a stretched voice in real time, of one core", OfflineCost({wav}, 1, 1, 1.1f) * 100, " %");
  return 0;
}

}  // namespace
}  // namespace qm::bench

int main() { return qm::bench::Run(); }
