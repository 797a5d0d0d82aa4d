#include "cli/PlaySequence.h"

#include <algorithm>

#include "cli/ItemFile.h"
#include "item/cHDItem.h"
#include "kits/common/Files.h"
#include "kits/common/Numbers.h"
#include "kits/sound/ctlVellanPlayer.h"
#include "kits/sound/devices/OutputKeeper.h"
#include "playback/cBasePlayer.h"
#include "playback/cPlayer.h"
#include "settings/cAudioSettings.h"

namespace qm::cli {

PlaySequence::PlaySequence(PlayPool& pool, std::vector<ItemArgument> items, const PlayWishes& wishes)
    : PlayRun(pool), m_wishes(wishes), m_count(items.size()), m_waiting(items.begin(), items.end()) {}

void PlaySequence::LoadAhead() {
  while (!m_ready && !m_waiting.empty()) {
    const ItemArgument argument = std::move(m_waiting.front());
    m_waiting.pop_front();
    ItemFile file;
    std::string errorText;
    if (!LoadItemFile(argument.path, file, errorText)) {
      m_told = true;
      TellOf(errorText);
      continue;
    }
    ApplyFields(argument, *file.item);
    m_ready = Ready{file.item, m_count - m_waiting.size()};
  }
}

void PlaySequence::PlayNext() {
  m_goOnAfterFade = false;
  while (!Finished()) {
    LoadAhead();
    if (!m_ready) break;
    const Ready next = *std::exchange(m_ready, std::nullopt);
    m_number = next.number;
    m_told = false;
    if (PlayOne(next.item)) return;
    // The file itself has just been read without fault.
    if (m_told) break;
    const std::string path = "'" + next.item->AudioFileName() + "'";
    TellOf(path + (FileExists(next.item->AudioFileName())
                       ? " has nothing to play between AudioStart and AudioEnd"
                       : " is not there any more"));
  }
  Finish();
}

bool PlaySequence::PlayOne(const std::shared_ptr<cHDItem>& item) {
  cPlayer& player = Player();
  const float stretch = m_wishes.stretch > 0 ? m_wishes.stretch : item->TimeStretchRatio();
  if (stretch > 0 && stretch != player.TimeStretchRatio()) player.SetTimeStretchRatio(stretch);
  if (m_wishes.speed > 0 && m_wishes.speed != player.PlaySpeed()) player.SetPlaySpeed(m_wishes.speed);
  const std::int16_t volume = VolumeOf(*item);
  const bool plays = m_wishes.hook ? player.PlayItemHook(item, volume) : player.PlayItem(item, volume);
  if (plays) ScheduleFade(*item);
  return plays;
}

std::int16_t PlaySequence::VolumeOf(const cHDItem& item) const {
  if (m_wishes.volume) return *m_wishes.volume;
  return item.PlayVolume() > 0 ? item.PlayVolume() : Pool().Settings().GeneralVolume();
}

void PlaySequence::ScheduleFade(const cHDItem& item) {
  if (!(m_wishes.fadeSeconds > 0)) return;
  cPlayer& player = Player();
  const float end = m_wishes.hook && item.HookEnd(1) > 0 ? item.HookEnd(1) : item.AudioEnd(1);
  const float start = std::max(item.AudioStart(1), end - m_wishes.fadeSeconds);
  // A player's own fade begins at AudioLength at the latest, which lies before that end in an item that is
  // cut off at its start.
  if (start <= item.AudioLength(1))
    player.Fade(start, end - start, pvcFadeOut);
  else
    player.AddVolumeChangeEvent(pvcFadeOut, start, end - start, player.InitialVolume(), 0,
                                Pool().Settings().FadeFirePercent(), true, true);
}

void PlaySequence::Stop() {
  Finish();
  Player().CloseItem();
}

bool PlaySequence::GoOn() {
  if (Player().CloseItem()) PlayNext();
  return true;
}

bool PlaySequence::FadeAndGoOn(float seconds) {
  m_goOnAfterFade = Player().Fade(Player().SecondsPlayed(), seconds, pvcFadeOut);
  return true;
}

bool PlaySequence::SeekBy(float seconds) {
  if (const auto item = Item())
    Player().SeekItem(Limit(Player().SecondsPlayed() + seconds, item->AudioStart(1), item->AudioEnd(1)));
  return true;
}

void PlaySequence::Play() {
  Player().PlayItem();
}

std::int16_t PlaySequence::Volume() const {
  return Player().PlayVolume();
}

// The initial volume, so that a fade begins where it is.
void PlaySequence::SetVolume(std::int16_t volume) {
  Player().SetInitialVolume(volume);
}

std::shared_ptr<cHDItem> PlaySequence::Item() const {
  return Player().HDItem();
}

float PlaySequence::Position() const {
  const auto player = Player().BasePlayer();
  return player && player->Control() ? player->Control()->SecondsPlayed() : 0;
}

void PlaySequence::Act(const HeardEvent& heard) {
  switch (heard.event) {
    case peError:
      m_told = true;
      TellOf(heard.strValue1);
      // A device lost on the way is waited for; one that was never there is not.
      if (heard.sValue1 == static_cast<float>(edfAbsent)) Stop();
      break;
    case peAudioEndReached:
      GoOn();
      break;
    case peHookEndReached:
      if (Player().Status() == psClosed) PlayNext();
      break;
    case peVolumeChangeEndNotify:
      if (m_goOnAfterFade && heard.sValue1 == static_cast<float>(pvcFadeOut)) GoOn();
      break;
  }
}

}  // namespace qm::cli
