#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace qm {

// Pixels, row by row from the top, each 0x00RRGGBB.
struct Picture {
  Picture() = default;
  Picture(std::int32_t w, std::int32_t h, std::uint32_t pixel = 0);  // a size below 0 counts as 0

  std::uint32_t* Row(std::int32_t y) { return pixels.data() + static_cast<std::ptrdiff_t>(y) * width; }
  const std::uint32_t* Row(std::int32_t y) const {
    return pixels.data() + static_cast<std::ptrdiff_t>(y) * width;
  }
  std::uint32_t At(std::int32_t x, std::int32_t y) const { return Row(y)[x]; }

  friend bool operator==(const Picture&, const Picture&) = default;

  std::int32_t width = 0, height = 0;
  std::vector<std::uint32_t> pixels;
};

// Replaces the file as one step. False leaves what was there; an empty picture is refused.
bool WritePng(const std::string& path, const Picture& picture);

// False, with the picture as it was, for a file that is no PNG picture or larger than 32767 pixels either
// way. What is transparent comes out over black.
bool ReadPng(const std::string& path, Picture& picture);

}  // namespace qm
