#pragma once
#include <functional>

#include "kits/common/Event.h"
#include "kits/draw/Hill.h"
#include "kits/draw/Picture.h"
#include "kits/draw/Surface.h"

namespace qm {

struct CairoDrawing;

// A surface in memory. A window shows its pixels and the cursor line over them after each event.
class OffscreenSurface : public Surface {
 public:
  OffscreenSurface() = default;
  OffscreenSurface(std::int32_t width, std::int32_t height, std::int32_t backColour);

  struct Events {
    Event<> Refreshed;
    Event<> CursorMoved;
  } events;

  // What was drawn, without the cursor line. The reference stays good; its contents change with each drawing.
  const Picture& Pixels() const { return m_pixels; }
  // A copy with the cursor line where it is visible.
  Picture Shown() const;

  std::int32_t Width() const override { return m_pixels.width; }
  std::int32_t Height() const override { return m_pixels.height; }
  void Resize(std::int32_t width, std::int32_t height) override;
  void SetBackColour(std::int32_t colour) override { m_backColour = colour; }
  void Clear() override;
  void Refresh() override { events.Refreshed(); }
  enDrawMode DrawMode() const override { return m_mode; }
  void SetDrawMode(enDrawMode mode) override { m_mode = mode; }
  void Line(Point from, Point to, std::int32_t colour) override;
  void Rectangle(const Rect& rect, std::int32_t colour) override;
  void FillRectangle(const Rect& rect, std::int32_t colour) override;
  void Polygon(std::span<const Point> outline, std::int32_t lineColour, std::int32_t fillColour) override;
  void CopyRectangle(const Rect& source, std::int32_t x, std::int32_t y, enCopyWay way) override;
  void DrawPicture(const Picture& picture, std::int32_t x, std::int32_t y) override;
  void Text(std::string_view text, std::int32_t x, std::int32_t y, const TextStyle& style,
            std::int32_t colour) override;
  std::int32_t TextWidth(std::string_view text, const TextStyle& style) override;
  CursorLine Cursor() const override { return m_cursor; }
  void SetCursor(const CursorLine& cursor) override;
  enMousePointer MousePointer() const override { return m_pointer; }
  void SetMousePointer(enMousePointer pointer) override { m_pointer = pointer; }

 private:
  void DrawWithCairo(const std::function<void(CairoDrawing&)>& draw);

  Picture m_pixels;
  std::int32_t m_backColour = 0;
  enDrawMode m_mode = dmdCopyPen;
  enMousePointer m_pointer = empDefault;
  CursorLine m_cursor;
  Hill m_hill;  // kept for their memory
  std::vector<std::uint32_t> m_rows;
};

}  // namespace qm
