// What drawing an hour's waveform costs: against its budget, a plain fill of the surface and reading the peak
// file.
#include <algorithm>
#include <cstdlib>
#include <new>
#include <vector>

#include "Bench.h"
#include "audio/cPeakFile.h"
#include "audio/cWaveformRenderer.h"
#include "controls/uWaveform.h"
#include "kits/draw/OffscreenSurface.h"

namespace {
std::int64_t allocations = 0;
}

[[gnu::noinline]] void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace qm::bench {
namespace {

constexpr std::int32_t kWidth = 1920, kHeight = 200;
constexpr int kRounds = 200;

// The shortest of some runs: the rest of the machine only ever adds.
template <class Work>
double Shortest(Work work) {
  double shortest = 1e9;
  for (int round = 0; round < kRounds; ++round) {
    const double started = WallSeconds();
    work();
    shortest = std::min(shortest, WallSeconds() - started);
  }
  return shortest;
}

int Run() {
  const Inputs inputs;
  const std::string wav = inputs.Make("an hour.wav", 3600, "-c:a pcm_s16le");
  const std::string ppk = inputs.File("an hour.ppk");
  const auto peaks = std::make_shared<cPeakFile>();
  if (wav.empty() || peaks->ScanAudioFile(wav, ppk) != pfeOK) return 1;

  OffscreenSurface surface(kWidth, kHeight, 0xFFFFFF);
  cWaveformRenderer renderer;
  renderer.SetPeakFile(peaks);
  const double draw = Shortest([&] { renderer.DrawWaveform(&surface, 0, 0, kWidth, kHeight, dwtNormal); });
  const double fill = Shortest([&] { surface.FillRectangle({0, 0, kWidth, kHeight}, 0xD0D0D0); });
  const double read = Shortest([&] { peaks->ReadPeakFile(ppk); });
  Row("waveform of an hour of stereo, 1920 x 200", draw * 1000, " ms", "at most 2");
  Row("against filling the surface", draw / fill, " times");
  Row("against reading its peak file from memory", draw / read, " times");

  // The control with its bar, through every zoom level and back.
  const auto view = std::make_shared<OffscreenSurface>(kWidth, kHeight, 0);
  uWaveform control(view, std::make_shared<OffscreenSurface>(kWidth, 24, 0));
  control.SetPeakFile(peaks, true);
  control.SetHighlight(44100, 441000, true);
  const std::int64_t before = allocations;
  double slowest = 0;
  const auto change = [&](void (uWaveform::*zoom)(bool)) {
    const std::int32_t number = control.NumberSamples();
    const double started = WallSeconds();
    (control.*zoom)(true);
    slowest = std::max(slowest, WallSeconds() - started);
    return control.NumberSamples() != number;
  };
  while (change(&uWaveform::ZoomIn)) {
  }
  const std::int32_t closest = control.NumberSamples();
  while (change(&uWaveform::ZoomOut)) {
  }
  const auto taken = static_cast<double>(allocations - before);
  Row("the control at its slowest zoom level, bar and all", slowest * 1000, " ms", "at most 2");
  Row("frames it shows at the closest", closest, "");
  Row("allocations while zooming through all of them", taken, "", "0");
  return 0;
}

}  // namespace
}  // namespace qm::bench

int main() {
  return qm::bench::Run();
}
