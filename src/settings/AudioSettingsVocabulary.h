#pragma once
#include <cstdint>
#include <string>

// The words in which a station's audio settings are given.
namespace qm {

enum enVSBufferSize : std::int32_t { vsbsStandard = 0, vsbsExtended = 1, vsbsLarge = 2 };

enum enPlayerDisplayAlignment : std::int32_t { pdaBottom = 0, pdaTop = 1 };

// A setting that may leave the choice to the user's own preference.
enum enSettingOrPreference : std::int32_t { sopDisabled = 0, sopEnabled = 1, sopFollowPreference = 255 };

// What the settings dialog shows, as a sum.
enum enASDispSetflags : std::int32_t {
  adsfNormal = 0,
  adsfShowGlobalFormatOptions = 1,
  adsfShowSimpleVolumes = 2,
  adsfDisableAutoAssign = 4,
};

constexpr enASDispSetflags operator|(enASDispSetflags first, enASDispSetflags second) {
  return static_cast<enASDispSetflags>(static_cast<std::int32_t>(first) | static_cast<std::int32_t>(second));
}

// What the kinds in the table of settings are in C++.
namespace audio_setting {
using Flag = bool;
using Whole16 = std::int16_t;
using Whole32 = std::int32_t;
using Single = float;
using Text = std::string;
using EjectRule = enSettingOrPreference;
using BufferSize = enVSBufferSize;
using Alignment = enPlayerDisplayAlignment;
}  // namespace audio_setting

}  // namespace qm
