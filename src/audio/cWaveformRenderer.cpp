#include "audio/cWaveformRenderer.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <limits>

#include "audio/cPeakFile.h"
#include "kits/common/Numbers.h"
#include "kits/draw/Surface.h"

namespace qm {

namespace {

constexpr std::int32_t kFullScale = 32768;

std::int32_t ToWhole(double value) {
  using Range = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(Limit<std::int64_t>(RoundToWhole(value), Range::min(), Range::max()));
}

std::int32_t Sum(std::int32_t first, std::int32_t second) {
  return ToWhole(static_cast<double>(first) + second);
}

// Points that make one vertex. Always even, so that the outline stays as it is when the view shifts.
std::int64_t StepOf(std::int64_t frames, std::int32_t width) {
  const std::int64_t step = Greater<std::int64_t>(1, frames / width);
  return (step + 1) / 2 * 2;
}

}  // namespace

struct cWaveformRenderer::Area {
  std::int32_t x, y, width, height;
  enDrawWaveType type;

  float Half() const { return static_cast<float>(height) / 2; }
  float Span() const { return type == dwtSingle ? static_cast<float>(height) : Half(); }
  std::int32_t LevelRow() const { return ToWhole(static_cast<double>(y) + Span()); }
};

float cWaveformRenderer::Scale() const {
  if (!m_autoScale) return 1;
  const qmPeakFileHeader header = m_peakFile->Header();
  const std::int32_t left = header.MaxLeftLevel, right = header.MaxRightLevel;
  // Equal levels are on purpose not scaled.
  if (left > 0 && left > right) return static_cast<float>(kFullScale) / static_cast<float>(left);
  if (right > 0 && right > left) return static_cast<float>(kFullScale) / static_cast<float>(right);
  return 1;
}

void cWaveformRenderer::TraceOutline(const Area& area, std::int32_t channels) {
  const auto length = static_cast<std::int64_t>(m_samples.size());
  const std::int64_t frames = RoundToWhole(static_cast<double>(length) / channels);
  const std::int64_t step = StepOf(frames, area.width);
  const std::int64_t points = RoundToWhole(static_cast<double>(frames) / static_cast<double>(step));
  const double scale = Scale(), span = area.Span();

  m_outline.clear();
  // Closer views have fewer points, but up to half as many vertices again as there are columns.
  m_outline.reserve(static_cast<std::size_t>(std::min(frames / 2 + 1, std::int64_t{area.width} * 3 / 2) + 3));
  m_outline.push_back({area.x, area.LevelRow()});
  std::int64_t offset = 0;
  for (std::int64_t i = 0; i < points; ++i, offset += step * channels) {
    // The array's last value is on purpose not looked at.
    const std::int64_t end = std::min(offset + step * channels, length - 1);
    std::int32_t value = 0;
    for (std::int64_t index = offset; index < end; index += channels)
      value = std::max(value, std::abs(std::int32_t{m_samples[static_cast<std::size_t>(index)]}));
    const double level = static_cast<double>(RoundToWhole(scale * value)) / kFullScale;
    const double part = static_cast<double>(i) / static_cast<double>(points);
    m_outline.push_back({ToWhole(area.x + part * area.width), ToWhole(area.y + span * (1 - level))});
  }
  m_outline.push_back({Sum(area.x, area.width), m_outline.front().y});
}

void cWaveformRenderer::DrawWaveform(Surface* hDC, std::int32_t X, std::int32_t Y, std::int32_t cx,
                                     std::int32_t cy, enDrawWaveType DrawType, std::int32_t StartSample,
                                     std::int32_t NumberSamples) try {
  if (hDC == nullptr || cx <= 0 || cy <= 0 || !m_peakFile) return;
  const qmPeakFileHeader header = m_peakFile->Header();
  if (!(header.AudioNumberSamples > 1)) return;
  const std::int32_t start = StartSample == -1 ? 1 : StartSample;
  const std::int32_t number = NumberSamples == -1 ? ToWhole(header.AudioNumberSamples) : NumberSamples;
  if (!m_peakFile->GetSamples(start, number, m_samples)) return;

  const Area area{X, Y, cx, cy, DrawType};
  TraceOutline(area, header.AudioChannels);
  hDC->Polygon(m_outline, m_lineColour, m_fillColour);
  if (DrawType == dwtNormal)
    hDC->CopyRectangle({X, Y, Sum(X, cx), Sum(Y, ToWhole(area.Half()))}, X, Sum(Y, cy - cy % 2), ecwMirrored);
  events.WaveformDrawn();
} catch (const std::exception&) {
  // Out of memory, or a listener's own failure: there is nobody to tell.
}

}  // namespace qm
