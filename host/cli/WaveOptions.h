#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "audio/cWaveformRenderer.h"
#include "cli/Command.h"
#include "cli/ItemArgument.h"
#include "kits/common/Colours.h"

namespace qm {
class uWaveform;
}

namespace qm::cli {

struct WaveOptions {
  ItemArgument item;
  std::string png;
  std::int32_t width = 1920, height = 200;  // pixels
  std::optional<double> start, end, position;
  std::optional<std::pair<double, double>> highlight;  // seconds
  std::int32_t zoomIns = 0;
  void (uWaveform::*zoom)(bool) = nullptr;  // to the highlight, before them
  std::int32_t lineColour = kWaveLineColour, fillColour = kWaveFillColour, backColour = kButtonFaceColour;
  enDrawWaveType drawType = dwtNormal;
  bool autoScale = false;
  bool noBar = false;
  enPrinting printing = epForPeople;
};

// Draws the picture; the exit status.
std::int32_t Wave(const WaveOptions& options);

}  // namespace qm::cli
