#pragma once
#include <cstdint>
#include <span>
#include <string_view>

namespace qm {

struct Picture;

struct Point {
  std::int32_t x = 0, y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

// From left and top up to, and without, right and bottom.
struct Rect {
  std::int32_t left = 0, top = 0, right = 0, bottom = 0;
  friend bool operator==(const Rect&, const Rect&) = default;
};

// How a colour meets the pixel that is there.
enum enDrawMode : std::int32_t {
  dmdMaskPen = 9,   // pixel AND colour
  dmdCopyPen = 13,  // the colour alone
};

enum enMousePointer : std::int32_t { empDefault = 0, empCustom = 99 };
enum enCopyWay : std::int32_t { ecwUpright, ecwMirrored };

struct TextStyle {
  const char* family = "Arial";
  double size = 12;  // pixels
  bool bold = false;
};

// A thin vertical line above what is drawn, which moves without drawing anew.
struct CursorLine {
  std::int32_t x = 0, top = 0, bottom = 0;
  std::int32_t colour = 0;
  bool visible = false;
  friend bool operator==(const CursorLine&, const CursorLine&) = default;
};

// What controls draw on. Host thread only. Units are pixels from the left and top edge; colours are those of
// kits/common/Colours.h, system colours included. What lies outside is not drawn. Edges have no soft pixels.
class Surface {
 public:
  virtual ~Surface() = default;
  Surface(const Surface&) = delete;
  Surface& operator=(const Surface&) = delete;

  virtual std::int32_t Width() const = 0;
  virtual std::int32_t Height() const = 0;
  // Another size clears it. Sizes below 0 count as 0.
  virtual void Resize(std::int32_t width, std::int32_t height) = 0;

  virtual void SetBackColour(std::int32_t colour) = 0;  // for the next Clear
  virtual void Clear() = 0;
  // Shows what was drawn since the last call.
  virtual void Refresh() = 0;

  // For everything that takes a colour, except Clear.
  virtual enDrawMode DrawMode() const = 0;
  virtual void SetDrawMode(enDrawMode mode) = 0;

  virtual void Line(Point from, Point to, std::int32_t colour) = 0;   // both ends included
  virtual void Rectangle(const Rect& rect, std::int32_t colour) = 0;  // its edge, one pixel wide
  virtual void FillRectangle(const Rect& rect, std::int32_t colour) = 0;
  // Fills the closed outline with one colour and draws it, one pixel wide, with another.
  virtual void Polygon(std::span<const Point> outline, std::int32_t lineColour, std::int32_t fillColour) = 0;
  // Copies pixels. Upright, the top row goes to row y and the others below it; mirrored, they go above it.
  virtual void CopyRectangle(const Rect& source, std::int32_t x, std::int32_t y, enCopyWay way) = 0;
  virtual void DrawPicture(const Picture& picture, std::int32_t x, std::int32_t y) = 0;
  // UTF-8, from x on with the letters standing on row y.
  virtual void Text(std::string_view text, std::int32_t x, std::int32_t y, const TextStyle& style,
                    std::int32_t colour) = 0;
  virtual std::int32_t TextWidth(std::string_view text, const TextStyle& style) = 0;

  virtual CursorLine Cursor() const = 0;
  virtual void SetCursor(const CursorLine& cursor) = 0;

  // The pointer that the mouse has over it.
  virtual enMousePointer MousePointer() const = 0;
  virtual void SetMousePointer(enMousePointer pointer) = 0;

 protected:
  Surface() = default;
};

// A draw mode for as long as this lives; then that of before.
class DrawModeScope {
 public:
  DrawModeScope(Surface& surface, enDrawMode mode) : m_surface(surface), m_former(surface.DrawMode()) {
    m_surface.SetDrawMode(mode);
  }
  ~DrawModeScope() { m_surface.SetDrawMode(m_former); }
  DrawModeScope(const DrawModeScope&) = delete;
  DrawModeScope& operator=(const DrawModeScope&) = delete;

 private:
  Surface& m_surface;
  const enDrawMode m_former;
};

}  // namespace qm
