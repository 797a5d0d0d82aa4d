#pragma once
#include <cstdint>
#include <span>
#include <string>

// The table of plain settings as data, for loading and saving.
namespace qm {

class cAudioSettings;
class Registry;
class SoundDeviceList;

// What players and recorders need of a sound device.
inline constexpr std::int32_t kSuitableSampleRate = 44100;
inline constexpr std::int32_t kSuitableChannels = 2;

// Keys of a profile, behind its own path.
inline constexpr char kPlayersKey[] = "\\Players";
inline constexpr char kAudioFormatKey[] = "\\AudioFormat";

// A profile being loaded, the settings as far as they are, and the devices found.
struct ProfileLoading {
  const Registry& registry;
  std::string path;
  const cAudioSettings& settings;
  const SoundDeviceList& devices;
};

struct SettingRow {
  const char* subKey;
  const char* key;
  std::string (*workedOut)(const ProfileLoading& loading);  // the default; absent: defaultText
  std::string (*defaultText)();
  std::string (*text)(const cAudioSettings& settings);
  void (*set)(cAudioSettings& settings, const std::string& text);  // through the property
};

// In the order of loading.
std::span<const SettingRow> SettingRows();

}  // namespace qm
