#include <array>

#include "audio/cPeakFile.h"
#include "controls/WaveformUnits.h"
#include "controls/uWaveform.h"

namespace qm {

namespace {

// Units of a scale mode in one pixel, at 96 pixels an inch.
float UnitsOf(enScaleMode mode) {
  switch (mode) {
    case esmPoints:
      return 0.75F;
    case esmPixels:
      return 1;
    default:
      return 15;
  }
}

bool HasLeft(std::int16_t button) {
  return (button & embLeft) != 0;
}

}  // namespace

void uWaveform::Raise(const MouseEvent& event, std::int16_t button, std::int16_t shift, float x,
                      float y) const {
  const float units = UnitsOf(m_hostScaleMode);
  event(button, shift, x * units, y * units);
}

std::int32_t uWaveform::SampleAt(float x) const {
  const double width = m_view->Width();
  if (width <= 0) return m_viewStartSample;
  return ToSample(Limit<double>(x, 0, width) / width * m_viewNumberSamples + m_viewStartSample);
}

void uWaveform::ViewMouseDown(std::int16_t Button, std::int16_t Shift, float X, float Y) {
  Raise(events.MouseDown, Button, Shift, X, Y);
  if (!HasLeft(Button) || !PeakFile()) return;
  m_selecting = true;
  m_anchorSample = SampleAt(X);
  SetHighlight(m_anchorSample, 2, true);
}

void uWaveform::ViewMouseMove(std::int16_t Button, std::int16_t Shift, float X, float Y) {
  Raise(events.MouseMove, Button, Shift, X, Y);
  if (!HasLeft(Button) || !m_selecting) return;
  const std::int32_t sample = SampleAt(X);
  if (m_anchorSample < sample)
    SetHighlight(m_anchorSample, sample - m_anchorSample, true);
  else
    SetHighlight(sample, Greater(0, m_anchorSample - sample), true);
}

void uWaveform::ViewMouseUp(std::int16_t Button, std::int16_t Shift, float X, float Y) {
  Raise(events.MouseUp, Button, Shift, X, Y);
  m_selecting = false;
}

void uWaveform::BarMouseDown(std::int16_t Button, std::int16_t Shift, float X, float Y) {
  Raise(events.PositionMouseDown, Button, Shift, X, Y);
  if (!HasLeft(Button) || !PeakFile()) return;
  m_draggingBar = true;
  m_lastBarX = X;
}

void uWaveform::BarMouseMove(std::int16_t Button, std::int16_t Shift, float X, float Y) {
  Raise(events.PositionMouseMove, Button, Shift, X, Y);
  const auto width = static_cast<float>(m_bar->Width());
  if (!HasLeft(Button) || !m_draggingBar || width <= 0 || !(X >= 0 && X <= width)) return;
  const double frames = ToSample(AudioNumberSamples());
  const double shift = (static_cast<double>(X) - m_lastBarX) / width * frames;
  ChangeView(Limit<double>(shift + m_viewStartSample, 1, frames - m_viewNumberSamples), m_viewNumberSamples,
             true);
  m_lastBarX = X;
}

void uWaveform::BarMouseUp(std::int16_t Button, std::int16_t Shift, float X, float Y) {
  Raise(events.PositionMouseUp, Button, Shift, X, Y);
  m_draggingBar = false;
}

}  // namespace qm
