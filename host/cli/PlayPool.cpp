#include "cli/PlayPool.h"

#include "cli/Failure.h"
#include "cli/PlaySound.h"
#include "kits/common/Clock.h"
#include "kits/common/MessageBox.h"
#include "kits/common/Registry.h"
#include "kits/common/Text.h"
#include "kits/sound/Platform.h"
#include "kits/sound/engine/AudioEngine.h"
#include "playback/cPlayer.h"
#include "playback/cPlayers.h"
#include "settings/cAudioSettings.h"

namespace qm::cli {

namespace {

constexpr char kProfiles[] = "SOFTWARE\\Quillmere\\AudioSettings\\Profiles";
constexpr char kDefaultProfile[] = ".default";
constexpr std::int16_t kPlayersWithoutProfile = 4;  // all that the function keys reach without shift

bool ProfileIsStored(const Registry& registry, const std::string& profile) {
  for (const std::string& name : registry.SubKeys(kProfiles))
    if (EqualIgnoringCase(name, profile.empty() ? kDefaultProfile : profile)) return true;
  return false;
}

// Settings look the devices over, which takes time. That is left out where they have nothing to say about
// them: the default device is played to then.
std::shared_ptr<cAudioSettings> LoadSettings(const std::shared_ptr<const Platform>& platform,
                                             const PlayPool::Wishes& wishes) {
  const bool stored = ProfileIsStored(*platform->registry, wishes.profile);
  std::shared_ptr<const SoundDeviceList> devices = platform->sound;
  if (wishes.deviceNumber >= 0 || !stored)
    devices = std::make_shared<FixedSoundDeviceList>(std::vector<SoundDevice>{}, std::vector<SoundDevice>{});
  auto settings = std::make_shared<cAudioSettings>(platform, devices);
  settings->LoadProfile(wishes.profile);
  std::int16_t players = wishes.players;
  if (players < 1) players = stored ? settings->NumberPlayers() : kPlayersWithoutProfile;
  if (settings->MaxPlayers() < players) settings->SetMaxPlayers(players);
  settings->SetNumberPlayers(players);
  if (wishes.volume) settings->SetGeneralVolume(*wishes.volume);
  for (std::int16_t number = 1; number <= settings->NumberPlayers() && wishes.deviceNumber >= 0; ++number)
    settings->SetPlayerSoundDevice(number, wishes.deviceNumber);
  return settings;
}

}  // namespace

PlayPool::PlayPool(std::shared_ptr<AudioEngine> engine, const Wishes& wishes)
    : tell(TellFailure),
      m_engine(std::move(engine)),
      m_sound(std::make_shared<PlaySound>(m_engine)),
      m_platform(
          std::make_shared<Platform>(Platform{SystemClock(), UserRegistry(), ConsoleMessageBox(), m_sound})),
      m_settings(LoadSettings(m_platform, wishes)),
      m_players(std::make_shared<cPlayers>(m_platform)) {
  m_sound->onError = [this](std::int32_t number, const std::string& text) { HearError(number, text); };
  m_players->events.PlayerEvent.connect([this](std::int16_t player, std::int32_t event,
                                               std::string& hdReference, float& sValue1, float& sValue2,
                                               std::string& strValue1, std::string& strValue2) {
    const HeardEvent heard{
        m_engine->Frame(), m_engine->FrameRate(), player, event, hdReference, sValue1, sValue2, strValue1,
        strValue2};
    for (PlayObserver* observer : m_observers) observer->Hear(heard);
    if (act) act(heard);
  });
  m_players->SetAudioSettings(m_settings);
}

PlayPool::~PlayPool() {
  Terminate();
}

void PlayPool::Terminate() {
  m_players->Terminate();
}

cPlayer& PlayPool::Player(std::int16_t number) const {
  return *m_players->Player(number);
}

// A player of its own tells its errors by events.
void PlayPool::HearError(std::int32_t number, const std::string& text) {
  const auto first = m_players->Player(1);
  if (first && first->ListMode() && onListError) onListError(number, text);
}

}  // namespace qm::cli
