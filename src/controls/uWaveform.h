#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "audio/cWaveformRenderer.h"
#include "kits/common/Colours.h"
#include "kits/draw/Surface.h"

namespace qm {

class cHDItem;
class cPlayer;

// The unit in which the owner hears where the mouse is.
enum enScaleMode : std::int32_t { esmTwips = 1, esmPoints = 2, esmPixels = 3 };

enum enMouseButton : std::int16_t { embLeft = 1, embRight = 2, embMiddle = 4 };

// The view of a waveform: a movable, zoomable part of it with a highlighted selection, an item's markers and
// a cursor that follows a player; above it, where wanted, a thin bar with the whole of it, where the view is
// shown and can be dragged.
//
// Logic over two surfaces, which the host places and shows; host thread only. Samples are frames of the
// audio. Without a peak file nothing is drawn, and calls for view and highlight do nothing. Nothing is
// reported: what cannot be drawn leaves the surface cleared.
class uWaveform {
 public:
  // Surfaces may be shared with the host, and must not be absent. The bar keeps the height that it comes
  // with.
  uWaveform(std::shared_ptr<Surface> view, std::shared_ptr<Surface> bar);
  ~uWaveform();
  uWaveform(const uWaveform&) = delete;
  uWaveform& operator=(const uWaveform&) = delete;

  // Button (of an up or down: the one; of a move: a sum), Shift (keys held), X, Y in units of HostScaleMode.
  using MouseEvent = Event<std::int16_t, std::int16_t, float, float>;
  struct Events {
    Event<> WaveformDrawn;
    MouseEvent PositionMouseDown, PositionMouseUp, PositionMouseMove;  // on the bar
    MouseEvent MouseDown, MouseUp, MouseMove;                          // on the view
    Event<std::int16_t&, std::int16_t> KeyDown;                        // key code, Shift
    Event<std::int16_t&> KeyPress;                                     // character
    Event<std::int16_t&, std::int16_t> KeyUp;
    Event<> HighlightChanged;  // by every SetHighlight and SetPeakFile
    Event<> ViewChanged;       // by every SetView and SetPeakFile
  } events;

  void UpdateDisplay();
  // -1 for none. Where a player is set, shown only while its status is at most psPaused.
  std::int32_t PlayPositionSample() const { return m_playPositionSample; }
  void SetPlayPositionSample(std::int32_t position) { UpdatePlayCursor(position); }
  void Cls() { m_view->Clear(); }
  const std::shared_ptr<cPeakFile>& PeakFile() const { return m_renderer->PeakFile(); }
  const std::shared_ptr<cWaveformRenderer>& WaveformRenderer() const { return m_renderer; }

  // These show at the next UpdateDisplay, the last two at once.
  std::int32_t LineColour() const { return m_renderer->LineColour(); }
  void SetLineColour(std::int32_t colour) { m_renderer->SetLineColour(colour); }
  std::int32_t FillColour() const { return m_renderer->FillColour(); }
  void SetFillColour(std::int32_t colour) { m_renderer->SetFillColour(colour); }
  std::int32_t BackColor() const { return m_backColor; }
  void SetBackColor(std::int32_t colour);
  bool AutoScale() const { return m_renderer->AutoScale(); }
  void SetAutoScale(bool scale) { m_renderer->SetAutoScale(scale); }
  enDrawWaveType DrawType() const { return m_drawType; }
  void SetDrawType(enDrawWaveType type) { m_drawType = type; }
  bool ShowPositionBar() const { return m_showPositionBar; }
  void SetShowPositionBar(bool show);
  std::int32_t BorderStyle() const { return m_borderStyle; }  // 0: none
  void SetBorderStyle(std::int32_t style);

  void SetPeakFile(std::shared_ptr<cPeakFile> PeakFile, bool AutoUpdateDisplay);
  void SetHDItem(std::shared_ptr<cHDItem> HDItem, bool AutoUpdateDisplay);

  // The view. Setting it limits it to the audio, in the arguments too; it is never shorter than 2 samples.
  std::int32_t StartSample() const { return m_viewStartSample; }
  std::int32_t NumberSamples() const { return m_viewNumberSamples; }
  void SetView(std::int32_t& StartSample, std::int32_t& NumberSamples, bool AutoUpdateDisplay);
  void ZoomIn(bool AutoUpdateDisplay);  // until there are ten pixels a point
  void ZoomOut(bool AutoUpdateDisplay);
  void ZoomToSelection(bool AutoUpdateDisplay);  // limits the highlight as it does the view
  void ZoomToSelectionStart(bool AutoUpdateDisplay);
  void ZoomToSelectionEnd(bool AutoUpdateDisplay);

