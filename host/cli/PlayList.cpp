#include "cli/PlayList.h"

#include <algorithm>

#include "cli/ItemFile.h"
#include "item/cHDItem.h"
#include "kits/common/Files.h"
#include "kits/sound/devices/OutputKeeper.h"
#include "kits/sound/engine/AudioEngine.h"
#include "playback/cListPlayer.h"
#include "playback/cPlayer.h"
#include "settings/cAudioSettings.h"

namespace qm::cli {

PlayList::PlayList(PlayPool& pool, std::vector<ItemArgument> items, const PlayWishes& wishes)
    : PlayRun(pool), m_items(std::move(items)), m_wishes(wishes) {
  pool.onListError = [this](std::int32_t number, const std::string& text) { HearError(number, text); };
}

void PlayList::Start() {
  AddItems();
  m_volume = m_wishes.volume.value_or(Pool().Settings().GeneralVolume());
  if (m_wishes.speed > 0) Player().SetPlaySpeed(m_wishes.speed);
  while (!m_paths.empty() && !Player().PlayItem(nullptr, m_volume))
    if (!TakeOffFirst()) break;
  if (Player().Status() != psPlaying) Finish();
}

void PlayList::AddItems() {
  for (const ItemArgument& argument : m_items) AddItem(argument);
}

void PlayList::AddItem(const ItemArgument& argument) {
  ItemFile file;
  std::string errorText;
  if (!LoadItemFile(argument.path, file, errorText)) return TellOf(errorText);
  ApplyFields(argument, *file.item);
  if (m_wishes.stretch > 0) file.item->SetTimeStretchRatio(m_wishes.stretch);
  const bool hook = m_wishes.hook && file.item->HookLength(1) > 0;
  if (Player().ListAddItem(file.item, hook ? hlitHook : hlitFull))
    m_paths.push_back(file.item->AudioFileName());
  else
    TellOf("'" + argument.path + "' has nothing to play between AudioStart and AudioEnd");
}

// A list begins with its first entry or not at all. False when there is nothing to go on with.
bool PlayList::TakeOffFirst() {
  // The file itself has just been read without fault: it is the device that failed.
  if (Finished() || (m_told && FileExists(m_paths.front()))) return false;
  TellPassedOver(1);
  m_paths.erase(m_paths.begin());
  return Player().ListRemoveItem(1);
}

void PlayList::Stop() {
  m_stopping = true;
  Player().CloseItem();
  Finish();
}

void PlayList::Play() {
  Player().PlayItem(nullptr, m_volume);
}

// For the entry on the air, and by way of a request to play what plays already, for those to come.
void PlayList::SetVolume(std::int16_t volume) {
  m_volume = volume;
  Player().SetInitialVolume(volume);
  Player().SetPlayVolume(volume);
  if (Player().Status() == psPlaying) Play();
}

std::size_t PlayList::ItemNumber() const {
  const std::int16_t current = Player().BaseListPlayer()->CurrentItem();
  return static_cast<std::size_t>(current > 0 ? current : m_current);
}

std::shared_ptr<cHDItem> PlayList::Item() const {
  return Player().BaseListPlayer()->HDListItem(static_cast<std::int32_t>(ItemNumber())).HDItem;
}

float PlayList::Position() const {
  return Player().SecondsPlayed();
}

// A device that comes and goes is told of each time, on all its players at once; an entry is told of once.
void PlayList::HearError(std::int32_t number, const std::string& text) {
  const bool ofDevice = number == edfAbsent || number == edfLost;
  const std::int64_t frame = Pool().Engine().Frame();
  if (ofDevice ? frame == m_faultFrame : !m_toldErrors.insert(text).second) return;
  if (ofDevice) m_faultFrame = frame;
  m_told = true;
  TellOf(text);
  // A device lost on the way is waited for; one that was never there is not.
  if (number == edfAbsent) Stop();
}

void PlayList::TellPassedOver(std::int32_t entry) {
  const std::string& path = m_paths[static_cast<std::size_t>(entry) - 1];
  TellOf("'" + path + "' " + (FileExists(path) ? "cannot be played" : "is not there any more") +
         ": passed over");
}

void PlayList::MoveTo(std::int32_t entry) {
  for (std::int32_t passed = m_current + 1; passed < entry; ++passed) TellPassedOver(passed);
  m_current = entry;
  m_told = false;
}

void PlayList::Act(const HeardEvent& heard) {
  switch (heard.event) {
    case peCued:
      m_current = 1;
      break;
    case pePlayerListCurrentItemChanged:
      MoveTo(static_cast<std::int32_t>(heard.sValue1));
      break;
    case peClosing:
      // A run that comes to its own end has played to the last entry that could be.
      if (!m_stopping) MoveTo(static_cast<std::int32_t>(m_paths.size()) + 1);
      break;
    case peClosed:
      Finish();
      break;
  }
}

}  // namespace qm::cli
