#include "controls/uWaveform.h"

#include <gtest/gtest.h>

#include <functional>

#include "controls/WaveformProperties.h"
#include "item/cHDItem.h"
#include "item/cHDItemMark.h"
#include "kits/common/Numbers.h"
#include "kits/draw/OffscreenSurface.h"
#include "kits/sound/SoundSystem.h"
#include "kits/sound/cAudioFormat.h"
#include "playback/PlayerRig.h"
#include "playback/cPlayer.h"
#include "support/GoldenPicture.h"
#include "support/PeakPoints.h"

namespace qm {
namespace {

using namespace test;

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

struct Step {
  std::function<void()> act;
  const char* told;
};

TEST_F(WaveformRig, WithoutAPeakFileNothingHappens) {
  SetView(5, 7);
  for (const auto zoom : {&uWaveform::ZoomIn, &uWaveform::ZoomOut, &uWaveform::ZoomToSelectionStart})
    (control.*zoom)(true);
  control.SetHighlightSeconds(1, 2, true);
  for (const auto mouse : {&uWaveform::ViewMouseDown, &uWaveform::ViewMouseMove, &uWaveform::BarMouseDown,
                           &uWaveform::BarMouseMove})
    (control.*mouse)(embLeft, 0, 90, 10);
  control.UpdateDisplay();
  EXPECT_EQ(Told(), "(5,7) 0+0 0+0");
  EXPECT_EQ(control.HighlightStartSeconds(), 0);
}

TEST_F(WaveformRig, ViewsZoomsAndHighlightsFollowTheirRules) {
  const Step steps[] = {
      {[&] { control.SetPeakFile(peaks, true); }, "DVH 1+1000000 0+0"},
      {[&] { SetView(-10, 1); }, "V(0,2) 0+2 0+0"},
      {[&] { SetView(999000, 5000); }, "V(999000,1000) 999000+1000 0+0"},
      {[&] { SetView(2000000, 5000); }, "V(1000000,0) 1000000+2 0+0"},
      {[&] { SetView(1, 1000000); }, "V(1,999999) 1+999999 0+0"},
      {[&] { control.ZoomIn(true); }, "DV 250001+500000 0+0"},  // halves go to the even number
      {[&] { control.ZoomOut(false); }, "V 1+999999 0+0"},
      {[&] { control.SetHighlight(600000, 2, false); }, "H 1+999999 600000+2"},
      {[&] { control.ZoomToSelection(false); }, " 1+999999 600000+2"},
      {[&] { control.ZoomToSelectionEnd(false); }, " 1+999999 600000+2"},
      {[&] { control.SetHighlight(900000, 400000, false); }, "H 1+999999 900000+400000"},
      {[&] { control.ZoomToSelection(false); }, "V 900000+100000 900000+100000"},
      {[&] { control.SetHighlight(300000, 100000, true); }, "DH 900000+100000 300000+100000"},
      {[&] { control.ZoomToSelectionStart(false); }, "V 275000+50000 300000+100000"},
      {[&] { control.ZoomToSelectionEnd(false); }, "V 387500+25000 300000+100000"},
      {[&] { SetView(1, 50000); }, "V(1,50000) 1+50000 300000+100000"},
      {[&] { control.ZoomIn(true); }, " 1+50000 300000+100000"},  // ten pixels a point
      {[&] { SetView(1, 50001); }, "V(1,50001) 1+50001 300000+100000"},
      {[&] { control.ZoomIn(false); }, "V 12501+25000 300000+100000"},
      {[&] { control.SetHighlight(-5, -6, false); }, "H 12501+25000 0+0"},
      {[&] { control.SetHighlightSeconds(500.0005F, 2000, false); }, "H 12501+25000 500000+2000000"},
      {[&] { control.SetPeakFile(nullptr, false); }, "VH 12501+25000 500000+2000000"}};
  for (std::size_t i = 0; i < std::size(steps); ++i) {
    if (i + 1 == std::size(steps)) {
      EXPECT_EQ(control.HighlightNumberSeconds(), 1000) << "held to the audio";
      EXPECT_EQ(bar->MousePointer(), empCustom);
    }
    steps[i].act();
    EXPECT_EQ(Told(), steps[i].told) << i;
  }
  EXPECT_EQ(bar->MousePointer(), empDefault);
}

TEST_F(WaveformRig, TheMouseSelectsOnTheViewAndDragsOnTheBar) {
  for (auto* event : {&control.events.MouseDown, &control.events.PositionMouseDown})
    event->connect([&](int button, int shift, float x, float y) {
      for (const double value : {double{x}, double{y}, button + shift / 10.0})
        said += NumberText(value) + ",";
    });
  Load();
  SetView(100000, 10000);
  Told();
  const Step steps[] = {
      {[&] { control.ViewMouseMove(embLeft, 0, 500, 5); }, " 100000+10000 0+0"},
      {[&] { control.ViewMouseDown(embRight, 0, 500, 5); }, "7500,75,2, 100000+10000 0+0"},
      {[&] { control.ViewMouseDown(embLeft, 3, 500, 5); }, "7500,75,1.3,DH 100000+10000 105000+2"},
      {[&] { control.ViewMouseMove(embLeft, 0, 600, 5); }, "DH 100000+10000 105000+1000"},
      {[&] { control.ViewMouseMove(embLeft, 0, -50, 5); }, "DH 100000+10000 100000+5000"},
      {[&] { control.ViewMouseUp(embLeft, 0, 0, 5); }, " 100000+10000 100000+5000"},
      {[&] { control.ViewMouseMove(embLeft, 0, 900, 5); }, " 100000+10000 100000+5000"},
      {[&] { control.SetHostScaleMode(esmPixels); }, " 100000+10000 100000+5000"},
      {[&] { control.BarMouseDown(embLeft, 0, 200, 5); }, "200,5,1, 100000+10000 100000+5000"},
      {[&] { control.BarMouseMove(embLeft, 0, 300, 5); }, "DV 200000+10000 100000+5000"},
      {[&] { control.BarMouseMove(embLeft, 0, 1001, 5); }, " 200000+10000 100000+5000"},
      {[&] { control.BarMouseMove(embLeft, 0, 0, 5); }, "DV 1+10000 100000+5000"},
      {[&] { control.BarMouseMove(embLeft, 0, 1000, 5); }, "DV 990000+10000 100000+5000"},
      {[&] { control.BarMouseUp(embLeft, 0, 0, 5); }, " 990000+10000 100000+5000"},
      {[&] { control.BarMouseMove(embLeft, 0, 500, 5); }, " 990000+10000 100000+5000"}};
  for (const Step& step : steps) {
    step.act();
    EXPECT_EQ(Told(), step.told);
  }
}

TEST_F(WaveformRig, MarkersAndHighlightLieWhereTheirSamplesAre) {
  control.SetBackColor(0xFFFFFF);
  peaks = PeaksOf(std::vector<std::int16_t>(2000), 1, 1000);  // a line in the middle, and a free top
  Load();
  SetView(500000, 100000);
  control.SetHDItem(ItemWithMarks({{400000, 100000, 0xFF00},  // ends where the view begins
                                   {490000, 20000, 0xFF00},   // reaches into it
                                   {550000, 0, 0xFF},         // no length
                                   {600000, 1000, 0xFF00}}),  // begins where it ends
                    true);
  EXPECT_EQ(Columns(*view, 2), "0..99 500..500");
  EXPECT_EQ(Columns(*view, 97), "");
  EXPECT_EQ(Columns(*bar, 1), "500..599");
  EXPECT_EQ(Columns(*bar, 16), "400..600");
  EXPECT_EQ(view->Pixels().At(50, 2), 0x00FF00u);
  EXPECT_EQ(bar->Pixels().At(505, 10), 0x00A000u);  // a marker under the view

  control.SetHDItem(nullptr, false);
  control.SetHighlight(530000, 1, true);
  EXPECT_EQ(Columns(*view, 0), "300..300");
  control.SetHighlight(499000, 1000, true);
  EXPECT_EQ(Columns(*view, 0), "");
  control.SetHighlight(499000, 1200, true);
  EXPECT_EQ(Columns(*view, 99), "0..1");
}

TEST_F(WaveformRig, CursorsFollowThePlayer) {
  Load();
  SetView(500000, 100000);
  control.SetPlayPositionSample(550000);
  EXPECT_EQ(Cursors(), "500 550");
  control.SetPlayPositionSample(0);
  EXPECT_EQ(Cursors(), "- -");

  PlayerRig rig;
  const auto player = std::make_shared<cPlayer>(rig.platform);
  player->InitBasePlayer(1, rig.owner->settings);
  control.SetPlayer(player);
  control.SetPlayPositionSample(550000);
  EXPECT_EQ(Cursors(), "- -");  // closed
  player->PlayItem(rig.a);
  const auto tell = [&](std::int32_t event, float value) {
    std::string text;
    float other = 0;
    player->events.PlayerEvent(event, text, value, other, text, text);
  };
  tell(pePositionChanged, 510);
  EXPECT_EQ(control.PlayPositionSample(), 550000);  // no item
  control.SetHDItem(ItemWithMarks({}), false);
  tell(pePositionChanged, 510);
  EXPECT_EQ(Cursors(), "100 510");
  tell(pePositionChanged, 400);
  EXPECT_EQ(Cursors(), "- 400");
  SetView(1, 1000000);
  control.UpdateDisplay();
  EXPECT_EQ(Cursors(), "400 400");
  control.SetShowPositionBar(false);
  EXPECT_EQ(Cursors(), "400 -");
  player->CloseItem();
  EXPECT_EQ(Cursors() + NumberText(control.PlayPositionSample()), "- --1");
}

TEST_F(WaveformRig, TheBarKeepsItsHeightAboveTheView) {
  control.Resize(300, 200);
  EXPECT_EQ(control.BarPlace(), (Rect{0, 0, 300, 20}));
  EXPECT_EQ(control.ViewPlace(), (Rect{0, 24, 300, 200}));
  EXPECT_EQ(view->Cursor().bottom, 176);
  control.SetShowPositionBar(false);
  EXPECT_EQ(control.ViewPlace(), (Rect{0, 0, 300, 200}));
  control.SetShowPositionBar(true);
  control.SetBorderStyle(0);
  control.Resize(-5, -5);
  EXPECT_EQ(control.ViewPlace(), (Rect{0, 20, 0, 20}));
}

TEST_F(WaveformRig, PropertiesAreKeptByName) {
  std::string list;
  for (const WaveformProperty& property : PersistedWaveformProperties()) {
    EXPECT_EQ(property.read(control), property.defaultValue) << property.name;
    list += std::string(property.name) + "=" + NumberText(property.defaultValue) + " ";
    const std::int32_t other = property.defaultValue != 0                 ? 0
                               : property.name == std::string("DrawType") ? 1
                                                                          : -1;
    property.write(control, other);
    EXPECT_EQ(property.read(control), other) << property.name;
  }
  EXPECT_EQ(
      list,
      "BackColor=-2147483633 LineColour=16713479 FillColour=16761024 BorderStyle=1 AutoScale=0 DrawType=0 "
      "ShowPositionBar=-1 ");
}

TEST_F(WaveformRig, TheWholeControlLooksAsItDid) {
  control.Resize(400, 130);
  Load();
  SetView(100000, 600000);
  control.SetHDItem(
      ItemWithMarks({{120000, 90000, 0x00FF00}, {400000, 80000, 0xC0C0C0}, {650000, 0, 0x0000FF}}), false);
  control.SetHighlight(300000, 150000, false);
  control.SetPlayPositionSample(250000);
  control.UpdateDisplay();
  OffscreenSurface whole(400, 130, 0xFFFFFF);
  whole.DrawPicture(bar->Shown(), control.BarPlace().left, control.BarPlace().top);
  whole.DrawPicture(view->Shown(), control.ViewPlace().left, control.ViewPlace().top);
  ExpectGolden(whole.Pixels(), "control.png");
}

}  // namespace
}  // namespace qm
