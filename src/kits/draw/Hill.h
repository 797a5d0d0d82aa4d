#pragma once
#include <cstdint>
#include <span>
#include <vector>

#include "kits/draw/Surface.h"

namespace qm {

struct Picture;

// An outline that never goes back to the left, rises from a level line and returns to it, as a waveform does.
// It is drawn by columns, at a cost that does not depend on how jagged it is; a filler of general polygons is
// many times slower on a noisy one.
class Hill {
 public:
  // False for an outline of another shape. Only columns up to that width are looked at.
  bool Trace(std::span<const Point> outline, std::int32_t width);

  // Draws the hill traced last.
  void Draw(Picture& picture, std::uint32_t line, std::uint32_t fill, enDrawMode mode) const;

 private:
  void TraceEdge(Point from, Point to);
  void Touch(std::int64_t x, std::int64_t first, std::int64_t last);
  template <class MeetPixel>
  void DrawRows(Picture& picture, std::uint32_t line, std::uint32_t fill, MeetPixel meet) const;

  std::int32_t m_base = 0;                    // row of the level line
  std::int32_t m_left = 0, m_right = 0;       // its columns on the picture, m_right beyond the last
  std::int32_t m_top = 0;                     // highest row
  std::vector<std::int32_t> m_first, m_last;  // rows that the outline touches in each column
};

}  // namespace qm
