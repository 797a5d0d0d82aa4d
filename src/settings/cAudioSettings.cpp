#include "settings/cAudioSettings.h"

#include "kits/common/Files.h"
#include "kits/common/Numbers.h"
#include "kits/sound/Platform.h"
#include "kits/sound/SoundSystem.h"
#include "kits/sound/cAudioFormat.h"
#include "services/Diagnostics.h"
#include "settings/AudioEditors.h"

namespace qm {

namespace {

// One for each function key that plays.
constexpr std::int16_t kMaxPlayersAtFirst = 16;

}  // namespace

cAudioSettings::cAudioSettings(std::shared_ptr<const Platform> platform,
                               std::shared_ptr<const SoundDeviceList> devices)
    : m_players(kMaxPlayersAtFirst),
      m_audioFormat(std::make_shared<cAudioFormat>()),
      m_platform(platform ? std::move(platform) : DefaultPlatform()),
      m_devices(devices ? std::move(devices) : m_platform->sound) {
  SetEditorTemporaryPath(TemporaryFolder());
}

cAudioSettings::~cAudioSettings() = default;

void cAudioSettings::SetNumberPlayers(std::int16_t value) {
  m_NumberPlayers = Limit(value, std::int16_t{-1}, MaxPlayers());
}

void cAudioSettings::SetEditorTemporaryPath(std::string value) {
  if (!value.empty() && value.back() != '/' && value.back() != '\\') value += '/';
  m_EditorTemporaryPath = std::move(value);
}

std::string cAudioSettings::FindAudioEditor() const {
  WriteDebug("Start FindAudioEditor", 5, ednOpens);
  const std::string found = FindInstalledAudioEditor(*m_platform->registry);
  Trace(5, ednCloses, "Finish FindAudioEditor - ", found);
  return found;
}

bool cAudioSettings::DisplaySettings(enASDispSetflags flags) {
  return dialogs.settings && dialogs.settings(*this, flags);
}

bool cAudioSettings::DisplayVellanSettings() {
  return dialogs.vellanSettings && dialogs.vellanSettings(*this);
}

std::int32_t cAudioSettings::DebugMode() const {
  return qm::DebugMode();
}
void cAudioSettings::SetDebugMode(std::int32_t mode) {
  qm::SetDebugMode(mode);
}

void cAudioSettings::SetMaxPlayers(std::int16_t number) {
  if (number < 0) return;
  m_players.resize(static_cast<std::size_t>(number));
  SetNumberPlayers(NumberPlayers());
  for (Player& player : m_players)
    if (player.caption.empty()) player.visible = true;
}

bool cAudioSettings::HasPlayer(std::int32_t index) const {
  return index >= 1 && index <= std::ssize(m_players);
}

const cAudioSettings::Player& cAudioSettings::PlayerAt(std::int32_t index) const {
  static const Player none{0, "", false, false};
  return HasPlayer(index) ? m_players[static_cast<std::size_t>(index - 1)] : none;
}

void cAudioSettings::SetPlayerSoundDevice(std::int32_t index, std::int32_t device) {
  if (HasPlayer(index)) m_players[static_cast<std::size_t>(index - 1)].soundDevice = device;
}

void cAudioSettings::SetPlayerCaption(std::int32_t index, const std::string& caption) {
  if (HasPlayer(index)) m_players[static_cast<std::size_t>(index - 1)].caption = caption;
}

void cAudioSettings::SetPlayerVisible(std::int32_t index, bool visible) {
  if (HasPlayer(index)) m_players[static_cast<std::size_t>(index - 1)].visible = visible;
}

void cAudioSettings::SetPlayerVisibleTemp(std::int32_t index, bool visible) {
  if (HasPlayer(index)) m_players[static_cast<std::size_t>(index - 1)].visibleTemp = visible;
}

std::int16_t cAudioSettings::NumberVisiblePlayers(bool IncludeTempVisible) const {
  std::int16_t visible = 0;
  for (std::int32_t index = 1; index <= NumberPlayers(); ++index)
    if (PlayerVisible(index) || (IncludeTempVisible && PlayerVisibleTemp(index))) ++visible;
  return visible;
}

}  // namespace qm
