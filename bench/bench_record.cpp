// Recording: an hour from a file into WAV, as fast as the processor allows.
#include <sys/resource.h>

#include <cmath>

#include "Bench.h"
#include "kits/sound/cAudioFile.h"
#include "kits/sound/engine/AudioEngine.h"
#include "kits/sound/record/RecordingControl.h"

namespace qm::bench {
namespace {

constexpr int kSeconds = 3600;

double PeakMiB() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

// Wall seconds; the file is checked to have every frame.
double Record(const Inputs& inputs, const std::string& source, double seconds, int rate, std::int32_t type,
              const std::string& name) {
  auto engine = AudioEngine::Create({});
  auto control = engine->CreateRecorder();
  RecordingRequest request;
  request.path = inputs.File(name);
  request.format.SetFormatType(type);
  request.format.SetSampleRate(rate);
  request.format.SetChannels(2);
  request.format.SetBitRate(128000);
  control->SetDeviceNumber(engine->AddInputFile(source));
  control->SetLimit(seconds);
  bool ended = false;
  control->events.EndReached.connect([&] { ended = true; });
  const double before = WallSeconds();
  if (control->Open(request) != 0) std::exit(1);
  while (!ended && engine->Pump()) {
  }
  if (control->Close(erkKeep) != 0) std::exit(1);
  const double wall = WallSeconds() - before;
  cAudioFile file;
  file.AllowCompressedOpen(true);
  if (file.OpenForRead(request.path) != 0 || file.NumberSamples() != std::llround(seconds * rate)) {
    std::printf("frames are missing: %lld\n", static_cast<long long>(file.NumberSamples()));
    std::exit(1);
  }
  return wall;
}

int Run() {
  const Inputs inputs;
  const std::string source = inputs.Make("in.wav", kSeconds, "-c:a pcm_s16le", 44100);
  if (source.empty()) return 1;
  Record(inputs, source, 60, 44100, aftWAV, "minute.wav");
  const double afterMinute = PeakMiB();
  Row("recording an hour into WAV, times real time",
      kSeconds / Record(inputs, source, kSeconds, 44100, aftWAV, "hour.wav"), "", "every frame");
  Row("the same, memory beyond that for a minute", PeakMiB() - afterMinute, " MiB", "flat");
  Row("recording ten minutes into WAV at another rate", 600 / Record(inputs, source, 600, 32000, aftWAV, "other.wav"),
      "");
  Row("recording ten minutes into Ogg", 600 / Record(inputs, source, 600, 44100, aftOgg, "ten.ogg"), "");
  return 0;
}

}  // namespace
}  // namespace qm::bench

int main() { return qm::bench::Run(); }
