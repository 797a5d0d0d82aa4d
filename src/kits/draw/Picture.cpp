#include "kits/draw/Picture.h"

#include <cairo.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <memory>

#include "kits/common/Files.h"
#include "kits/draw/CairoDrawing.h"

namespace qm {

namespace {

using CairoImage = std::unique_ptr<cairo_surface_t, CairoSurfaceEnd>;

std::size_t PixelCount(std::int32_t width, std::int32_t height) {
  return static_cast<std::size_t>(std::max(width, 0)) * static_cast<std::size_t>(std::max(height, 0));
}

cairo_status_t AppendBytes(void* closure, const unsigned char* data, unsigned int length) try {
  static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
} catch (const std::exception&) {
  return CAIRO_STATUS_NO_MEMORY;
}

cairo_status_t TakeBytes(void* closure, unsigned char* data, unsigned int length) {
  auto& rest = *static_cast<std::string_view*>(closure);
  if (rest.size() < length) return CAIRO_STATUS_READ_ERROR;
  std::memcpy(data, rest.data(), length);
  rest.remove_prefix(length);
  return CAIRO_STATUS_SUCCESS;
}

}  // namespace

Picture::Picture(std::int32_t w, std::int32_t h, std::uint32_t pixel)
    : width(std::max(w, 0)), height(std::max(h, 0)), pixels(PixelCount(w, h), pixel) {}

bool WritePng(const std::string& path, const Picture& picture) try {
  if (picture.pixels.empty()) return false;
  Picture copy = picture;  // the library asks for pixels it might change
  const CairoImage image(
      cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(copy.pixels.data()),
                                          CAIRO_FORMAT_RGB24, copy.width, copy.height, copy.width * 4));
  std::string bytes;
  return cairo_surface_write_to_png_stream(image.get(), AppendBytes, &bytes) == CAIRO_STATUS_SUCCESS &&
         WriteFileAtomically(path, bytes);
} catch (const std::exception&) {
  return false;
}

bool ReadPng(const std::string& path, Picture& picture) try {
  std::string bytes;
  if (!ReadWholeFile(path, bytes)) return false;
  std::string_view rest = bytes;
  const CairoImage image(cairo_image_surface_create_from_png_stream(TakeBytes, &rest));
  cairo_surface_t* surface = image.get();
  if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) return false;
  const cairo_format_t format = cairo_image_surface_get_format(surface);
  if (format != CAIRO_FORMAT_RGB24 && format != CAIRO_FORMAT_ARGB32) return false;
  Picture read(cairo_image_surface_get_width(surface), cairo_image_surface_get_height(surface));
  const unsigned char* data = cairo_image_surface_get_data(surface);
  for (std::int32_t y = 0; y < read.height; ++y, data += cairo_image_surface_get_stride(surface))
    std::memcpy(read.Row(y), data, static_cast<std::size_t>(read.width) * sizeof(std::uint32_t));
  for (std::uint32_t& pixel : read.pixels) pixel &= 0xFFFFFF;
  picture = std::move(read);
  return true;
} catch (const std::exception&) {
  return false;
}

}  // namespace qm
