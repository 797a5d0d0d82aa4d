#pragma once
#include <cstdint>
#include <memory>
#include <vector>

#include "kits/common/Event.h"

namespace qm {

class cPeakFile;
class Surface;
struct Point;

enum enDrawWaveType : std::int32_t {
  dwtNormal = 0,  // mirrored round a centre line
  dwtSingle = 1,  // rising from the bottom edge
};

inline constexpr std::int32_t kWaveLineColour = 0xFF0707;
inline constexpr std::int32_t kWaveFillColour = 0xFFC0C0;

// Draws a stretch of a loaded peak file as one filled outline: of each step of points, the largest magnitude
// of the first channel. Host thread only. Memory is taken by the first drawing of a file and kept for the
// others.
class cWaveformRenderer {
 public:
  struct Events {
    Event<> WaveformDrawn;
  } events;

  // As in kits/common/Colours.h.
  std::int32_t LineColour() const { return m_lineColour; }
  void SetLineColour(std::int32_t colour) { m_lineColour = colour; }
  std::int32_t FillColour() const { return m_fillColour; }
  void SetFillColour(std::int32_t colour) { m_fillColour = colour; }

  // Into the area of cx by cy pixels at X, Y. Samples are frames of the audio, from 1; -1 means all of it.
  // Where there is nothing to draw (on), it does nothing and raises no event. The outline is not held to the
  // area: a level line is one row or column beyond it, and with AutoScale so may be what is louder than the
  // loudest channel.
  void DrawWaveform(Surface* hDC, std::int32_t X, std::int32_t Y, std::int32_t cx, std::int32_t cy,
                    enDrawWaveType DrawType, std::int32_t StartSample = -1, std::int32_t NumberSamples = -1);

  const std::shared_ptr<cPeakFile>& PeakFile() const { return m_peakFile; }
  void SetPeakFile(std::shared_ptr<cPeakFile> file) { m_peakFile = std::move(file); }

  // Scales the loudest point of the louder channel to full height. Channels of equal level are left as they
  // are.
  bool AutoScale() const { return m_autoScale; }
  void SetAutoScale(bool scale) { m_autoScale = scale; }

 private:
  struct Area;

  float Scale() const;
  void TraceOutline(const Area& area, std::int32_t channels);

  std::shared_ptr<cPeakFile> m_peakFile;
  std::int32_t m_lineColour = kWaveLineColour;
  std::int32_t m_fillColour = kWaveFillColour;
  bool m_autoScale = false;
  std::vector<std::int16_t> m_samples;
  std::vector<Point> m_outline;
};

}  // namespace qm
