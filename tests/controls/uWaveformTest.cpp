#include "controls/uWaveform.h"

#include "WaveformRig.h"
#include "controls/WaveformProperties.h"
#include "kits/sound/SoundSystem.h"
#include "playback/PlayerRig.h"
#include "playback/cPlayer.h"
#include "support/GoldenPicture.h"

namespace qm {
namespace {

using namespace test;

TEST_F(WaveformRig, WithoutAPeakFileNothingHappens) {
  std::int32_t start = 5, number = 7;
  control.SetView(start, number, true);
  for (const auto zoom : {&uWaveform::ZoomIn, &uWaveform::ZoomOut, &uWaveform::ZoomToSelectionStart})
    (control.*zoom)(true);
  control.SetHighlight(1, 10, true);
  control.SetHighlightSeconds(1, 2, true);
  control.ViewMouseDown(embLeft, 0, 10, 10);
  control.ViewMouseMove(embLeft, 0, 90, 10);
  control.BarMouseDown(embLeft, 0, 10, 10);
  control.BarMouseMove(embLeft, 0, 90, 10);
  control.UpdateDisplay();
  EXPECT_EQ(TakeSaid(), "");
  EXPECT_EQ(View() + " " + Highlight(), "0+0 0+0");
  EXPECT_EQ(control.HighlightStartSeconds(), 0);
}

TEST_F(WaveformRig, APeakFileIsShownWhole) {
  control.SetPeakFile(peaks, true);
  EXPECT_EQ(TakeSaid(), "DVH");
  EXPECT_EQ(View(), "1+1000000");
  EXPECT_EQ(bar->MousePointer(), empCustom);
  control.SetPeakFile(nullptr, false);
  EXPECT_EQ(TakeSaid(), "VH");
  EXPECT_EQ(bar->MousePointer(), empDefault);
}

TEST_F(WaveformRig, AViewIsHeldToTheAudio) {
  struct {
    std::int32_t start, number;
    const char *arguments, *view;
  } const rows[] = {{1000, 5000, "1000+5000", "1000+5000"},
                    {-10, 1, "0+2", "0+2"},
                    {999000, 5000, "999000+1000", "999000+1000"},
                    {2000000, 5000, "1000000+0", "1000000+2"},
                    {2000000, 1, "1000000+2", "1000000+2"}};
  Load();
  for (auto row : rows) {
    control.SetView(row.start, row.number, false);
    EXPECT_EQ(NumberText(row.start) + "+" + NumberText(row.number), row.arguments);
    EXPECT_EQ(View(), row.view);
    EXPECT_EQ(TakeSaid(), "V");
  }
}

TEST_F(WaveformRig, ZoomsHaveTheirMiddleOrTheSelection) {
  Load();
  control.ZoomIn(true);
  EXPECT_EQ(View() + TakeSaid(), "250001+500000DV");
  control.ZoomOut(false);
  EXPECT_EQ(View() + TakeSaid(), "1+999999V");  // 499999.5 and a half to the even number
  control.SetHighlight(600000, 2, false);
  control.ZoomToSelection(false);
  control.ZoomToSelectionEnd(false);
  EXPECT_EQ(View() + TakeSaid(), "1+999999H");
  control.SetHighlight(900000, 400000, false);
  control.ZoomToSelection(false);
  EXPECT_EQ(View() + " " + Highlight(), "900000+100000 900000+100000");
  control.SetHighlight(300000, 100000, false);
  control.ZoomToSelectionStart(false);
  EXPECT_EQ(View(), "275000+50000");
  control.ZoomToSelectionEnd(false);
  EXPECT_EQ(View(), "387500+25000");
}

TEST_F(WaveformRig, ZoomingEndsAtTenPixelsAPoint) {
  Load();
  SetView(1, 50001);
  TakeSaid();
  control.ZoomIn(false);
  EXPECT_EQ(View() + TakeSaid(), "12501+25000V");
  SetView(1, 50000);
  TakeSaid();
  control.ZoomIn(true);
  EXPECT_EQ(View() + TakeSaid(), "1+50000");
}

TEST_F(WaveformRig, HighlightsKeepWhatIsSetAndTellItWithinTheAudio) {
  Load();
  control.SetHighlight(-5, -6, false);
  EXPECT_EQ(Highlight() + TakeSaid(), "0+0H");
  control.SetHighlightSeconds(500.0005F, 2000, true);
  EXPECT_EQ(Highlight() + TakeSaid(), "500000+2000000DH");
  EXPECT_EQ(control.HighlightStartSeconds(), 500);
  EXPECT_EQ(control.HighlightNumberSeconds(), 1000);
}

TEST_F(WaveformRig, TheMouseSelectsInBothDirections) {
  Load();
  SetView(100000, 10000);
  TakeSaid();
  std::string heard;
  control.events.MouseDown.connect([&](int button, int shift, float x, float y) {
    heard += NumberText(button) + " " + NumberText(shift) + " " + NumberText(x) + " " + NumberText(y);
  });
  control.ViewMouseMove(embLeft, 0, 500, 5);
  control.ViewMouseDown(embRight, 0, 500, 5);
  EXPECT_EQ(Highlight() + TakeSaid(), "0+0");
  heard.clear();
  control.ViewMouseDown(embLeft, 3, 500, 5);
  EXPECT_EQ(heard, "1 3 7500 75");
  EXPECT_EQ(Highlight() + TakeSaid(), "105000+2DH");
  control.ViewMouseMove(embLeft, 0, 600, 5);
  EXPECT_EQ(Highlight(), "105000+1000");
  control.ViewMouseMove(embLeft, 0, -50, 5);
  EXPECT_EQ(Highlight(), "100000+5000");
  control.ViewMouseUp(embLeft, 0, 0, 5);
  control.ViewMouseMove(embLeft, 0, 900, 5);
  EXPECT_EQ(Highlight(), "100000+5000");
  control.SetHostScaleMode(esmPixels);
  heard.clear();
  control.ViewMouseDown(embLeft, 0, 7, 5);
  EXPECT_EQ(heard, "1 0 7 5");
}

TEST_F(WaveformRig, TheBarDragsTheView) {
  Load();
  SetView(100000, 200000);
  control.BarMouseDown(embLeft, 0, 200, 5);
  control.BarMouseMove(embLeft, 0, 300, 5);
  EXPECT_EQ(View(), "200000+200000");
  control.BarMouseMove(embLeft, 0, 1001, 5);  // beyond its end
  EXPECT_EQ(View(), "200000+200000");
  control.BarMouseMove(embLeft, 0, 1000, 5);
  EXPECT_EQ(View(), "800000+200000");
  control.BarMouseMove(embLeft, 0, 0, 5);
  EXPECT_EQ(View(), "1+200000");
  control.BarMouseUp(embLeft, 0, 0, 5);
  control.BarMouseMove(embLeft, 0, 500, 5);
  EXPECT_EQ(View(), "1+200000");
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
  EXPECT_EQ(Columns(*view, 1), "");
  EXPECT_EQ(Columns(*view, 96), "0..99 500..500");
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
  control.SetBorderStyle(0);
  EXPECT_EQ(control.ViewPlace().top, 20);
  control.SetShowPositionBar(false);
  EXPECT_EQ(control.ViewPlace(), (Rect{0, 0, 300, 200}));
  control.SetShowPositionBar(true);
  EXPECT_EQ(bar->Height(), 20);
  for (const std::int32_t height : {22, 0, -5}) {
    control.Resize(height, height);
    EXPECT_GE(control.ViewPlace().bottom, control.ViewPlace().top);
  }
}

TEST_F(WaveformRig, PropertiesAreKeptByName) {
  std::string list;
  for (const WaveformProperty& property : PersistedWaveformProperties()) {
    EXPECT_EQ(property.read(control), property.defaultValue) << property.name;
    list += std::string(property.name) + "=" + NumberText(property.defaultValue) + " ";
    const std::int32_t other =
        property.defaultValue == 0 ? (std::string(property.name) == "DrawType" ? 1 : -1) : 0;
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
