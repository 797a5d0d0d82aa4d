#include "kits/draw/OffscreenSurface.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "kits/draw/CairoDrawing.h"
#include "kits/draw/Pixels.h"

namespace qm {

namespace {

constexpr std::uint32_t kWhite = 0xFFFFFF;

Rect Clipped(const Rect& rect, const Picture& picture) {
  return {std::clamp(rect.left, 0, picture.width), std::clamp(rect.top, 0, picture.height),
          std::clamp(rect.right, 0, picture.width), std::clamp(rect.bottom, 0, picture.height)};
}

bool IsEmpty(const Rect& rect) {
  return rect.left >= rect.right || rect.top >= rect.bottom;
}

void Fill(Picture& picture, const Rect& rect, std::uint32_t ink, enDrawMode mode) {
  const Rect part = Clipped(rect, picture);
  for (std::int32_t y = part.top; y < part.bottom; ++y)
    for (std::uint32_t& pixel :
         std::span(picture.Row(y) + part.left, picture.Row(y) + std::max(part.left, part.right)))
      pixel = Meet(pixel, ink, mode);
}

// Puts a row of pixels to x, y, as far as it lies on the picture.
void PutRow(Picture& picture, const std::uint32_t* row, std::int32_t width, std::int64_t x, std::int64_t y) {
  if (y < 0 || y >= picture.height) return;
  const std::int64_t begin = std::max<std::int64_t>(x, 0);
  const std::int64_t end = std::min<std::int64_t>(x + width, picture.width);
  if (begin < end)
    std::copy_n(row + (begin - x), end - begin, picture.Row(static_cast<std::int32_t>(y)) + begin);
}

}  // namespace

OffscreenSurface::OffscreenSurface(std::int32_t width, std::int32_t height, std::int32_t backColour)
    : m_pixels(width, height, PixelOf(backColour)), m_backColour(backColour) {}

Picture OffscreenSurface::Shown() const {
  Picture shown = m_pixels;
  const CursorLine& line = m_cursor;
  if (line.visible && line.x < Width())
    Fill(shown, {line.x, line.top, line.x + 1, line.bottom}, PixelOf(line.colour), dmdCopyPen);
  return shown;
}

void OffscreenSurface::Resize(std::int32_t width, std::int32_t height) {
  if (width == m_pixels.width && height == m_pixels.height) return;
  m_pixels = Picture(width, height, PixelOf(m_backColour));
}

void OffscreenSurface::Clear() {
  std::ranges::fill(m_pixels.pixels, PixelOf(m_backColour));
}

void OffscreenSurface::SetCursor(const CursorLine& cursor) {
  if (cursor == m_cursor) return;
  m_cursor = cursor;
  events.CursorMoved();
}

// The library has no AND of its own. What it draws over white, in which every bit is set, is put to the
// pixels that are there.
void OffscreenSurface::DrawWithCairo(const std::function<void(CairoDrawing&)>& draw) {
  if (m_pixels.pixels.empty()) return;
  if (m_mode != dmdMaskPen) {
    CairoDrawing drawing(m_pixels);
    draw(drawing);
    return drawing.Finish();
  }
  Picture ink(m_pixels.width, m_pixels.height, kWhite);
  CairoDrawing drawing(ink);
  draw(drawing);
  drawing.Finish();
  std::ranges::transform(m_pixels.pixels, ink.pixels, m_pixels.pixels.begin(), std::bit_and<>());
}

void OffscreenSurface::Line(Point from, Point to, std::int32_t colour) {
  DrawWithCairo([&](CairoDrawing& drawing) { drawing.Line(from, to, colour); });
}

void OffscreenSurface::Rectangle(const Rect& rect, std::int32_t colour) {
  if (IsEmpty(rect)) return;
  const auto [left, top, right, bottom] = rect;
  const std::int32_t below = std::min(top + 1, bottom), above = std::max(bottom - 1, below);
  const std::int32_t beside = std::min(left + 1, right);
  // No pixel twice, whatever the mode makes of it.
  FillRectangle({left, top, right, below}, colour);
  FillRectangle({left, above, right, bottom}, colour);
  FillRectangle({left, below, beside, above}, colour);
  FillRectangle({std::max(right - 1, beside), below, right, above}, colour);
}

void OffscreenSurface::FillRectangle(const Rect& rect, std::int32_t colour) {
  Fill(m_pixels, rect, PixelOf(colour), m_mode);
}

void OffscreenSurface::Polygon(std::span<const Point> outline, std::int32_t lineColour,
                               std::int32_t fillColour) {
  if (m_hill.Trace(outline, m_pixels.width))
    return m_hill.Draw(m_pixels, PixelOf(lineColour), PixelOf(fillColour), m_mode);
  DrawWithCairo([&](CairoDrawing& drawing) { drawing.Polygon(outline, lineColour, fillColour); });
}

// By way of a copy: the places may overlap.
void OffscreenSurface::CopyRectangle(const Rect& source, std::int32_t x, std::int32_t y, enCopyWay way) {
  const Rect part = Clipped(source, m_pixels);
  if (IsEmpty(part)) return;
  const std::int32_t width = part.right - part.left;
  m_rows.clear();
  for (std::int32_t row = part.top; row < part.bottom; ++row)
    m_rows.insert(m_rows.end(), m_pixels.Row(row) + part.left, m_pixels.Row(row) + part.right);
  const std::uint32_t* from = m_rows.data();
  for (std::int32_t row = part.top; row < part.bottom; ++row, from += width) {
    const std::int64_t down = std::int64_t{row} - source.top;
    PutRow(m_pixels, from, width, std::int64_t{x} + part.left - source.left,
           y + (way == ecwMirrored ? -down : down));
  }
}

void OffscreenSurface::DrawPicture(const Picture& picture, std::int32_t x, std::int32_t y) {
  for (std::int32_t row = 0; row < picture.height; ++row)
    PutRow(m_pixels, picture.Row(row), picture.width, x, std::int64_t{y} + row);
}

void OffscreenSurface::Text(std::string_view text, std::int32_t x, std::int32_t y, const TextStyle& style,
                            std::int32_t colour) {
  DrawWithCairo([&](CairoDrawing& drawing) { drawing.Text(text, x, y, style, colour); });
}

std::int32_t OffscreenSurface::TextWidth(std::string_view text, const TextStyle& style) {
  Picture scratch(1, 1);
  return static_cast<std::int32_t>(std::ceil(CairoDrawing(scratch).TextWidth(text, style)));
}

}  // namespace qm
