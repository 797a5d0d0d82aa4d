#pragma once
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "kits/sound/ctlVellanPlayer.h"
#include "kits/sound/engine/AudioEngine.h"
#include "kits/sound/engine/OfflineDevice.h"
#include "support/SoundFixtures.h"

namespace qm::test {

// Keeps what an offline device plays.
class MemorySink : public FrameSink {
 public:
  explicit MemorySink(std::vector<float>& frames) : m_frames(frames) {}
  bool Open(const OutputFormat&, std::string&) override { return true; }
  bool Write(const float* interleaved, std::size_t frames, std::string&) override {
    m_frames.insert(m_frames.end(), interleaved, interleaved + frames * 2);
    return true;
  }
  bool Close(std::string&) override { return true; }

 private:
  std::vector<float>& m_frames;
};

// An engine with one offline stereo device, and the files its controls play.
class EngineBench {
 public:
  explicit EngineBench(std::int32_t deviceRate = 0)
      : EngineBench(std::make_unique<OfflineDevice>("memory", std::make_unique<MemorySink>(heard),
                                                    OutputFormat{deviceRate, 2})) {}
  explicit EngineBench(std::unique_ptr<Device> output) : engine(AudioEngine::Create({}, 0.05)) {
    device = engine->AddOutput(std::move(output));
  }

  std::unique_ptr<ctlVellanPlayer> Player() {
    auto player = engine->CreatePlayer();
    player->SetDeviceType(2);
    player->SetDeviceNumber(device - 100);
    return player;
  }
  std::unique_ptr<ctlVellanPlayer> Player(const std::string& file) {
    auto player = Player();
    EXPECT_EQ(player->Open(file), 0) << file;
    return player;
  }
  // From the cue to the end of all sound.
  void PlayOut(ctlVellanPlayer& player) {
    player.Cue();
    player.Play();
    Run();
  }

  // A 16-bit stereo WAV file of these samples.
  std::string Wav(const std::string& name, const std::vector<std::int16_t>& samples,
                  std::uint32_t rate = 44100) {
    const std::string path = folder.File(name + ".wav");
    WriteBytes(path, Wav16(samples, rate, 2));
    return path;
  }
  std::string SineWav(const std::string& name, double seconds, double hertz, double amplitude = 1.0,
                      std::uint32_t rate = 44100) {
    std::vector<std::int16_t> samples;
    for (const float value : Sine(rate, static_cast<std::size_t>(seconds * rate), 1, hertz, amplitude))
      samples.insert(samples.end(), 2, static_cast<std::int16_t>(std::lrint(value * 32767)));
    return Wav(name, samples, rate);
  }

  // Pumps until nothing sounds.
  void Run() {
    while (engine->Pump()) {
    }
  }
  // Pumps until at least that frame has been rendered; commands given then act there or a little later.
  void RunTo(std::int64_t frame) {
    while (engine->Frame() < frame && engine->Pump()) {
    }
  }

  // Sample `channel` of frame `frame` as 16-bit value.
  std::int32_t Heard16(std::size_t frame, std::size_t channel = 0) const {
    return static_cast<std::int32_t>(std::lrint(heard.at(frame * 2 + channel) * 32768));
  }
  std::size_t HeardFrames() const { return heard.size() / 2; }

  // Between neighbouring samples of a channel, in the first `frames` frames.
  float LargestStep(std::size_t frames) const {
    float largest = 0;
    for (std::size_t i = 2; i < std::min(heard.size(), frames * 2); ++i)
      largest = std::max(largest, std::fabs(heard[i] - heard[i - 2]));
    return largest;
  }

  TempFolder folder;
  std::vector<float> heard;
  std::shared_ptr<AudioEngine> engine;
  std::int32_t device = 0;
};

// Everything a control says, one line each with the engine's frame: "44100 Mark 61".
inline void Record(ctlVellanPlayer& player, AudioEngine& engine, std::vector<std::string>& lines) {
  const auto say = [&engine, &lines](const std::string& text) {
    lines.push_back(std::to_string(engine.Frame()) + " " + text);
  };
  player.events.Mark.connect([say](std::int32_t id, std::int32_t) { say("Mark " + std::to_string(id)); });
  player.events.AudioEnd.connect([say] { say("AudioEnd"); });
  player.events.LoopRestart.connect([say] { say("LoopRestart"); });
  player.events.LoopCompleted.connect([say] { say("LoopCompleted"); });
  player.events.VolumeStart.connect([say](std::int16_t ref) { say("VolumeStart " + std::to_string(ref)); });
  player.events.VolumeNotify.connect([say](std::int16_t ref) { say("VolumeNotify " + std::to_string(ref)); });
  player.events.VolumeEnd.connect([say](std::int16_t ref) { say("VolumeEnd " + std::to_string(ref)); });
  player.events.Error.connect([say](std::int32_t, const std::string& text) { say("Error " + text); });
}

}  // namespace qm::test
