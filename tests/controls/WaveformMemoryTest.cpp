#include "CountedMemory.h"
#include "WaveformRig.h"

namespace qm {
namespace {

using namespace test;

// An hour of stereo at 44100 Hz, on a view as wide as a screen.
TEST(WaveformMemory, ZoomingTakesNoneAfterTheFirstDrawing) {
  const auto view = std::make_shared<OffscreenSurface>(1920, 200, 0);
  uWaveform control(view, std::make_shared<OffscreenSurface>(1920, 24, 0));
  control.SetPeakFile(PeaksOf(SongPoints(317520, 2), 2), true);
  control.SetHighlight(44100, 441000, true);
  const std::int64_t before = allocations;
  for (std::int32_t shown = 0; control.NumberSamples() != shown;) {
    shown = control.NumberSamples();
    control.ZoomIn(true);
  }
  EXPECT_LE(control.NumberSamples(), 96000);
  for (int i = 0; i < 12; ++i) control.ZoomOut(true);
  for (std::int32_t width : {158000000, 105000000, 80000000}) {  // most vertices for their columns
    std::int32_t start = 1;
    control.SetView(start, width, true);
  }
  EXPECT_EQ(allocations - before, 0);
}

}  // namespace
}  // namespace qm
