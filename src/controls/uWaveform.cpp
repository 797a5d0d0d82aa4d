#include "controls/uWaveform.h"

#include "audio/cPeakFile.h"
#include "controls/WaveformUnits.h"
#include "item/cHDItem.h"
#include "kits/common/Numbers.h"
#include "kits/sound/cAudioFormat.h"
#include "playback/cPlayer.h"

namespace qm {

uWaveform::~uWaveform() {
  m_playerWire.disconnect();
}

double uWaveform::AudioNumberSamples() const {
  return PeakFile() ? PeakFile()->Header().AudioNumberSamples : 0;
}

void uWaveform::SetBackColor(std::int32_t colour) {
  m_backColor = colour;
  m_view->SetBackColour(colour);
  m_bar->SetBackColour(colour);
}

void uWaveform::SetShowPositionBar(bool show) {
  m_showPositionBar = show;
  Resize(m_width, m_height);
}

void uWaveform::SetBorderStyle(std::int32_t style) {
  m_borderStyle = style;
  Resize(m_width, m_height);
}

void uWaveform::SetPeakFile(std::shared_ptr<cPeakFile> PeakFile, bool AutoUpdateDisplay) {
  m_renderer->SetPeakFile(std::move(PeakFile));
  if (this->PeakFile()) {
    m_bar->SetMousePointer(empCustom);
    m_viewStartSample = 1;
    m_viewNumberSamples = ToSample(AudioNumberSamples());
  }
  if (AutoUpdateDisplay) UpdateDisplay();
  if (!this->PeakFile()) m_bar->SetMousePointer(empDefault);
  events.ViewChanged();
  events.HighlightChanged();
}

void uWaveform::SetHDItem(std::shared_ptr<cHDItem> HDItem, bool AutoUpdateDisplay) {
  m_item = std::move(HDItem);
  if (AutoUpdateDisplay) UpdateDisplay();
}

void uWaveform::SetView(std::int32_t& StartSample, std::int32_t& NumberSamples, bool AutoUpdateDisplay) {
  if (!PeakFile()) return;
  const double all = AudioNumberSamples();
  StartSample = ToSample(Limit<double>(StartSample, 0, all));
  NumberSamples = ToSample(Limit<double>(NumberSamples, 2, all - StartSample));
  m_viewStartSample = StartSample;
  m_viewNumberSamples = Greater(2, NumberSamples);
  if (AutoUpdateDisplay) UpdateDisplay();
  events.ViewChanged();
}

void uWaveform::ChangeView(double start, double number, bool update) {
  std::int32_t startSample = ToSample(start), numberSamples = ToSample(number);
  SetView(startSample, numberSamples, update);
}

void uWaveform::ZoomIn(bool AutoUpdateDisplay) {
  constexpr double kWidestPoint = 10;
  if (!PeakFile()) return;
  const double interval = Greater(1, PeakFile()->Header().SamplingInterval);
  if (m_view->Width() / kWidestPoint >= m_viewNumberSamples / interval) return;
  ChangeView(m_viewStartSample + m_viewNumberSamples / 4.0, m_viewNumberSamples / 2.0, AutoUpdateDisplay);
}

void uWaveform::ZoomOut(bool AutoUpdateDisplay) {
  ChangeView(m_viewStartSample - m_viewNumberSamples / 2.0, m_viewNumberSamples * 2.0, AutoUpdateDisplay);
}

void uWaveform::ZoomToSelection(bool AutoUpdateDisplay) {
  if (m_highlightNumberSamples > 2)
    SetView(m_highlightStartSample, m_highlightNumberSamples, AutoUpdateDisplay);
}

void uWaveform::ZoomToSelectionStart(bool AutoUpdateDisplay) {
  ChangeView(m_highlightStartSample - m_viewNumberSamples / 4.0, m_viewNumberSamples / 2.0,
             AutoUpdateDisplay);
}

void uWaveform::ZoomToSelectionEnd(bool AutoUpdateDisplay) {
  if (m_highlightNumberSamples <= 2) return;
  const double end = static_cast<double>(m_highlightStartSample) + m_highlightNumberSamples;
  ChangeView(end - m_viewNumberSamples / 4.0, m_viewNumberSamples / 2.0, AutoUpdateDisplay);
}

float uWaveform::HighlightSeconds(std::int32_t samples) const {
  const std::int32_t rate = PeakFile() ? PeakFile()->Header().AudioSampleRate : 0;
  if (rate <= 0) return 0;
  return static_cast<float>(Limit<double>(samples, 0, AudioNumberSamples()) / rate);
}

void uWaveform::SetHighlight(std::int32_t StartSample, std::int32_t NumberSamples, bool AutoUpdateDisplay) {
  if (!PeakFile()) return;
  m_highlightStartSample = Greater(0, StartSample);
  m_highlightNumberSamples = Greater(0, NumberSamples);
  if (AutoUpdateDisplay) UpdateDisplay();
  events.HighlightChanged();
}

void uWaveform::SetHighlightSeconds(float StartPosition, float SelectedLength, bool AutoUpdateDisplay) {
  if (!PeakFile()) return;
  const double rate = PeakFile()->Header().AudioSampleRate;
  SetHighlight(ToSample(StartPosition * rate), ToSample(SelectedLength * rate), AutoUpdateDisplay);
}

void uWaveform::SetPlayer(std::shared_ptr<cPlayer> player) {
  m_playerWire.disconnect();
  m_player = std::move(player);
  if (!m_player) return;
  m_playerWire = m_player->events.PlayerEvent.connect([this](std::int32_t event, std::string&, float& sValue1,
                                                             float&, std::string&,
                                                             std::string&) { HearPlayer(event, sValue1); });
}

void uWaveform::HearPlayer(std::int32_t event, float seconds) {
  if (!m_item) return;
  if (event == peCued || event == peClosed) UpdatePlayCursor(-1);
  if (event == pePositionChanged)
    UpdatePlayCursor(ToSample(static_cast<double>(seconds) * m_item->AudioFormat()->SampleRate()));
}

}  // namespace qm
