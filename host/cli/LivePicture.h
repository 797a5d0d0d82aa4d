#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "contract/PlayerVocabulary.h"
#include "kits/sound/engine/AudioEngine.h"

namespace qm::cli {

// Everything that the live view shows. Times are seconds from the start of the file.
struct LiveState {
  std::string title;
  std::string format;
  std::size_t item = 0, items = 0;
  enPlayerStatus status = psClosed;
  enPlayerSection section = epsEmpty;
  float position = 0, remaining = 0, remainingExtro = 0;
  float audioStart = 0, introStart = 0, introEnd = 0, extro = 0, audioEnd = 0;
  bool inLoop = false, fading = false;
  bool isList = false;  // all times are the list's
  std::int16_t volume = 0;
  std::int16_t left = 0, right = 0;  // signed 16-bit peaks
  AudioEngine::Misses misses;
};

// The picture, line by line, none wider than `width` cells. Without `unicode` in ASCII alone.
std::vector<std::string> DrawLive(const LiveState& state, std::size_t width, bool unicode);

// A bar for a peak, by decibels.
std::string MeterBar(std::int16_t peak, std::size_t cells, bool unicode);

const char* StatusWords(enPlayerStatus status);
const char* SectionWords(enPlayerSection section);

}  // namespace qm::cli
