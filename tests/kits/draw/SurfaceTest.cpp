#include <gtest/gtest.h>

#include "kits/draw/OffscreenSurface.h"
#include "support/SoundFixtures.h"

namespace qm {
namespace {

using namespace test;

constexpr std::int32_t kWhite = 0xFFFFFF, kRed = 0x0000FF, kBlue = 0xFF0000;

// Rows as text: "." where the picture is white, "#" blue, "r" red, "+" another colour.
using Lines = std::vector<std::string>;
Lines Rows(const Picture& picture) {
  Lines rows(static_cast<std::size_t>(picture.height));
  for (std::int32_t y = 0; y < picture.height; ++y)
    for (std::int32_t x = 0; x < picture.width; ++x) {
      const std::uint32_t pixel = picture.At(x, y);
      const char mark = pixel == 0xFFFFFF ? '.' : pixel == 0xFF ? '#' : pixel == 0xFF0000 ? 'r' : '+';
      rows[static_cast<std::size_t>(y)] += mark;
    }
  return rows;
}

TEST(Surface, DrawsShapesAndCutsThemAtItsEdges) {
  OffscreenSurface surface(8, 4, kWhite);
  surface.FillRectangle({-5, 2, 2, 100}, kRed);
  surface.Rectangle({3, 0, 7, 3}, kBlue);
  surface.Line({7, -3}, {7, 9}, kRed);
  surface.FillRectangle({5, 3, 4, 9}, kRed);
  EXPECT_EQ(Rows(surface.Pixels()), (Lines{"...####r", "...#..#r", "rr.####r", "rr.....r"}));
  surface.SetCursor({2, 0, 2, kBlue, true});
  EXPECT_EQ(Rows(surface.Shown()), (Lines{"..#####r", "..##..#r", "rr.####r", "rr.....r"}));
  EXPECT_EQ(Rows(surface.Pixels())[0], "...####r");
}

TEST(Surface, PolygonsHaveALineOfOnePixelAroundTheirFilling) {
  // A hill with a wall, a level top, a slope, a steep side and a spike; and a shape that is none.
  const Point hill[] = {{1, 8}, {1, 1}, {4, 1}, {10, 4}, {12, 8}, {14, 6}, {14, 8}};
  OffscreenSurface surface(16, 10, kWhite);
  surface.Polygon(hill, kBlue, kRed);
  EXPECT_EQ(Rows(surface.Pixels()),
            (Lines{"................", ".####...........", ".#rrr##.........", ".#rrrrr##.......",
                   ".#rrrrrrr##.....", ".#rrrrrrrrr#....", ".#rrrrrrrrr#..#.", ".#rrrrrrrrrr###.",
                   ".##############.", "................"}));
  const Point arrow[] = {{10, 1}, {1, 4}, {10, 7}, {6, 4}};
  surface.Clear();
  surface.Polygon(arrow, kBlue, kRed);
  EXPECT_EQ(Rows(surface.Pixels()),
            (Lines{"................", ".........##.....", "......####......", "...######.......",
                   ".##rrr#.........", "...######.......", "......####......", ".........##.....",
                   "................", "................"}));
}

TEST(Picture, GoesThroughAPngFile) {
  const TempFolder folder;
  const std::string path = folder.File("a.png");
  Picture written(5, 2, 0x123456), read(1, 1, 7);
  written.Row(1)[4] = 0xFFEEDD;
  ASSERT_TRUE(WritePng(path, written) && ReadPng(path, read));
  EXPECT_EQ(read, written);
  EXPECT_FALSE(WritePng(path, Picture()) || WritePng(folder.File("none/a.png"), written));
  EXPECT_TRUE(ReadPng(path, read)) << "it stays";
}

}  // namespace
}  // namespace qm
