#include "kits/draw/CairoDrawing.h"

#include <cairo.h>

#include <string>

#include "kits/draw/Picture.h"
#include "kits/draw/Pixels.h"

namespace qm {

namespace {

// Pixels have their middle at a half.
constexpr double kMiddle = 0.5;

void Trace(cairo_t* context, std::span<const Point> outline) {
  for (const Point& point : outline) cairo_line_to(context, point.x + kMiddle, point.y + kMiddle);
}

}  // namespace

void CairoSurfaceEnd::operator()(_cairo_surface* surface) const {
  cairo_surface_destroy(surface);
}

void CairoContextEnd::operator()(_cairo* context) const {
  cairo_destroy(context);
}

CairoDrawing::CairoDrawing(Picture& picture)
    : m_picture(picture),
      m_surface(cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(picture.pixels.data()),
                                                    CAIRO_FORMAT_RGB24, picture.width, picture.height,
                                                    picture.width * 4)),
      m_context(cairo_create(m_surface.get())) {
  cairo_set_antialias(m_context.get(), CAIRO_ANTIALIAS_NONE);
  cairo_set_line_width(m_context.get(), 1);
  cairo_set_line_cap(m_context.get(), CAIRO_LINE_CAP_SQUARE);
  cairo_set_line_join(m_context.get(), CAIRO_LINE_JOIN_BEVEL);
  cairo_set_fill_rule(m_context.get(), CAIRO_FILL_RULE_EVEN_ODD);
}

void CairoDrawing::SetColour(std::int32_t colour) {
  const std::uint32_t pixel = PixelOf(colour);
  cairo_set_source_rgb(m_context.get(), (pixel >> 16 & 0xFF) / 255.0, (pixel >> 8 & 0xFF) / 255.0,
                       (pixel & 0xFF) / 255.0);
}

void CairoDrawing::Line(Point from, Point to, std::int32_t colour) {
  const Point ends[] = {from, to};
  SetColour(colour);
  Trace(m_context.get(), ends);
  cairo_stroke(m_context.get());
}

void CairoDrawing::Polygon(std::span<const Point> outline, std::int32_t lineColour, std::int32_t fillColour) {
  Trace(m_context.get(), outline);
  cairo_close_path(m_context.get());
  SetColour(fillColour);
  cairo_fill_preserve(m_context.get());
  SetColour(lineColour);
  cairo_stroke(m_context.get());
}

void CairoDrawing::SetFont(const TextStyle& style) {
  cairo_select_font_face(m_context.get(), style.family, CAIRO_FONT_SLANT_NORMAL,
                         style.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(m_context.get(), style.size);
}

void CairoDrawing::Text(std::string_view text, std::int32_t x, std::int32_t y, const TextStyle& style,
                        std::int32_t colour) {
  SetFont(style);
  SetColour(colour);
  cairo_move_to(m_context.get(), x, y);
  cairo_show_text(m_context.get(), std::string(text).c_str());
}

double CairoDrawing::TextWidth(std::string_view text, const TextStyle& style) {
  SetFont(style);
  cairo_text_extents_t extents{};
  cairo_text_extents(m_context.get(), std::string(text).c_str(), &extents);
  return extents.x_advance;
}

void CairoDrawing::Finish() {
  cairo_surface_flush(m_surface.get());
  for (std::uint32_t& pixel : m_picture.pixels) pixel &= 0xFFFFFF;  // the library sets the spare byte
}

}  // namespace qm
