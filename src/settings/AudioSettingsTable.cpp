#include "settings/AudioSettingsTable.h"

#include <limits>
#include <type_traits>

#include "audio/WaveDevices.h"
#include "kits/common/Files.h"
#include "kits/common/Numbers.h"
#include "kits/common/Registry.h"
#include "settings/cAudioSettings.h"

namespace qm {

namespace {

// Defaults that a profile without the key works out: from devices, from other settings, or from a name that
// earlier versions stored and that is never written back.
namespace worked_out {

constexpr std::string (*Constant)(const ProfileLoading&) = nullptr;

std::int32_t OlderNumber(const ProfileLoading& loading, const char* key, std::int32_t fallback) {
  return loading.registry.ReadNumber(loading.path + kPlayersKey, key, fallback);
}

std::string LastInput(const ProfileLoading& loading) {
  return NumberText(FindLastWaveInDevice(loading.devices, kSuitableSampleRate, kSuitableChannels));
}

std::string FirstPlayersDevice(const ProfileLoading& loading) {
  return NumberText(loading.settings.PlayerSoundDevice(1));
}

std::string OlderEjectRule(const ProfileLoading& loading) {
  return NumberText(OlderNumber(loading, "OnlyAllowEjectStoppedCarts", sopFollowPreference));
}

std::string OlderInstantPlayer(const ProfileLoading& loading) {
  return NumberText(OlderNumber(loading, "InstantPlayerNumber", 0));
}

std::string OlderBufferSize(const ProfileLoading& loading) {
  const bool large = OlderNumber(loading, "VellanStreamUseLargeBuffers", 0) != 0;
  return NumberText(static_cast<std::int32_t>(large ? vsbsLarge : vsbsStandard));
}

std::string FoundEditor(const ProfileLoading& loading) {
  return loading.settings.FindAudioEditor();
}

std::string SystemTemporaryFolder(const ProfileLoading&) {
  return TemporaryFolder();
}

// A volume is never below 0, however low the general one.
std::string BelowGeneralVolume(const ProfileLoading& loading) {
  return NumberText(std::int32_t{Greater(loading.settings.GeneralVolume() - 10, 0)});
}

}  // namespace worked_out

template <class T>
T FromText(const std::string& text) {
  if constexpr (std::is_same_v<T, std::string>) {
    return text;
  } else if constexpr (std::is_same_v<T, float>) {
    using Range = std::numeric_limits<float>;
    return static_cast<float>(Limit<double>(ParseNumber(text), Range::lowest(), Range::max()));
  } else if constexpr (std::is_same_v<T, std::int16_t>) {
    using Range = std::numeric_limits<std::int16_t>;
    return static_cast<T>(Limit<std::int32_t>(ParseWhole(text), Range::min(), Range::max()));
  } else {
    return static_cast<T>(ParseWhole(text));  // a flag is true for every number but 0
  }
}

// Of a value or of a default in the table.
template <class T>
std::string ToText(const T& value) {
  if constexpr (std::is_convertible_v<T, std::string>)
    return value;
  else if constexpr (std::is_same_v<T, float>)
    return NumberText(value);
  else
    return NumberText(static_cast<std::int32_t>(value));
}

// A flag is stored as the number that its default has when that is true.
template <class T, class Default>
std::string StoredText(const T& value, const Default& byDefault) {
  if constexpr (std::is_same_v<T, bool>)
    return value ? ToText(byDefault == 0 ? 1 : byDefault) : "0";
  else
    return ToText(value);
}

constexpr SettingRow kRows[] = {
#define QM_SETTING(Name, Kind, Default, SubKey, Key, WorkedOut)                         \
  {SubKey,                                                                              \
   Key,                                                                                 \
   worked_out::WorkedOut,                                                               \
   [] { return ToText(Default); },                                                      \
   [](const cAudioSettings& settings) { return StoredText(settings.Name(), Default); }, \
   [](cAudioSettings& settings, const std::string& text) {                              \
     settings.Set##Name(FromText<audio_setting::Kind>(text));                           \
   }},
#include "settings/cAudioSettingsFields.def"
};

}  // namespace

std::span<const SettingRow> SettingRows() {
  return kRows;
}

}  // namespace qm
