// Loading cAudioSettings from a profile and saving it to one.
#include "audio/WaveDevices.h"
#include "kits/common/MessageBox.h"
#include "kits/common/Numbers.h"
#include "kits/common/Registry.h"
#include "kits/sound/Platform.h"
#include "kits/sound/SoundSystem.h"
#include "kits/sound/cAudioFormat.h"
#include "services/Diagnostics.h"
#include "settings/AudioSettingsTable.h"
#include "settings/DeviceAssignment.h"
#include "settings/cAudioSettings.h"

namespace qm {

namespace {

constexpr char kPortsMessage[] =
    "An Edirol UA-101 has been detected, but it is not set to use 'Separated Ports'";
constexpr char kPortsAdvice[] =
    "Please open the Edirol Control Panel and click 'Driver Menu'>Driver Settings'>'Use Separated Ports' and "
    "then "
    "restart this application";

std::string ProfilePath(const std::string& name) {
  return "SOFTWARE\\Quillmere\\AudioSettings\\Profiles\\" + (name.empty() ? ".default" : name);
}

std::string Indexed(const char* key, std::int32_t index) {
  return key + NumberText(index);
}

// The devices at hand when loading began: asking the platform again might count differently.
FixedSoundDeviceList Snapshot(const SoundDeviceList* devices) {
  if (!devices) return {{}, {}};
  return {devices->Outputs(), devices->Inputs()};
}

std::vector<std::int32_t> SuitableDevices(const SoundDeviceList& devices) {
  std::vector<std::int32_t> found;
  for (std::int32_t device = 0;;) {
    device = FindWaveOutDevice(devices, kSuitableSampleRate, kSuitableChannels, device);
    if (device == 0) return found;
    found.push_back(device);
  }
}

// The device that falls to a player when players take the suitable ones in order. More players than devices
// share them from the first again; with no device at all every player has the default one.
std::int32_t DeviceInOrder(const std::vector<std::int32_t>& suitable, std::int32_t player) {
  return suitable.empty() ? 0 : suitable[static_cast<std::size_t>(player - 1) % suitable.size()];
}

void LoadRow(const SettingRow& row, const ProfileLoading& loading, cAudioSettings& settings) {
  const auto stored = loading.registry.Read(loading.path + row.subKey, row.key);
  row.set(settings, stored ? *stored : row.workedOut ? row.workedOut(loading) : row.defaultText());
}

// Devices by the cards' names; players about which these say nothing keep what they have.
void AssignAutomatically(const SoundDeviceList& devices, const std::vector<std::int32_t>& suitable,
                         MessageBox& messageBox, cAudioSettings& settings) {
  std::vector<std::string> names;
  for (const SoundDevice& device : devices.Outputs()) names.push_back(device.name);
  const auto found = static_cast<std::int32_t>(suitable.size());
  Trace(5, ednPlain, "Number Suitable Wave Out Devices=", found);
  const DeviceAssignment assigned = AssignDevices(names, settings.NumberPlayers(), settings.MaxPlayers());
  Trace(5, ednPlain,
        "Checked Number Suitable Wave Out Devices=", assigned.cardType ? assigned.devicesCounted : found);
  settings.SetNumberPlayers(assigned.numberPlayers);
  for (std::int32_t player = 1; player <= settings.MaxPlayers(); ++player) {
    const std::int32_t device = assigned.cardType == 0
                                    ? DeviceInOrder(suitable, player)
                                    : assigned.deviceOfPlayer[static_cast<std::size_t>(player - 1)];
    if (device != 0 || assigned.cardType == 0) settings.SetPlayerSoundDevice(player, device);
  }
  if (assigned.portsNotSeparated)
    messageBox.Show(std::string(kPortsMessage) + "\n\n" + kPortsAdvice, mbsExclamation, "Quillmere");
}

void LoadPlayers(const ProfileLoading& loading, MessageBox& messageBox, cAudioSettings& settings) {
  const Registry& registry = loading.registry;
  const std::string path = loading.path + kPlayersKey;
  const std::vector<std::int32_t> suitable = SuitableDevices(loading.devices);
  for (std::int32_t player = 1; player <= settings.MaxPlayers(); ++player) {
    settings.SetPlayerSoundDevice(player, registry.ReadNumber(path, Indexed("PlayerSoundDevice", player),
                                                              DeviceInOrder(suitable, player)));
    settings.SetPlayerCaption(player, registry.ReadText(path, Indexed("Caption", player), ""));
    settings.SetPlayerVisible(player, registry.ReadNumber(path, Indexed("Visible", player), 1) != 0);
  }
  const std::int16_t number = settings.NumberPlayers();
  if (settings.AutomaticPlayerAssignment() && (number >= 1 || number == -1))
    AssignAutomatically(loading.devices, suitable, messageBox, settings);
  if (settings.NumberPlayers() != -1) return;
  // A computer whose sound card is not there yet still gets a player, on the default device.
  const std::int32_t wanted =
      Limit<std::int32_t>(static_cast<std::int32_t>(suitable.size()), 1, settings.MaxPlayers());
  settings.SetNumberPlayers(static_cast<std::int16_t>(wanted));
}

}  // namespace

void cAudioSettings::LoadProfile(const std::string& ProfileName) {
  Trace(5, ednOpens, "Start LoadProfile ", ProfileName);
  const FixedSoundDeviceList devices = Snapshot(m_devices.get());
  const Registry& registry = *m_platform->registry;
  const ProfileLoading loading{registry, ProfilePath(ProfileName), *this, devices};
  // First what stands for itself, then players' devices, which need it, then what is worked out from either.
  for (const SettingRow& row : SettingRows())
    if (!row.workedOut) LoadRow(row, loading, *this);
  LoadPlayers(loading, *m_platform->messageBox, *this);
  for (const SettingRow& row : SettingRows())
    if (row.workedOut) LoadRow(row, loading, *this);

  const std::string format = registry.ReadText(loading.path + kAudioFormatKey, "Serialisation", "");
  if (!format.empty()) {
    m_audioFormat->SetSerialisedFormat(format);
    m_AudioAllowOtherFormat = registry.ReadNumber(loading.path + kAudioFormatKey, "AllowOtherFormat", 0) != 0;
  }
  const std::int32_t swept = m_UsePlayerDucking
                                 ? m_GeneralVolume
                                 : registry.ReadNumber(loading.path + kPlayersKey, "SweptVolume", 100);
  m_SweptAudioVolume = static_cast<std::int16_t>(Limit(swept, -32768, 32767));
  WriteDebug("Finish LoadProfile", 5, ednCloses);
}

bool cAudioSettings::SaveProfile(const std::string& ProfileName) const {
  Trace(5, ednOpens, "Start SaveProfile ", ProfileName);
  Registry& registry = *m_platform->registry;
  const std::string path = ProfilePath(ProfileName);
  const std::string players = path + kPlayersKey, format = path + kAudioFormatKey;
  bool stored = true;
  const auto write = [&](const std::string& key, const std::string& name, const std::string& value) {
    stored = registry.Write(key, name, value) && stored;
  };
  registry.BeginChanges();
  for (const SettingRow& row : SettingRows()) write(path + row.subKey, row.key, row.text(*this));
  for (std::int32_t player = 1; player <= NumberPlayers(); ++player) {
    write(players, Indexed("PlayerSoundDevice", player), NumberText(PlayerSoundDevice(player)));
    write(players, Indexed("Caption", player), PlayerCaption(player));
    write(players, Indexed("Visible", player), PlayerVisible(player) ? "1" : "0");
  }
  write(format, "Serialisation", m_audioFormat->SerialisedFormat());
  write(format, "AllowOtherFormat", m_AudioAllowOtherFormat ? "1" : "0");
  // While ducking is in use the swept volume is the general one; a stored one would only mislead.
  if (m_UsePlayerDucking)
    stored = registry.Delete(players, "SweptVolume") && stored;
  else
    write(players, "SweptVolume", NumberText(std::int32_t{m_SweptAudioVolume}));
  stored = registry.EndChanges() && stored;
  Trace(5, ednCloses, "Finish SaveProfile - ", stored ? "stored" : "not stored");
  return stored;
}

}  // namespace qm
