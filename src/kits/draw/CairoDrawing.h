#pragma once
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "kits/draw/Surface.h"

// For the sources of this folder that include the drawing library.
struct _cairo;
struct _cairo_surface;

namespace qm {

struct Picture;

struct CairoSurfaceEnd {
  void operator()(_cairo_surface* surface) const;
};
struct CairoContextEnd {
  void operator()(_cairo* context) const;
};

// Draws on a picture's pixels, which may be looked at after Finish only. Does nothing where the library
// refuses.
struct CairoDrawing {
  explicit CairoDrawing(Picture& picture);

  void Line(Point from, Point to, std::int32_t colour);
  void Polygon(std::span<const Point> outline, std::int32_t lineColour, std::int32_t fillColour);
  void Text(std::string_view text, std::int32_t x, std::int32_t y, const TextStyle& style,
            std::int32_t colour);
  double TextWidth(std::string_view text, const TextStyle& style);
  void Finish();

 private:
  void SetColour(std::int32_t colour);
  void SetFont(const TextStyle& style);

  Picture& m_picture;
  std::unique_ptr<_cairo_surface, CairoSurfaceEnd> m_surface;
  std::unique_ptr<_cairo, CairoContextEnd> m_context;
};

}  // namespace qm
