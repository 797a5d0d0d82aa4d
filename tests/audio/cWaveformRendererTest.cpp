#include "audio/cWaveformRenderer.h"

#include <gtest/gtest.h>

#include <array>

#include "kits/common/Numbers.h"
#include "kits/draw/OffscreenSurface.h"
#include "support/GoldenPicture.h"
#include "support/PeakPoints.h"

namespace qm {
namespace {

using namespace test;

// Writes down what is drawn on it.
class WrittenSurface : public OffscreenSurface {
 public:
  WrittenSurface() : OffscreenSurface(40, 110, 0xFFFFFF) {}

  void Polygon(std::span<const Point> outline, std::int32_t, std::int32_t) override {
    for (const Point& point : outline) written += NumberText(point.x) + "," + NumberText(point.y) + " ";
  }
  void CopyRectangle(const Rect& source, std::int32_t x, std::int32_t y, enCopyWay way) override {
    written += way == ecwMirrored ? "mirror " : "copy ";
    for (const std::int32_t value : {source.left, source.top, source.right, source.bottom, x, y})
      written += NumberText(value) + " ";
  }

  std::string written;
};

struct RendererTest : testing::Test {
  RendererTest() {
    m_renderer.events.WaveformDrawn.connect([this] { ++m_drawn; });
  }

  std::string Draw(std::vector<std::int16_t> points, int channels, const Rect& area = {0, 0, 10, 64},
                   enDrawWaveType type = dwtSingle) {
    WrittenSurface surface;
    m_renderer.SetPeakFile(PeaksOf(points, channels));
    m_renderer.DrawWaveform(&surface, area.left, area.top, area.right, area.bottom, type);
    return surface.written;
  }

  cWaveformRenderer m_renderer;
  int m_drawn = 0;
};

TEST_F(RendererTest, OneVertexStandsForTheLoudestOfEachStep) {
  const std::vector<std::int16_t> four = {0, 16384, -32768, 100};
  // An odd number of points, of which the last is never looked at; columns for each vertex.
  EXPECT_EQ(Draw(four, 1, {0, 0, 10, 100}, dwtNormal), "0,50 0,25 5,0 10,50 mirror 0 0 10 50 0 100 ");
  EXPECT_EQ(Draw(four, 1, {3, 2, 10, 101}, dwtNormal), "3,52 3,27 8,2 13,52 mirror 3 2 13 52 3 102 ");
  EXPECT_EQ(Draw(four, 1, {0, 4, 10, 100}), "0,104 0,54 5,4 10,104 ");
  EXPECT_EQ(Draw({0, 0, 0, 0, 0, 0, 32767, 32767}, 1, {0, 0, 10, 100}),
            "0,100 0,100 2,100 5,100 8,0 10,100 ");
  // Of two channels the second is not looked at; an odd step of 3 becomes 4.
  EXPECT_EQ(Draw({100, 0, 200, 32767, 16384, 0, 300, 0, 1, 0, 8192, 0}, 2, {0, 0, 2, 64}),
            "0,64 0,32 1,48 2,64 ");
  EXPECT_EQ(m_drawn, 5);
  // Scaled by the louder channel, unless both are equal.
  m_renderer.SetAutoScale(true);
  EXPECT_EQ(Draw({16384, 100, 0, 0}, 2), "0,64 0,0 10,64 ");
  EXPECT_EQ(Draw({8192, 16384, 0, 0}, 2), "0,64 0,32 10,64 ");
  EXPECT_EQ(Draw({16384, -16384, 0, 0}, 2), "0,64 0,32 10,64 ");
  EXPECT_EQ(Draw({0, 0, 0, 0}, 2), "0,64 0,64 10,64 ");
  EXPECT_EQ(Draw({16384, 0}, 1), "0,64 0,0 10,64 ");
}

TEST_F(RendererTest, WithNothingToDrawThereIsNoEvent) {
  WrittenSurface surface;
  m_renderer.DrawWaveform(&surface, 0, 0, 10, 10, dwtNormal);
  m_renderer.SetPeakFile(PeaksOf({1, 2, 3, 4}));
  m_renderer.DrawWaveform(nullptr, 0, 0, 10, 10, dwtNormal);
  for (const auto& [cx, start, number] : {std::array{0, -1, -1}, {-1, -1, -1}, {10, 2001, -1}, {10, 1, 200}})
    m_renderer.DrawWaveform(&surface, 0, 0, cx, 10, dwtNormal, start, number);
  EXPECT_EQ(Draw({}, 1, {0, 0, 10, 10}, dwtNormal) + surface.written, "");
  EXPECT_EQ(m_drawn, 0);
}

// Six areas: a stereo song mirrored and single-sided, quiet and scaled, a close view, silence, an odd height.
TEST_F(RendererTest, PicturesAreAsTheyWere) {
  OffscreenSurface sheet(400, 300, 0xFFFFFF);
  const auto draw = [&](const Rect& area, enDrawWaveType type, std::int32_t start, std::int32_t number) {
    sheet.FillRectangle({area.left, area.top, area.left + area.right, area.top + area.bottom}, 0xE8F0F0);
    m_renderer.DrawWaveform(&sheet, area.left, area.top, area.right, area.bottom, type, start, number);
  };
  m_renderer.SetPeakFile(PeaksOf(SongPoints(6000, 2), 2));
  draw({4, 4, 190, 90}, dwtNormal, -1, -1);
  draw({204, 4, 190, 90}, dwtSingle, -1, -1);
  draw({4, 104, 190, 91}, dwtNormal, 1000001, 20000);
  auto quiet = SongPoints(6000);
  for (std::int16_t& point : quiet) point = static_cast<std::int16_t>(point / 8);
  m_renderer.SetPeakFile(PeaksOf(quiet));
  draw({204, 104, 90, 90}, dwtNormal, -1, -1);
  m_renderer.SetAutoScale(true);
  m_renderer.SetLineColour(0x004000);
  m_renderer.SetFillColour(0x80D080);
  draw({304, 104, 90, 90}, dwtNormal, -1, -1);
  m_renderer.SetPeakFile(PeaksOf(std::vector<std::int16_t>(500)));
  draw({4, 204, 390, 90}, dwtNormal, -1, -1);
  ExpectGolden(sheet.Pixels(), "waveforms.png");
}

}  // namespace
}  // namespace qm
