#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "kits/draw/OffscreenSurface.h"
#include "support/SoundFixtures.h"

namespace qm {
namespace {

using namespace test;

constexpr std::int32_t kWhite = 0xFFFFFF, kRed = 0x0000FF, kBlue = 0xFF0000;

// Rows as text: "." where the surface is white, "#" blue, "r" red, "+" for another colour.
std::vector<std::string> Rows(const Picture& picture) {
  const std::map<std::uint32_t, char> letters = {{0xFFFFFF, '.'}, {0x0000FF, '#'}, {0xFF0000, 'r'}};
  std::vector<std::string> rows;
  for (std::int32_t y = 0; y < picture.height; ++y) {
    rows.emplace_back();
    for (std::int32_t x = 0; x < picture.width; ++x) {
      const auto letter = letters.find(picture.At(x, y));
      rows.back() += letter == letters.end() ? '+' : letter->second;
    }
  }
  return rows;
}

using Lines = std::vector<std::string>;

TEST(Surface, DrawsShapesAndCutsThemAtItsEdges) {
  OffscreenSurface surface(8, 4, kWhite);
  surface.FillRectangle({-5, 2, 2, 100}, kRed);
  surface.Rectangle({3, 0, 7, 3}, kBlue);
  surface.Line(
      {
          7,
          -3,
      },
      {7, 9}, kRed);
  surface.FillRectangle({5, 3, 4, 9}, kRed);
  EXPECT_EQ(Rows(surface.Pixels()), (Lines{"...####r", "...#..#r", "rr.####r", "rr.....r"}));
}

TEST(Surface, MasksPixelsWithTheColourInModeNine) {
  for (const auto& draw :
       std::vector<std::function<void(Surface&)>>{[](Surface& surface) {
                                                    surface.FillRectangle({0, 0, 3, 3}, 0x00FFFF);
                                                  },
                                                  [](Surface& surface) {
                                                    surface.Line({0, 0}, {2, 0}, 0x00FFFF);
                                                  },
                                                  [](Surface& surface) {
                                                    const Point square[] = {{0, 0}, {2, 0}, {2, 2}, {0, 2}};
                                                    surface.Polygon(square, 0x00FFFF, 0x00FFFF);
                                                  },
                                                  [](Surface& surface) {
                                                    const Point hill[] = {{0, 2}, {0, 0}, {2, 0}, {2, 2}};
                                                    surface.Polygon(hill, 0x00FFFF, 0x00FFFF);
                                                  }}) {
    OffscreenSurface surface(4, 3, 0xF0E0C0);
    {
      const DrawModeScope mode(surface, dmdMaskPen);
      draw(surface);
    }
    EXPECT_EQ(surface.DrawMode(), dmdCopyPen);
    EXPECT_EQ(surface.Pixels().At(1, 0), 0xC0E000u);  // yellow on a pale blue: blue goes
    EXPECT_EQ(surface.Pixels().At(3, 0), 0xC0E0F0u);
  }
}

TEST(Surface, CopiesUprightAndMirroredAlsoOntoItself) {
  const auto drawn = [] {
    auto surface = std::make_unique<OffscreenSurface>(4, 5, kWhite);
    surface->FillRectangle({0, 0, 4, 1}, kRed);
    surface->FillRectangle({0, 1, 2, 2}, kBlue);
    return surface;
  };
  auto surface = drawn();
  surface->CopyRectangle({0, 0, 4, 3}, 0, 4, ecwMirrored);
  EXPECT_EQ(Rows(surface->Pixels()), (Lines{"rrrr", "##..", "....", "##..", "rrrr"}));
  surface = drawn();
  surface->CopyRectangle({0, 0, 3, 2}, 1, 1, ecwUpright);
  EXPECT_EQ(Rows(surface->Pixels()), (Lines{"rrrr", "#rrr", ".##.", "....", "...."}));
  surface = drawn();
  surface->CopyRectangle({-2, -1, 9, 9}, -3, 1, ecwUpright);
  EXPECT_EQ(Rows(surface->Pixels()), (Lines{"rrrr", "##..", "rrr.", "#...", "...."}));
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

TEST(Surface, TextIsAsWideAsItSays) {
  OffscreenSurface surface(200, 30, kWhite);
  const TextStyle style{"Sans", 14, false};
  const std::int32_t width = surface.TextWidth("Jingle", style);
  surface.Text("Jingle", 20, 20, style, kBlue);
  const Lines rows = Rows(surface.Pixels());
  std::size_t first = 200, last = 0;
  for (const std::string& row : rows) {
    first = std::min(first, row.find_first_not_of('.'));
    if (row.find_last_not_of('.') != row.npos) last = std::max(last, row.find_last_not_of('.'));
  }
  EXPECT_NEAR(static_cast<double>(first), 20, 3);
  EXPECT_NEAR(static_cast<double>(last), 20 + width, 3);
}

TEST(Surface, TheCursorLineLiesAboveThePixels) {
  OffscreenSurface surface(3, 3, kWhite);
  int moves = 0;
  surface.events.CursorMoved.connect([&] { ++moves; });
  for (int i = 0; i < 2; ++i) surface.SetCursor({1, 0, 2, kRed, true});
  EXPECT_EQ(moves, 1);
  EXPECT_EQ(Rows(surface.Shown()), (Lines{".r.", ".r.", "..."}));
  EXPECT_EQ(Rows(surface.Pixels()), (Lines{"...", "...", "..."}));
}

TEST(Picture, GoesThroughAPngFile) {
  const TempFolder folder;
  Picture written(5, 2, 0x123456), read(1, 1, 7);
  written.Row(1)[4] = 0xFFEEDD;
  ASSERT_TRUE(WritePng(folder.File("a.png"), written));
  ASSERT_TRUE(ReadPng(folder.File("a.png"), read));
  EXPECT_EQ(read, written);
  const std::string bytes = ReadBytes(folder.File("a.png"));
  WriteBytes(folder.File("cut.png"), bytes.substr(0, bytes.size() / 2));
  for (const char* bad : {"cut.png", "none.png"}) EXPECT_FALSE(ReadPng(folder.File(bad), read)) << bad;
  EXPECT_EQ(read, written);
  EXPECT_FALSE(WritePng(folder.File("a.png"), Picture()));
  EXPECT_FALSE(WritePng(folder.File("no folder/a.png"), written));
  EXPECT_EQ(ReadBytes(folder.File("a.png")), bytes);
}

}  // namespace
}  // namespace qm
