#pragma once
#include <memory>
#include <string>
#include <vector>

#include "kits/sound/cAudioFile.h"
#include "kits/sound/engine/AudioEngine.h"
#include "kits/sound/record/RecordingControl.h"
#include "support/SoundFixtures.h"

// An engine without devices, a recording control over it, and what it has told.
namespace qm::test {

inline cAudioFormat FormatOf(std::int32_t type, std::int32_t rate, std::int32_t channels,
                             std::int32_t bitRate = 0) {
  cAudioFormat format;
  format.SetFormatType(type);
  format.SetSampleRate(rate);
  format.SetChannels(channels);
  format.SetBitRate(bitRate);
  return format;
}

// Every frame of a file, 16-bit.
inline std::vector<std::int16_t> FramesOf(const std::string& path) {
  cAudioFile file;
  file.AllowCompressedOpen(true);
  std::vector<std::int16_t> samples;
  if (file.OpenForRead(path) == afeNone)
    file.ReadSamples(static_cast<std::int32_t>(file.NumberSamples()), samples);
  return samples;
}

class RecordBench {
 public:
  RecordBench() {
    control = engine->CreateRecorder();
    control->events.State.connect([this](std::int32_t state) { states.push_back(state); });
    control->events.Error.connect([this](std::int32_t number, const std::string& text) {
      errors.push_back(number);
      errorText = text;
    });
    control->events.Position.connect([this] { positions.push_back(control->Position()); });
    control->events.EndReached.connect([this] { ended = true; });
  }

  // The input is a 16-bit WAV file of these samples.
  void UseSamples(const std::vector<std::int16_t>& samples, std::uint32_t rate, std::uint32_t channels) {
    WriteBytes(folder.File("in.wav"), Wav16(samples, rate, channels));
    control->SetDeviceNumber(engine->AddInputFile(folder.File("in.wav")));
  }
  void UseFeed(AudioEngine::FeedMaker maker) { control->SetDeviceNumber(engine->AddInput(std::move(maker))); }

  RecordingRequest To(const std::string& name, const cAudioFormat& format) const {
    RecordingRequest request;
    request.path = folder.File(name);
    request.format = format;
    return request;
  }

  void PumpToEnd() {
    while (!ended && engine->Pump()) {
    }
  }

  // To the input's end; every frame of the file.
  std::vector<std::int16_t> RecordAll(const RecordingRequest& request) {
    if (control->Open(request) == 0) PumpToEnd();
    control->Close(erkKeep);
    return FramesOf(request.path);
  }

  TempFolder folder;
  std::shared_ptr<AudioEngine> engine = AudioEngine::Create({});
  std::shared_ptr<RecordingControl> control;
  std::vector<std::int32_t> states, errors;
  std::vector<float> positions;
  std::string errorText;
  bool ended = false;
};

}  // namespace qm::test
