#include "cli/PlaySound.h"

#include "kits/sound/ctlVellanPlayer.h"
#include "kits/sound/record/RecordingControl.h"

namespace qm::cli {

PlaySound::PlaySound(std::shared_ptr<SoundSystem> sound) : m_sound(std::move(sound)) {}

std::unique_ptr<ctlVellanPlayer> PlaySound::CreatePlayer() {
  if (onTrace) m_sound->onTrace = onTrace;
  m_sound->SetStreamDebugMode(StreamDebugMode());
  auto player = m_sound->CreatePlayer();
  if (player)
    player->events.Error.connect([this](std::int32_t number, const std::string& text) {
      if (onError) onError(number, text);
    });
  return player;
}

}  // namespace qm::cli
