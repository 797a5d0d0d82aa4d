#include "playback/cPlayer.h"

#include <type_traits>

#include "contract/IPlayerCallback.h"
#include "item/cHDItem.h"
#include "kits/common/Numbers.h"
#include "kits/common/Text.h"
#include "playback/cBasePlayer.h"
#include "playback/cListPlayer.h"
#include "playback/cPlayLog.h"
#include "services/TracedOperation.h"

// Its inner players, what it hears from them, and the records it makes. What it only passes on stands in
// cPlayerForwarding.cpp.
namespace qm {

cPlayer::cPlayer(std::shared_ptr<const Platform> platform)
    : m_platform(platform ? std::move(platform) : DefaultPlatform()) {}

cPlayer::~cPlayer() {
  for (Wires* wires : {&m_baseWires, &m_listWires})
    for (auto& wire : *wires) wire.disconnect();  // nobody holds it: nobody expects to hear of it
  ClearBasePlayer();
  ClearListPlayer();
}

void cPlayer::InitBasePlayer(std::int16_t PlayerNumber,
                             const std::shared_ptr<cAudioSettings>& AudioSettings) {
  ClearBasePlayer();
  m_reference = PlayerNumber;
  m_basePlayer = std::make_shared<cBasePlayer>(m_platform);
  m_basePlayer->InitPlayer(PlayerNumber, AudioSettings);
  m_basePlayer->SetPlayerCallback(m_parentPlayers);
  WireBasePlayer();
}

void cPlayer::InitListPlayer(std::int16_t PlayerNumber,
                             const std::shared_ptr<cAudioSettings>& AudioSettings) {
  ClearListPlayer();
  m_listPlayer = std::make_shared<cListPlayer>(m_platform);
  m_listPlayer->InitListPlayer(PlayerNumber, AudioSettings);
  m_listPlayer->SetPlayerCallback(m_parentPlayers);
  WireListPlayer();
}

void cPlayer::ClearBasePlayer() {
  if (!m_basePlayer) return;
  const auto player = m_basePlayer;
  player->TerminatePlayer();
  for (auto& wire : m_baseWires) wire.disconnect();
  m_baseWires.clear();
  m_basePlayer.reset();
}

void cPlayer::ClearListPlayer() {
  if (!m_listPlayer) return;
  const auto player = m_listPlayer;
  player->TerminateListPlayer();
  for (auto& wire : m_listWires) wire.disconnect();
  m_listWires.clear();
  m_listPlayer.reset();
  m_listMode = false;
}

void cPlayer::SetParentPlayers(std::shared_ptr<IPlayerCallback> Parent) {
  const TracedOperation operation("cPlayer", m_reference, ".Set ParentPlayers,",
                                  Parent ? "[Object]" : "[Nothing]");
  if (m_basePlayer) m_basePlayer->SetPlayerCallback(Parent);
  if (m_listPlayer) m_listPlayer->SetPlayerCallback(Parent);
  m_parentPlayers = std::move(Parent);
}

bool cPlayer::NeedListPlayer() {
  if (!m_listPlayer && m_parentPlayers) InitListPlayer(m_reference, m_parentPlayers->AudioSettings());
  return m_listPlayer != nullptr;
}

std::shared_ptr<cListPlayer> cPlayer::BaseListPlayer() {
  if (m_basePlayer) NeedListPlayer();
  return m_listPlayer;
}

// A listener may let go of this player: each wire holds it until everybody has heard.
void cPlayer::WireBasePlayer() {
  auto& from = m_basePlayer->events;
  m_baseWires = {
      from.PlayerEvent.connect([this](std::int32_t event, auto&... values) {
        const auto keeper = weak_from_this().lock();
        HearBasePlayer(event);
        events.PlayerEvent(event, values...);
      }),
      from.LevelChanged.connect(
          [this](std::int16_t left, std::int16_t right) { events.LevelChanged(left, right); }),
      from.LinkedToPlayer.connect([this](std::shared_ptr<cBasePlayer> other, bool playsFirst) {
        events.LinkedToPlayer(std::move(other), playsFirst);
      }),
      from.PlayerLinkCleared.connect([this] { events.PlayerLinkCleared(); }),
      from.Reserved.connect([this](std::int32_t reference, const std::string& caption) {
        events.Reserved(reference, caption);
      }),
      from.ReservationCleared.connect(
          [this](std::int32_t reference) { events.ReservationCleared(reference); }),
  };
}

void cPlayer::WireListPlayer() {
  auto& from = m_listPlayer->events;
  m_listWires = {
      from.PlayerEvent.connect([this](std::int32_t event, auto&... values) {
        const auto keeper = weak_from_this().lock();
        HearListPlayer(event);
        events.PlayerEvent(event, values...);
      }),
      from.LevelChanged.connect(
          [this](std::int16_t left, std::int16_t right) { events.LevelChanged(left, right); }),
  };
}

void cPlayer::HearBasePlayer(std::int32_t event) {
  if (event != peClosing) return;
  m_previousItemPlayLog = MakePlayLog(*m_basePlayer);
  m_previousListMode = false;
}

void cPlayer::HearListPlayer(std::int32_t event) {
  if (event == peClosing) m_previousItemPlayLog = MakePlayLog(*m_listPlayer);
  if (event == pePlayerListCleared) m_previousListMode = m_listMode;
  if (event == peClosed) m_listMode = false;
}

template <class Source>
std::shared_ptr<cPlayLog> cPlayer::MakePlayLog(const Source& source) const {
  auto log = std::make_shared<cPlayLog>();
  log->SetPlayerNumber(source.Reference());
  log->SetHardDiskItem(source.HDItem());
  log->SetDuration(source.SecondsPlayed());
  log->SetStartDate(source.Start().Date);
  log->SetStartTime(source.Start().Time);
  log->SetSchedulerReference(source.SchedulerReference());
  log->SetLogReference(source.LogReference());
  std::int32_t flags = 0;
  if (PreviewMode()) flags |= plfPreviewMode;
  if (m_listMode) flags |= source.HDReference() == "HookList" ? plfHookMode : plfListMode;
  log->Setflags(flags);
  return log;
}

std::shared_ptr<cPlayLog> cPlayer::CurrentItemPlayLog() const {
  if (m_listMode) return m_listPlayer ? MakePlayLog(*m_listPlayer) : nullptr;
  return m_basePlayer ? MakePlayLog(*m_basePlayer) : nullptr;
}

template <class Source>
bool cPlayer::IsSame(const Source& source, const std::string& reference, double logReference) const {
  if (source.Status() == psClosed || !source.HDItem()) return false;
  if (logReference != 0 && logReference != -1 && logReference != source.LogReference()) return false;
  return Trim(reference).empty() || SameReference(reference, source.HDReference());
}

bool cPlayer::IsSameHDReference(const std::string& HDReference, double TestLogReference) const {
  if (Trim(HDReference).empty() && (TestLogReference == 0 || TestLogReference == -1)) return false;
  if (m_listMode) return m_listPlayer && IsSame(*m_listPlayer, HDReference, TestLogReference);
  return m_basePlayer && IsSame(*m_basePlayer, HDReference, TestLogReference);
}

bool cPlayer::ListClearItems() {
  const TracedOperation operation("cPlayer", m_reference, ".ListClearItems");
  return NeedListPlayer() && m_listPlayer->ClearItems();
}

bool cPlayer::ListAddItem(std::shared_ptr<cHDItem> HDItem, enListItemType ItemType,
                          const std::string& SchedulerReference, double LogReference) {
  const TracedOperation operation("cPlayer", m_reference, ".ListAddItem,", std::int32_t{ItemType}, ",",
                                  SchedulerReference, ",", LogReference);
  if (!NeedListPlayer()) return false;
  m_listMode = true;
  return m_listPlayer->AddItem(std::move(HDItem), ItemType, SchedulerReference, LogReference);
}

bool cPlayer::ListAddList(const std::shared_ptr<cHDItems>& HDItemsList) {
  TracedOperation operation("cPlayer", m_reference, ".ListAddList");
  if (!HDItemsList) return operation.Exit("No List");
  if (!NeedListPlayer()) return operation.Exit("Initialising List Player");
  const bool before = m_listMode;
  m_listMode = true;
  if (m_listPlayer->AddList(HDItemsList)) return true;
  m_listMode = before;  // a list that runs already is not let go of
  return false;
}

bool cPlayer::ListRemoveItem(std::int32_t index) {
  const TracedOperation operation("cPlayer", m_reference, ".ListRemoveItem,", index);
  return m_listPlayer && m_listPlayer->RemoveItem(index);
}

}  // namespace qm
