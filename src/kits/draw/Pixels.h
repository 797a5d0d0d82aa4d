#pragma once
#include <cstdint>

#include "kits/common/Colours.h"
#include "kits/draw/Surface.h"

namespace qm {

// A colour value (blue in the high byte) as a pixel (red in the high byte).
inline std::uint32_t PixelOf(std::int32_t colour) {
  const auto bgr = static_cast<std::uint32_t>(ConvertColour(colour));
  return (bgr & 0xFF) << 16 | (bgr & 0xFF00) | (bgr >> 16 & 0xFF);
}

inline std::uint32_t Meet(std::uint32_t there, std::uint32_t ink, enDrawMode mode) {
  return mode == dmdMaskPen ? there & ink : ink;
}

}  // namespace qm