  // The highlight. It may lie outside the audio; its seconds are limited to it, and 0 without a peak file.
  float HighlightStartSeconds() const { return HighlightSeconds(m_highlightStartSample); }
  std::int32_t HighlightStartSample() const { return m_highlightStartSample; }
  float HighlightNumberSeconds() const { return HighlightSeconds(m_highlightNumberSamples); }
  std::int32_t HighlightNumberSamples() const { return m_highlightNumberSamples; }
  void SetHighlight(std::int32_t StartSample, std::int32_t NumberSamples, bool AutoUpdateDisplay);
  void SetHighlightSeconds(float StartPosition, float SelectedLength, bool AutoUpdateDisplay);

  const std::shared_ptr<cPlayer>& Player() const { return m_player; }
  void SetPlayer(std::shared_ptr<cPlayer> player);

  // From here on for the host that carries the control.

  // Lays the surfaces out in an area of that size and draws them.
  void Resize(std::int32_t width, std::int32_t height);
  // Where they lie in it; the bar's is empty while it is not shown.
  Rect ViewPlace() const { return m_viewPlace; }
  Rect BarPlace() const { return m_barPlace; }

  enScaleMode HostScaleMode() const { return m_hostScaleMode; }
  void SetHostScaleMode(enScaleMode mode) { m_hostScaleMode = mode; }

  // What the mouse does on a surface, in its pixels. Raised to the owner first.
  void ViewMouseDown(std::int16_t Button, std::int16_t Shift, float X, float Y);
  void ViewMouseMove(std::int16_t Button, std::int16_t Shift, float X, float Y);
  void ViewMouseUp(std::int16_t Button, std::int16_t Shift, float X, float Y);
  void BarMouseDown(std::int16_t Button, std::int16_t Shift, float X, float Y);
  void BarMouseMove(std::int16_t Button, std::int16_t Shift, float X, float Y);
  void BarMouseUp(std::int16_t Button, std::int16_t Shift, float X, float Y);
  void PressKeyDown(std::int16_t& KeyCode, std::int16_t Shift) { events.KeyDown(KeyCode, Shift); }
  void PressKey(std::int16_t& KeyAscii) { events.KeyPress(KeyAscii); }
  void PressKeyUp(std::int16_t& KeyCode, std::int16_t Shift) { events.KeyUp(KeyCode, Shift); }

 private:
  struct Span;

  double AudioNumberSamples() const;
  double ViewEnd() const { return static_cast<double>(m_viewStartSample) + m_viewNumberSamples; }
  float HighlightSeconds(std::int32_t samples) const;
  std::int32_t SampleAt(float x) const;
  void ChangeView(double start, double number, bool update);
  void Raise(const MouseEvent& event, std::int16_t button, std::int16_t shift, float x, float y) const;

  Span OnView(double startSample, double endSample) const;
  Span OnBar(double startSample, double endSample) const;
  void DrawHighlight();
  void DrawMarkers();
  void DrawViewOnBar();
  void UpdatePlayCursor(std::int32_t position);
  void HearPlayer(std::int32_t event, float seconds);

  std::shared_ptr<Surface> m_view, m_bar;
  const std::int32_t m_barHeight;
  const std::shared_ptr<cWaveformRenderer> m_renderer = std::make_shared<cWaveformRenderer>();
  std::shared_ptr<cHDItem> m_item;
  std::shared_ptr<cPlayer> m_player;
  Event<>::Connection m_playerWire;

  std::int32_t m_backColor = kButtonFaceColour;
  enDrawWaveType m_drawType = dwtNormal;
  bool m_showPositionBar = true;
  std::int32_t m_borderStyle = 1;
  enScaleMode m_hostScaleMode = esmTwips;
  std::int32_t m_width = 0, m_height = 0;
  Rect m_viewPlace, m_barPlace;

  std::int32_t m_viewStartSample = 0, m_viewNumberSamples = 0;
  std::int32_t m_highlightStartSample = 0, m_highlightNumberSamples = 0;
  std::int32_t m_anchorSample = 0;
  bool m_selecting = false;
  bool m_draggingBar = false;
  float m_lastBarX = 0;
  std::int32_t m_playPositionSample = -1;
};

}  // namespace qm
