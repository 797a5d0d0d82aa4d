#include "playback/cListPlayer.h"

#include <algorithm>

#include "item/cHDItem.h"
#include "item/cHDItems.h"
#include "kits/common/Clock.h"
#include "kits/common/Numbers.h"
#include "playback/BorrowedOwner.h"
#include "playback/cBasePlayer.h"
#include "playback/cPlayLog.h"
#include "services/TracedOperation.h"

// The list itself, its lengths, and what it tells about itself.
namespace qm {
namespace {

std::shared_ptr<cHDItem> NewTotalItem() {
  auto item = std::make_shared<cHDItem>();
  item->SetReference("List");
  return item;
}

float PercentOf(float seconds, float whole) {
  if (seconds > whole) return 100;
  return whole > 0 ? seconds / whole * 100 : 0;
}

}  // namespace

cListPlayer::cListPlayer(std::shared_ptr<const Platform> platform)
    : m_platform(platform ? std::move(platform) : DefaultPlatform()), m_totalItem(NewTotalItem()) {
  for (auto& player : m_players) {
    player = std::make_shared<cBasePlayer>(m_platform);
    player->SetPlayerCallback(BorrowedOwner(*this));
  }
}

cListPlayer::~cListPlayer() {
  m_eventsInhibited = true;  // nobody holds it: nobody expects to hear of it
  TerminateListPlayer();
}

void cListPlayer::InitListPlayer(std::int16_t PlayerNumber,
                                 const std::shared_ptr<cAudioSettings>& AudioSettings) {
  m_reference = PlayerNumber;
  for (std::int16_t n = 1; n <= NumberPlayers(); ++n) {
    PlayerAt(n)->InitPlayer(PlayerNumber, AudioSettings, n);
    PlayerAt(n)->SetReference(n);
  }
}

void cListPlayer::TerminateListPlayer() {
  const auto keeper = weak_from_this().lock();
  ClearItems();
  m_stopping = true;  // whatever a listener has refused
  for (const auto& player : m_players) player->TerminatePlayer();
  m_stopping = m_running = false;
  ++m_run;
  m_currentPlayer = m_currentItem = 0;
  m_next = {};
  m_status = psClosed;
  m_items.clear();
  m_callback.reset();
}

cBasePlayer* cListPlayer::PlayerAt(std::int16_t number) const {
  return number >= 1 && number <= NumberPlayers() ? m_players[static_cast<std::size_t>(number) - 1].get()
                                                  : nullptr;
}

const tyHDListItem* cListPlayer::Entry(std::int32_t index) const {
  return index >= 1 && index <= NumberItems() ? &m_items[static_cast<std::size_t>(index) - 1] : nullptr;
}

bool cListPlayer::AddItem(std::shared_ptr<cHDItem> HDItem, enListItemType ItemType,
                          const std::string& SchedulerReference, double LogReference) {
  const auto keeper = weak_from_this().lock();
  TracedOperation operation("ListPlayer.AddItem");
  if (!HDItem) return operation.Exit("No HDItem");
  if (DebugWanted(5)) operation.Line("HDItem:" + HDItem->Serialisation());
  if (m_items.size() >= INT16_MAX) return operation.Exit("List is full");
  tyHDListItem entry{HDItem, nullptr, ItemType, 0, 0, 0, LogReference, SchedulerReference};
  const float factor = StretchFactor(*HDItem);
  if (entry.IsFull()) {
    if (!(HDItem->AudioLength(1) > 0)) return operation.Exit("AudioLength<=0");
    entry.ImpactLength = HDItem->Extro(1) * factor;
    entry.ExtroLength = (HDItem->AudioEnd(1) - HDItem->Extro(1)) * factor;
  } else if (entry.IsHook()) {
    if (!(HDItem->HookLength(1) > 0)) return operation.Exit("HookLength<=0");
    entry.ImpactLength = HDItem->HookLength(1) * factor;
  }
  m_items.push_back(std::move(entry));
  UpdateOverallLength();
  Report(pePlayerListItemAdded, NumberItems());
  return true;
}

bool cListPlayer::AddList(const std::shared_ptr<cHDItems>& cHDList) {
  const auto keeper = weak_from_this().lock();
  TracedOperation operation("ListPlayer.AddList");
  if (!cHDList) return operation.Exit("No List");
  if (cHDList->Count() == 0) return operation.Exit("Empty List");
  m_raiseEvents = false;
  bool added = false;
  for (std::int32_t index = 1; index <= cHDList->Count(); ++index) {
    const tyHDListItem entry = cHDList->HDListItem(index);
    if (AddItem(entry.HDItem, entry.ItemType, entry.SchedulerReference, entry.LogReference)) added = true;
  }
  m_raiseEvents = true;
  return added;
}

void cListPlayer::UpdateOverallLength() {
  const TracedOperation operation("ListPlayer.UpdateOverallLength");
  m_mainLength = 0;
  m_numberSeparatorItems = m_numberHookItems = 0;
  for (const tyHDListItem& entry : m_items) {
    m_mainLength += entry.ImpactLength;
    if (entry.ItemType & hlitSeparator) ++m_numberSeparatorItems;
    if (entry.ItemType & hlitHook) ++m_numberHookItems;
  }
  m_totalLength = m_mainLength + (m_items.empty() ? 0 : m_items.back().ExtroLength);
  m_totalItem->SetTotalLength(m_totalLength);
  m_totalItem->SetAudioEnd(1, m_totalLength);
  m_totalItem->SetExtro(1, m_mainLength);
}

bool cListPlayer::MayRemove(std::int32_t index) const {
  if (!Entry(index)) return false;
  // A paused run goes on later with the entry it stands at.
  const bool begun = m_status == psPlaying || m_status == psPaused;
  return !begun || index > m_currentItem;
}

bool cListPlayer::RemoveItem(std::int32_t index) {
  const auto keeper = weak_from_this().lock();
  if (!MayRemove(index)) return false;
  if (m_items.size() == 1) return m_status == psClosed ? ClearItems() : CloseItems(0);
  const bool cueAgain = index == 1 && m_status == psCued;
  if (cueAgain) StopRunning(Afterwards::KeepList, Telling::Silent);
  m_items.erase(m_items.begin() + (index - 1));
  ForgetRemoved(index);
  UpdateOverallLength();
  if (cueAgain) {
    CueItems(-1);
    Report(pePlayerListCurrentItemChanged, m_currentItem);
  }
  Report(pePlayerListItemRemoved, static_cast<float>(index));
  return true;
}

// The entry may be waiting on a player already, or stand ahead of the one that does.
void cListPlayer::ForgetRemoved(std::int32_t index) {
  for (CuedEntry& next : m_next) {
    if (!next.cued || next.item < index) continue;
    cBasePlayer* const player = PlayerAt(next.player);
    if (next.item == index) {
      next = {};
      player->CloseItem();
    } else {
      --next.item;
      player->SetPlayedTag(next.item);
    }
  }
}

bool cListPlayer::ClearItems() {
  const auto keeper = weak_from_this().lock();
  TracedOperation operation("ListPlayer.ClearItems");
  if (m_status != psClosed && !CloseItems(0)) return operation.Exit("Not Closed");
  if (m_items.empty()) return operation.Exit("No Items");
  if (m_running) StopRunning(Afterwards::KeepList, Telling::Silent);  // it was just about to open
  m_totalItem = NewTotalItem();
  m_items.clear();
  UpdateOverallLength();
  Report(pePlayerListCleared);
  return true;
}

tyHDListItem cListPlayer::HDListItem(std::int32_t index) const {
  const tyHDListItem* const entry = Entry(index);
  return entry ? *entry : tyHDListItem{};
}

std::string cListPlayer::CurrentItemHDRef() const {
  const tyHDListItem* const entry = Entry(m_currentItem);
  return entry ? entry->HDItem->Reference() : std::string();
}

std::shared_ptr<cHDItem> cListPlayer::HDItem() const {
  return m_status == psClosed ? nullptr : m_totalItem;
}

std::string cListPlayer::HDReference() const {
  return m_status == psClosed ? std::string() : m_totalItem->Reference();
}

float cListPlayer::PercentagePlayed() const {
  return m_status == psClosed ? 0 : PercentOf(m_secondsPlayed, m_mainLength);
}

float cListPlayer::TotalPercentagePlayed() const {
  return m_status == psClosed ? 0 : PercentOf(m_secondsPlayed, m_totalLength);
}

std::shared_ptr<cPlayLog> cListPlayer::EntryPlayLog(const cBasePlayer& player) const {
  auto log = std::make_shared<cPlayLog>();
  log->SetPlayerNumber(m_reference);
  log->SetHardDiskItem(player.HDItem());
  log->SetDuration(player.SecondsPlayed());
  const tyLogDateTime start =
      AddSeconds(DateTimeNow(*m_platform->clock), -static_cast<double>(player.SecondsPlayed()));
  log->SetStartDate(start.Date);
  log->SetStartTime(start.Time);
  log->SetSchedulerReference(player.SchedulerReference());
  log->SetLogReference(player.LogReference());
  const tyHDListItem* const entry = Entry(player.PlayedTag());
  log->Setflags(plfListMode | (entry && (entry->ItemType & hlitHook) ? plfHookMode : 0));
  return log;
}

std::shared_ptr<cPlayLog> cListPlayer::CurrentItemPlayLog() const {
  const cBasePlayer* const player = PlayerAt(m_currentPlayer);
  return player ? EntryPlayLog(*player) : nullptr;
}

std::string cListPlayer::EngineName() const {
  return m_players[0]->EngineName();
}

bool cListPlayer::ReportErrors() const {
  return m_players[0]->ReportErrors();
}

void cListPlayer::SetReportErrors(bool Report) {
  for (const auto& player : m_players) player->SetReportErrors(Report);
}

float cListPlayer::PlaySpeed() const {
  return m_players[0]->PlaySpeed();
}

void cListPlayer::SetPlaySpeed(float Speed) {
  for (const auto& player : m_players) player->SetPlaySpeed(Speed);
}

float cListPlayer::TimeStretchRatio() const {
  return m_players[0]->TimeStretchRatio();
}

void cListPlayer::SetTimeStretchRatio(float Ratio) {
  m_timeStretchRatio = Ratio;
  for (const auto& player : m_players) player->SetTimeStretchRatio(Ratio);
}

std::int16_t cListPlayer::PlayVolume() const {
  return m_players[0]->PlayVolume();
}

void cListPlayer::SetPlayVolume(std::int16_t Volume) {
  for (const auto& player : m_players) player->SetPlayVolume(Volume);
}

void cListPlayer::SetInitialVolume(std::int16_t Volume) {
  const std::int16_t before = m_initialVolume;
  m_initialVolume = Limit<std::int16_t>(Volume, 0, 100);
  for (const auto& player : m_players)
    if (player->InitialVolume() == before) player->SetInitialVolume(m_initialVolume);
}

std::shared_ptr<cAudioSettings> cListPlayer::AudioSettings() const {
  const auto owner = m_callback;
  return owner ? owner->AudioSettings() : nullptr;
}

}  // namespace qm
