#include <exception>

#include "audio/cPeakFile.h"
#include "controls/WaveformUnits.h"
#include "controls/uWaveform.h"
#include "item/cHDItem.h"
#include "item/cHDItemMark.h"
#include "playback/cPlayer.h"

namespace qm {

namespace {

constexpr std::int32_t kShade = 0xA0A0A0;  // of the highlight, and of the view on the bar
constexpr std::int32_t kMarkerTop = 2, kMarkerBottom = 3;
constexpr std::int32_t kBorders = 4;  // between bar and view: the border of either

}  // namespace

// Columns of a surface.
struct uWaveform::Span {
  Span(double start, double end)
      : left(ToSample(start)), right(Greater(ToSample(end), ToSample(left + 1.0))) {}
  std::int32_t left, right;
};

uWaveform::Span uWaveform::OnView(double startSample, double endSample) const {
  const double scale = m_view->Width() / static_cast<double>(Greater(1, m_viewNumberSamples));
  return {(startSample - m_viewStartSample) * scale, (endSample - m_viewStartSample) * scale};
}

uWaveform::Span uWaveform::OnBar(double startSample, double endSample) const {
  const double scale = m_bar->Width() / AudioNumberSamples();
  return {startSample * scale, endSample * scale};
}

uWaveform::uWaveform(std::shared_ptr<Surface> view, std::shared_ptr<Surface> bar)
    : m_view(std::move(view)), m_bar(std::move(bar)), m_barHeight(m_bar->Height()) {
  SetBackColor(m_backColor);
  Resize(m_view->Width(), m_barHeight + kBorders + m_view->Height());
}

void uWaveform::UpdateDisplay() try {
  Cls();
  m_bar->Clear();
  if (!PeakFile()) {
    m_bar->Refresh();
    return m_view->Refresh();
  }
  m_renderer->DrawWaveform(m_view.get(), 0, 0, m_view->Width(), m_view->Height(), m_drawType,
                           m_viewStartSample, m_viewNumberSamples);
  const bool hasSamples = AudioNumberSamples() > 0;
  if (hasSamples) DrawHighlight();
  if (m_showPositionBar)
    m_renderer->DrawWaveform(m_bar.get(), 0, 0, m_bar->Width(), m_bar->Height(), dwtSingle, -1, -1);
  if (hasSamples && m_item) DrawMarkers();
  if (hasSamples && m_showPositionBar) DrawViewOnBar();
  if (m_showPositionBar) m_bar->Refresh();
  m_view->Refresh();
  events.WaveformDrawn();
  UpdatePlayCursor(m_playPositionSample);
} catch (const std::exception&) {
  // Out of memory, or a listener's own failure: there is nobody to tell.
}

void uWaveform::DrawHighlight() {
  const double end = static_cast<double>(m_highlightStartSample) + m_highlightNumberSamples;
  if (m_highlightStartSample >= ViewEnd() || m_highlightNumberSamples < 1 || end <= m_viewStartSample) return;
  const Span span = OnView(m_highlightStartSample, end);
  const DrawModeScope mode(*m_view, dmdMaskPen);
  m_view->FillRectangle({span.left, 0, span.right, m_view->Height()}, kShade);
}

void uWaveform::DrawMarkers() {
  const DrawModeScope viewMode(*m_view, dmdMaskPen), barMode(*m_bar, dmdMaskPen);
  const auto draw = [](Surface& surface, const Span& span, std::int32_t colour) {
    surface.FillRectangle({span.left, kMarkerTop, span.right, surface.Height() - kMarkerBottom}, colour);
  };
  for (std::int32_t i = 1; i <= m_item->NumberMarkers(); ++i) {
    const auto mark = m_item->Marker(i);
    const double start = mark->StartSample(), end = start + mark->Duration();
    if (start < ViewEnd() && end > m_viewStartSample) draw(*m_view, OnView(start, end), mark->MarkerColour());
    if (m_showPositionBar) draw(*m_bar, OnBar(start, end), mark->MarkerColour());
  }
}

void uWaveform::DrawViewOnBar() {
  const double scale = m_bar->Width() / AudioNumberSamples();
  const std::int32_t left = ToSample(m_viewStartSample * scale);
  const std::int32_t right = ToSample(static_cast<double>(left) + ToSample(m_viewNumberSamples * scale));
  const DrawModeScope mode(*m_bar, dmdMaskPen);
  m_bar->FillRectangle({left, 0, right, m_bar->Height()}, kShade);
}

void uWaveform::UpdatePlayCursor(std::int32_t position) {
  m_playPositionSample = position;
  const bool candidate = position > 0 && (!m_player || m_player->Status() <= psPaused);
  const auto show = [candidate](Surface& surface, bool within, double x) {
    CursorLine cursor = surface.Cursor();
    cursor.visible = candidate && within;
    if (cursor.visible) cursor.x = ToSample(x);
    surface.SetCursor(cursor);
  };
  const double inView = static_cast<double>(position) - m_viewStartSample;
  show(*m_view, inView >= 0 && position <= ViewEnd() && m_viewNumberSamples > 0,
       m_view->Width() * inView / Greater(1, m_viewNumberSamples));
  const double all = AudioNumberSamples();
  show(*m_bar, m_showPositionBar && all > 0, m_bar->Width() * static_cast<double>(position) / all);
}

void uWaveform::Resize(std::int32_t width, std::int32_t height) try {
  m_width = width = Greater(0, width);
  m_height = height = Greater(0, height);
  m_barPlace = m_showPositionBar ? Rect{0, 0, width, m_barHeight} : Rect{};
  const std::int32_t top = m_showPositionBar ? m_barHeight + (m_borderStyle != 0 ? kBorders : 0) : 0;
  m_viewPlace = {0, top, width, Greater(top, height)};
  for (const auto& [surface, place] : {std::pair{m_view, m_viewPlace}, std::pair{m_bar, m_barPlace}}) {
    surface->Resize(place.right - place.left, place.bottom - place.top);
    CursorLine cursor = surface->Cursor();
    cursor.top = 0;
    cursor.bottom = surface->Height();
    surface->SetCursor(cursor);
  }
  UpdateDisplay();
} catch (const std::exception&) {
  // No memory for a surface of that size: it stays as it was.
}

}  // namespace qm
