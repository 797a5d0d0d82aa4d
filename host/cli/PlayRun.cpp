#include "cli/PlayRun.h"

#include <algorithm>

#include "cli/Failure.h"
#include "item/cHDItem.h"
#include "kits/sound/devices/OutputKeeper.h"
#include "kits/sound/engine/AudioEngine.h"
#include "playback/cBasePlayer.h"
#include "settings/cAudioSettings.h"

namespace qm::cli {

namespace {
constexpr std::int16_t kPlayer = 1;
}

PlayRun::PlayRun(Parts parts)
    : tell(TellFailure),
      m_engine(std::move(parts.engine)),
      m_settings(std::move(parts.settings)),
      m_player(std::make_shared<cBasePlayer>(std::move(parts.platform))),
      m_wishes(parts.wishes),
      m_count(parts.items.size()),
      m_waiting(parts.items.begin(), parts.items.end()) {}

void PlayRun::Start() {
  m_player->SetPlayerCallback(shared_from_this());
  m_player->InitPlayer(kPlayer, m_settings);
  PlayNext();
}

void PlayRun::LoadAhead() {
  while (!m_ready && !m_waiting.empty()) {
    const ItemArgument argument = std::move(m_waiting.front());
    m_waiting.pop_front();
    Ready ready;
    std::string errorText;
    if (!LoadItemFile(argument.path, ready.file, errorText)) {
      TellOf(errorText);
      continue;
    }
    ApplyFields(argument, *ready.file.item);
    ready.number = m_count - m_waiting.size();
    m_ready = std::move(ready);
  }
}

void PlayRun::PlayNext() {
  m_goOnAfterFade = false;
  while (!m_finished) {
    LoadAhead();
    if (!m_ready) break;
    const Ready next = *std::exchange(m_ready, std::nullopt);
    m_number = next.number;
    m_told = false;
    if (PlayOne(next.file.item)) return;
    // The file itself has just been read without fault.
    if (m_told) break;
    TellOf("'" + next.file.item->AudioFileName() + "' has nothing to play between AudioStart and AudioEnd");
  }
  m_finished = true;
}

bool PlayRun::PlayOne(const std::shared_ptr<cHDItem>& item) {
  const float stretch = m_wishes.stretch > 0 ? m_wishes.stretch : item->TimeStretchRatio();
  if (stretch > 0 && stretch != m_player->TimeStretchRatio()) m_player->SetTimeStretchRatio(stretch);
  if (m_wishes.speed > 0 && m_wishes.speed != m_player->PlaySpeed()) m_player->SetPlaySpeed(m_wishes.speed);
  const std::int16_t volume = VolumeOf(*item);
  const bool plays = m_wishes.hook ? m_player->PlayItemHook(item, volume) : m_player->PlayItem(item, volume);
  if (plays) ScheduleFade(*item);
  return plays;
}

std::int16_t PlayRun::VolumeOf(const cHDItem& item) const {
  if (m_wishes.volume) return *m_wishes.volume;
  return item.PlayVolume() > 0 ? item.PlayVolume() : m_settings->GeneralVolume();
}

void PlayRun::ScheduleFade(const cHDItem& item) {
  if (!(m_wishes.fadeSeconds > 0)) return;
  const float end = m_wishes.hook && item.HookEnd(1) > 0 ? item.HookEnd(1) : item.AudioEnd(1);
  const float start = std::max(item.AudioStart(1), end - m_wishes.fadeSeconds);
  // A player's own fade begins at AudioLength at the latest, which lies before that end in an item that is
  // cut off at its start.
  if (start <= item.AudioLength(1))
    m_player->Fade(start, end - start, pvcFadeOut);
  else
    m_player->AddVolumeChangeEvent(pvcFadeOut, start, end - start, m_player->InitialVolume(), 0,
                                   m_settings->FadeFirePercent(), true, true);
}

void PlayRun::Stop() {
  m_finished = true;
  m_player->CloseItem();
}

void PlayRun::GoOn() {
  if (m_player->CloseItem()) PlayNext();
}

void PlayRun::FadeAndGoOn(float seconds) {
  m_goOnAfterFade = m_player->Fade(m_player->SecondsPlayed(), seconds, pvcFadeOut);
}

void PlayRun::Terminate() {
  m_player->TerminatePlayer();
}

void PlayRun::TellOf(const std::string& text) {
  m_failed = m_told = true;
  tell(text);
}

void PlayRun::PlayerEvent(std::int16_t PlayerReference, std::int32_t EventReference, std::string& HDReference,
                          float& sValue1, float& sValue2, std::string& strValue1, std::string& strValue2) {
  const HeardEvent heard{m_engine->Frame(), m_engine->FrameRate(),
                         PlayerReference,   EventReference,
                         HDReference,       sValue1,
                         sValue2,           strValue1,
                         strValue2};
  for (PlayObserver* observer : m_observers) observer->Hear(heard);
  Act(EventReference, sValue1, strValue1);
}

// Within the event, so that what follows begins on its frame.
void PlayRun::Act(std::int32_t event, float sValue1, const std::string& strValue1) {
  switch (event) {
    case peError:
      TellOf(strValue1);
      // A device lost on the way is waited for; one that was never there is not.
      if (sValue1 == static_cast<float>(edfAbsent)) Stop();
      break;
    case peAudioEndReached:
      GoOn();
      break;
    case peHookEndReached:
      if (m_player->Status() == psClosed) PlayNext();
      break;
    case peVolumeChangeEndNotify:
      if (m_goOnAfterFade && sValue1 == static_cast<float>(pvcFadeOut)) GoOn();
      break;
  }
}

}  // namespace qm::cli
