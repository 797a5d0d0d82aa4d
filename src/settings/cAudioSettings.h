#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "settings/AudioSettingsVocabulary.h"

namespace qm {

class cAudioFormat;
class SoundDeviceList;
struct Platform;

// One station's audio configuration: players and their sound devices, volumes, display options, the audio
// editor and the default recording format, kept in the registry profile by profile. Host thread only.
//
// Players count from 1 to MaxPlayers; a bad index reads as 0, "" or false and writes nothing. Sound devices
// count the outputs (for recording, the inputs) from 1, 0 is the default one. Volumes are per cent.
class cAudioSettings {
 public:
  // Null means the real platform, and its own sound devices.
  explicit cAudioSettings(std::shared_ptr<const Platform> platform = nullptr,
                          std::shared_ptr<const SoundDeviceList> devices = nullptr);
  ~cAudioSettings();
  cAudioSettings(const cAudioSettings&) = delete;
  cAudioSettings& operator=(const cAudioSettings&) = delete;

  // X() and SetX(value) of every setting in the table.
#define QM_SETTING(Name, Kind, ...)           \
  audio_setting::Kind Name() const {          \
    return m_##Name;                          \
  }                                           \
  void Set##Name(audio_setting::Kind value) { \
    m_##Name = std::move(value);              \
  }
#define QM_SETTING_OWN_SET(Name, Kind, ...) \
  audio_setting::Kind Name() const {        \
    return m_##Name;                        \
  }                                         \
  void Set##Name(audio_setting::Kind value);
#define QM_SETTING_APART QM_SETTING
#include "settings/cAudioSettingsFields.def"
  // NumberPlayers is -1 while it was never set, which a profile then takes to mean all suitable devices; it
  // never exceeds MaxPlayers. EditorTemporaryPath ends in a separator unless it is empty.

  // Replaces the settings by those of a profile; an empty name means ".default". Where the profile wants
  // automatic assignment, players' devices come from the names of the sound cards found, which may show a
  // message.
  void LoadProfile(const std::string& ProfileName);
  // False when something could not be stored.
  bool SaveProfile(const std::string& ProfileName) const;

  // The first known audio editor that is installed, "" for none.
  std::string FindAudioEditor() const;

  // The library has no screen of its own: a host that has one puts its dialogs here. Each gets the settings
  // to edit and returns whether the user confirmed.
  struct Dialogs {
    std::function<bool(cAudioSettings& settings, enASDispSetflags flags)> settings;
    std::function<bool(cAudioSettings& settings)> vellanSettings;
  } dialogs;
  // False without a dialog.
  bool DisplaySettings(enASDispSetflags flags);
  bool DisplayVellanSettings();

  // The default recording format; never absent.
  std::shared_ptr<cAudioFormat> AudioFormat() const {
    return m_audioFormat;
  }

  // The level of the library's diagnostics.
  std::int32_t DebugMode() const;
  void SetDebugMode(std::int32_t mode);

  // The size of the players' tables. Resizing keeps what stands in them, lowers NumberPlayers to the new size
  // and makes every player without a caption visible. A negative size is ignored.
  std::int16_t MaxPlayers() const {
    return static_cast<std::int16_t>(m_players.size());
  }
  void SetMaxPlayers(std::int16_t number);

  std::int32_t PlayerSoundDevice(std::int32_t index) const {
    return PlayerAt(index).soundDevice;
  }
  void SetPlayerSoundDevice(std::int32_t index, std::int32_t device);
  std::string PlayerCaption(std::int32_t index) const {
    return PlayerAt(index).caption;
  }
  void SetPlayerCaption(std::int32_t index, const std::string& caption);
  bool PlayerVisible(std::int32_t index) const {
    return PlayerAt(index).visible;
  }
  void SetPlayerVisible(std::int32_t index, bool visible);
  // Shown for the time being; not part of a profile.
  bool PlayerVisibleTemp(std::int32_t index) const {
    return PlayerAt(index).visibleTemp;
  }
  void SetPlayerVisibleTemp(std::int32_t index, bool visible);
  std::int16_t NumberVisiblePlayers(bool IncludeTempVisible) const;

 private:
  struct Player {
    std::int32_t soundDevice = 0;
    std::string caption;
    bool visible = true;
    bool visibleTemp = false;
  };

  bool HasPlayer(std::int32_t index) const;
  const Player& PlayerAt(std::int32_t index) const;

#define QM_SETTING(Name, Kind, Default, ...) audio_setting::Kind m_##Name = Default;
#define QM_SETTING_APART QM_SETTING
#include "settings/cAudioSettingsFields.def"
  std::vector<Player> m_players;
  std::shared_ptr<cAudioFormat> m_audioFormat;
  std::shared_ptr<const Platform> m_platform;
  std::shared_ptr<const SoundDeviceList> m_devices;
};

}  // namespace qm
