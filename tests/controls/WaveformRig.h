#pragma once
#include <gtest/gtest.h>

#include <string>

#include "controls/uWaveform.h"
#include "item/cHDItem.h"
#include "item/cHDItemMark.h"
#include "kits/common/Numbers.h"
#include "kits/draw/OffscreenSurface.h"
#include "kits/sound/cAudioFormat.h"
#include "support/PeakPoints.h"

namespace qm::test {

// The control on a view of 1000 by 100 pixels and a bar of 20, with a million frames of mono audio at 1000
// Hz, and what it says: V a new view, H a new highlight, D a drawing.
struct WaveformRig : testing::Test {
  WaveformRig() {
    control.events.ViewChanged.connect([this] { said += "V"; });
    control.events.HighlightChanged.connect([this] { said += "H"; });
    control.events.WaveformDrawn.connect([this] { said += "D"; });
  }

  void Load() {
    control.SetPeakFile(peaks, true);
    said.clear();
  }

  // What was said since the last call, the view and the highlight.
  std::string Told() {
    const auto span = [](std::int32_t start, std::int32_t number) {
      return " " + NumberText(start) + "+" + NumberText(number);
    };
    return std::exchange(said, {}) + span(control.StartSample(), control.NumberSamples()) +
           span(control.HighlightStartSample(), control.HighlightNumberSamples());
  }
  // Says what became of the arguments.
  void SetView(std::int32_t start, std::int32_t number) {
    control.SetView(start, number, false);
    said += "(" + NumberText(start) + "," + NumberText(number) + ")";
  }

  // The columns of a row that are of another colour than the background: "3..5 9..9".
  static std::string Columns(const OffscreenSurface& surface, std::int32_t row) {
    std::string found;
    const Picture& picture = surface.Pixels();
    std::int32_t begin = -1;
    for (std::int32_t x = 0; x <= picture.width; ++x) {
      const bool drawn = x < picture.width && picture.At(x, row) != 0xFFFFFF;
      if (drawn && begin < 0) begin = x;
      if (drawn || begin < 0) continue;
      found += (found.empty() ? "" : " ") + NumberText(begin) + ".." + NumberText(x - 1);
      begin = -1;
    }
    return found;
  }

  // Where the cursors stand, "-" for a hidden one.
  std::string Cursors() const {
    const auto place = [](const Surface& surface) {
      return surface.Cursor().visible ? NumberText(surface.Cursor().x) : "-";
    };
    return place(*view) + " " + place(*bar);
  }

  std::shared_ptr<cHDItem> ItemWithMarks(const std::vector<std::array<std::int32_t, 3>>& marks) {
    auto item = std::make_shared<cHDItem>();
    item->AudioFormat()->SetSampleRate(1000);
    for (const auto& [start, duration, colour] : marks) {
      const auto mark = std::make_shared<cHDItemMark>();
      mark->SetStartSample(start);
      mark->SetDuration(duration);
      mark->SetMarkerColour(colour);
      item->AddMarker(mark);
    }
    return item;
  }

  std::shared_ptr<OffscreenSurface> view = std::make_shared<OffscreenSurface>(1000, 100, 0);
  std::shared_ptr<OffscreenSurface> bar = std::make_shared<OffscreenSurface>(1, 20, 0);
  uWaveform control{view, bar};
  std::shared_ptr<cPeakFile> peaks = PeaksOf(SongPoints(2000), 1, 1000);
  std::string said;
};

}  // namespace qm::test
