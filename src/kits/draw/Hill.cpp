#include "kits/draw/Hill.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "kits/draw/Picture.h"

namespace qm {

namespace {

bool IsHill(std::span<const Point> outline) {
  if (outline.size() < 2 || outline.front().y != outline.back().y) return false;
  for (std::size_t i = 1; i < outline.size(); ++i)
    if (outline[i].x < outline[i - 1].x || outline[i].y > outline.front().y) return false;
  return true;
}

}  // namespace

bool Hill::Trace(std::span<const Point> outline, std::int32_t width) {
  if (!IsHill(outline)) return false;
  m_base = m_top = outline.front().y;
  m_left = std::clamp(outline.front().x, 0, width);
  m_right = static_cast<std::int32_t>(std::clamp<std::int64_t>(outline.back().x + 1LL, m_left, width));
  const auto columns = static_cast<std::size_t>(width);
  m_first.assign(columns, std::numeric_limits<std::int32_t>::max());
  m_last.assign(columns, std::numeric_limits<std::int32_t>::min());
  for (std::size_t i = 1; i < outline.size(); ++i) {
    m_top = std::min(m_top, outline[i].y);
    TraceEdge(outline[i - 1], outline[i]);
  }
  return true;
}

void Hill::Touch(std::int64_t x, std::int64_t first, std::int64_t last) {
  const auto column = static_cast<std::size_t>(x);
  m_first[column] = std::min(m_first[column], static_cast<std::int32_t>(first));
  m_last[column] = std::max(m_last[column], static_cast<std::int32_t>(last));
}

// The line of pixels nearest to the edge: one a column where it is flat, else one a row, so that a column has
// the rows up to half way to its neighbours.
void Hill::TraceEdge(Point from, Point to) {
  const std::int64_t begin = std::max(from.x, m_left), end = std::min(to.x, m_right - 1);
  if (begin > end) return;
  const std::int64_t dx = to.x - std::int64_t{from.x}, dy = to.y - std::int64_t{from.y};
  if (dx == 0) return Touch(from.x, std::min(from.y, to.y), std::max(from.y, to.y));
  const auto rowAt = [&](std::int64_t halfColumns) {
    const double down =
        static_cast<double>(halfColumns) * static_cast<double>(dy) / static_cast<double>(2 * dx);
    return from.y + static_cast<std::int64_t>(std::floor(down + 0.5));
  };
  const bool steep = dy > dx || -dy > dx;
  for (std::int64_t x = begin; x <= end; ++x) {
    const std::int64_t middle = 2 * (x - from.x);
    if (!steep) {
      Touch(x, rowAt(middle), rowAt(middle));
      continue;
    }
    std::int64_t enter = x == from.x ? from.y : rowAt(middle - 1);
    std::int64_t leave = x == to.x ? to.y : rowAt(middle + 1);
    // The row on the border between two columns belongs to the one further down.
    if (dy > 0 && x != to.x) --leave;
    if (dy < 0 && x != from.x) --enter;
    if (dy < 0) std::swap(enter, leave);
    Touch(x, std::min(enter, leave), std::max(enter, leave));
  }
}

template <class MeetPixel>
void Hill::DrawRows(Picture& picture, std::uint32_t line, std::uint32_t fill, MeetPixel meet) const {
  const std::int32_t end = static_cast<std::int32_t>(std::min<std::int64_t>(m_base + 1LL, picture.height));
  const std::int32_t *first = m_first.data(), *last = m_last.data();
  for (std::int32_t y = std::max(m_top, 0); y < end; ++y) {
    std::uint32_t* row = picture.Row(y);
    const std::uint32_t inside = y == m_base ? line : fill;
    for (std::int32_t x = m_left; x < m_right; ++x) {
      const std::uint32_t ink = y > last[x] ? inside : line;
      row[x] = y >= first[x] || y == m_base ? meet(row[x], ink) : row[x];
    }
  }
}

void Hill::Draw(Picture& picture, std::uint32_t line, std::uint32_t fill, enDrawMode mode) const {
  if (mode == dmdMaskPen)
    DrawRows(picture, line, fill, [](std::uint32_t there, std::uint32_t ink) { return there & ink; });
  else
    DrawRows(picture, line, fill, [](std::uint32_t, std::uint32_t ink) { return ink; });
}

}  // namespace qm
