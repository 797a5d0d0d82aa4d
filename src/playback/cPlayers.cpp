#include "playback/cPlayers.h"

#include "audio/cRecorder.h"
#include "item/cHDItem.h"
#include "kits/common/Numbers.h"
#include "kits/common/Text.h"
#include "kits/sound/SoundSystem.h"
#include "playback/BorrowedOwner.h"
#include "playback/cListPlayer.h"
#include "playback/cPlayer.h"
#include "services/Diagnostics.h"
#include "settings/cAudioSettings.h"

// The pool's players, and the questions that go over them. Function keys stand in PlayerKeys.cpp.
namespace qm {
namespace {
constexpr std::int32_t kTraceLevel = 5;
}

cPlayers::cPlayers(std::shared_ptr<const Platform> platform)
    : m_platform(platform ? std::move(platform) : DefaultPlatform()),
      m_audioSettings(std::make_shared<cAudioSettings>(m_platform, m_platform->sound)) {}

cPlayers::~cPlayers() {
  Terminate();
}

void cPlayers::Terminate() {
  const auto keeper = weak_from_this().lock();
  while (!m_players.empty()) RemoveLastPlayer();
  if (const auto recorder = std::move(m_recorder)) recorder->Terminate();
}

void cPlayers::SetAudioSettings(std::shared_ptr<cAudioSettings> Settings) {
  const auto keeper = weak_from_this().lock();
  WriteDebug("Started Set AudioSettings", kTraceLevel, ednOpens);
  if (!Settings) return WriteDebug("Exit as no Object", kTraceLevel, ednCloses);
  WriteDebug("Storing AudioSettings Object", kTraceLevel);
  m_audioSettings = std::move(Settings);
  m_platform->sound->SetStreamDebugMode(m_audioSettings->VellanStreamDebugMode());
  m_initialisingPlayers = true;
  SetNumberPlayers(m_audioSettings->NumberPlayers());
  m_initialisingPlayers = false;
  for (std::int16_t number = 1; number <= NumberPlayers(); ++number) InitPlayer(number);
  WriteDebug("Calling InitRecorder", kTraceLevel);
  InitRecorder();
  WriteDebug("Finished Set AudioSettings", kTraceLevel, ednCloses);
}

void cPlayers::InitPlayer(std::int16_t number) {
  auto& place = m_players[static_cast<std::size_t>(number) - 1];
  if (place) {
    place->ClearBasePlayer();
    place->ClearListPlayer();
    place->SetParentPlayers(nullptr);
  }
  WriteDebug("Creating new Player object", kTraceLevel);
  const auto player = std::make_shared<cPlayer>(m_platform);
  place = player;
  WriteDebug("Initialising Base Player", kTraceLevel);
  player->InitBasePlayer(number, m_audioSettings);
  if (m_autoInitListPlayers) {
    WriteDebug("Initialising List Player", kTraceLevel);
    player->InitListPlayer(number, m_audioSettings);
  }
  WriteDebug("Setting Parent Players", kTraceLevel);
  player->SetParentPlayers(BorrowedOwner(*this));
  WriteDebug("Finished InitPlayer", kTraceLevel);
}

void cPlayers::InitRecorder() {
  if (const auto recorder = std::move(m_recorder)) recorder->Terminate();
  m_recorder = std::make_shared<cRecorder>(m_platform);
  m_recorder->SetPlayerCallback(BorrowedOwner(*this));
  m_recorder->InitRecorder(m_audioSettings);
}

void cPlayers::RemoveLastPlayer() {
  const auto player = m_players.back();
  if (player) {
    player->ClearBasePlayer();
    player->ClearListPlayer();
    player->SetParentPlayers(nullptr);
  }
  m_players.pop_back();
}

void cPlayers::SetNumberPlayers(std::int16_t Value) {
  const auto keeper = weak_from_this().lock();
  if (m_maxNumberPlayers > 0) Value = Limit<std::int16_t>(Value, 0, m_maxNumberPlayers);
  if (Value < 1) return;
  while (NumberPlayers() > Value) RemoveLastPlayer();
  while (NumberPlayers() < Value) {
    m_players.emplace_back();
    if (!m_initialisingPlayers) InitPlayer(NumberPlayers());
  }
}

void cPlayers::SetMaxNumberPlayers(std::int16_t Value) {
  m_maxNumberPlayers = Value;
  if (Value > 0) SetNumberPlayers(NumberPlayers());
}

std::shared_ptr<cPlayer> cPlayers::Player(std::int16_t index) const {
  return index >= 1 && index <= NumberPlayers() ? m_players[static_cast<std::size_t>(index) - 1] : nullptr;
}

bool cPlayers::ReportErrors() const {
  return !m_players.empty() && m_players.front()->ReportErrors();
}

void cPlayers::SetReportErrors(bool Report) {
  for (const auto& player : m_players) player->SetReportErrors(Report);
}

void cPlayers::PlayerEvent(std::int16_t PlayerReference, std::int32_t EventReference,
                           std::string& HDReference, float& sValue1, float& sValue2, std::string& strValue1,
                           std::string& strValue2) {
  const auto keeper = weak_from_this().lock();
  events.PlayerEvent(PlayerReference, EventReference, HDReference, sValue1, sValue2, strValue1, strValue2);
}

void cPlayers::RecorderEvent(std::int32_t EventReference, std::string& HDReference, float& sValue1,
                             float& sValue2, std::string& strValue1, std::string& strValue2) {
  const auto keeper = weak_from_this().lock();
  events.RecorderEvent(EventReference, HDReference, sValue1, sValue2, strValue1, strValue2);
}

// The first player that passes the test, 0 for none.
template <class Test>
std::int16_t cPlayers::FindPlayer(Test test) const {
  for (std::int16_t number = 1; number <= NumberPlayers(); ++number)
    if (test(*Player(number))) return number;
  return 0;
}

template <class Test>
std::int16_t cPlayers::CountPlayers(Test test) const {
  std::int16_t count = 0;
  for (const auto& player : m_players)
    if (test(*player)) ++count;
  return count;
}

std::int16_t cPlayers::GetFirstAvailablePlayer(enPlayerStatus TestStatus, std::int16_t FirstPlayer,
                                               std::int16_t LastPlayer,
                                               std::int32_t ReservationReference) const {
  if (m_players.empty()) return 0;
  if (FirstPlayer == -1) FirstPlayer = m_audioSettings->FirstPlayer();
  if (LastPlayer == -1) LastPlayer = m_audioSettings->LastPlayer();
  const std::int16_t first = Limit<std::int16_t>(FirstPlayer, 1, NumberPlayers());
  const std::int16_t last = Limit<std::int16_t>(LastPlayer, 1, NumberPlayers());
  const std::int16_t step = first > last ? -1 : 1;
  for (auto number = first;; number = static_cast<std::int16_t>(number + step)) {
    const cPlayer& player = *Player(number);
    if (player.Status() >= TestStatus && player.ReservationReference() == ReservationReference) return number;
    if (number == last) return 0;
  }
}

std::int16_t cPlayers::GetNumberAvailablePlayers(enPlayerStatus TestStatus) const {
  return CountPlayers([&](const cPlayer& player) { return player.Status() >= TestStatus; });
}

std::int16_t cPlayers::GetNumberPlayersInUse() const {
  return CountPlayers([](const cPlayer& player) { return player.Status() < psClosed; });
}

std::int16_t cPlayers::GetNumberReservedPlayers(std::int32_t ReservationReference) const {
  return CountPlayers(
      [&](const cPlayer& player) { return player.ReservationReference() == ReservationReference; });
}

namespace {

enum class LogReferences { MustMatch, MustMatchIfGiven };

// Whether a player is the one looked for, by what it holds.
class Wanted {
 public:
  Wanted(const std::string& hdReference, double logReference, LogReferences comparison)
      : m_any(Trim(hdReference).empty()),
        m_hdReference(hdReference),
        m_logReference(logReference),
        m_compareLog(comparison == LogReferences::MustMatch || logReference != 0) {}

  bool Nothing() const { return m_any && m_logReference == 0; }
  bool Is(const cPlayer& player) const {
    if (!m_any && !SameReference(player.HDReference(), m_hdReference)) return false;
    return !m_compareLog || player.LogReference() == m_logReference;
  }

 private:
  bool m_any;
  const std::string& m_hdReference;
  double m_logReference;
  bool m_compareLog;
};

bool HasItem(const cPlayer& player) {
  return player.Status() != psClosed && player.HDItem() != nullptr;
}

}  // namespace

std::int16_t cPlayers::IsHDReferenceLoaded(const std::string& HDReference, double TestLogReference) const {
  const Wanted wanted(HDReference, TestLogReference, LogReferences::MustMatch);
  if (wanted.Nothing()) return 0;
  return FindPlayer([&](const cPlayer& player) {
    return player.Status() >= psPaused && HasItem(player) && wanted.Is(player);
  });
}

std::int16_t cPlayers::IsHDReferenceRunning(const std::string& HDReference, double TestLogReference) const {
  const Wanted wanted(HDReference, TestLogReference, LogReferences::MustMatchIfGiven);
  if (wanted.Nothing()) return 0;
  return FindPlayer([&](const cPlayer& player) {
    return player.Status() <= psPaused && HasItem(player) && wanted.Is(player);
  });
}

std::int16_t cPlayers::GetPlayerIndexByHDReference(const std::string& HDReference,
                                                   double TestLogReference) const {
  const Wanted wanted(HDReference, TestLogReference, LogReferences::MustMatchIfGiven);
  if (wanted.Nothing()) return 0;
  return FindPlayer([&](const cPlayer& player) { return wanted.Is(player); });
}

std::shared_ptr<cPlayer> cPlayers::GetPlayerByHDReference(const std::string& HDReference,
                                                          double TestLogReference) const {
  return Player(GetPlayerIndexByHDReference(HDReference, TestLogReference));
}

std::int16_t cPlayers::GetFirstUsedListPlayer() const {
  for (std::int16_t number = 1; number <= NumberPlayers(); ++number)
    if (const auto list = Player(number)->BaseListPlayer(); list && list->NumberItems() >= 1) return number;
  return 0;
}

std::int16_t cPlayers::ReservePlayers(std::int16_t NumberPlayers, std::int16_t FirstPlayer,
                                      std::int16_t LastPlayer, std::int32_t ReservationReference,
                                      const std::string& ReservationCaption) {
  const auto keeper = weak_from_this().lock();
  std::int16_t reserved = 0;
  while (reserved < NumberPlayers) {
    const auto player = Player(GetFirstAvailablePlayer(psClosed, FirstPlayer, LastPlayer, 0));
    if (!player) break;
    player->SetReservation(ReservationReference, ReservationCaption);
    ++reserved;
  }
  return reserved;
}

std::int16_t cPlayers::ClearPlayerReservations(std::int32_t ReservationReference) {
  const auto keeper = weak_from_this().lock();
  std::int16_t cleared = 0;
  for (std::int16_t number = 1; number <= NumberPlayers(); ++number) {
    const auto player = Player(number);
    if (player->ReservationReference() != ReservationReference) continue;
    player->ClearReservation();
    ++cleared;
  }
  return cleared;
}

std::int16_t cPlayers::ChoosePlayer(const cHDItem& item, std::int16_t PlayerReference) const {
  if (PlayerReference < 0 || PlayerReference > NumberPlayers()) PlayerReference = 0;
  Trace(kTraceLevel, ednPlain, item.Reference(), ", Player=", PlayerReference);
  if (PlayerReference != 0) return PlayerReference;
  const auto taken = [](const char* how, std::int16_t number) {
    if (number != 0) Trace(kTraceLevel, ednPlain, how, " Player=", number);
    return number;
  };
  if (const auto found = taken("Found in", IsHDReferenceLoaded(item.Reference(), 0))) return found;
  if (const auto closed = taken("Using currently closed", GetFirstAvailablePlayer(psClosed))) return closed;
  return taken("Using currently cued", GetFirstAvailablePlayer(psCued));
}

std::int16_t cPlayers::Quick(const char* name, QuickOperation operation, const std::shared_ptr<cHDItem>& item,
                             std::int16_t PlayerReference, std::int16_t Volume) {
  const auto keeper = weak_from_this().lock();
  Trace(kTraceLevel, ednOpens, "Start ", name);
  const auto leave = [](const char* why) {
    WriteDebug(why, kTraceLevel, ednCloses);
    return std::int16_t{0};
  };
  if (!item) return leave("Exit No HDItem");
  if (item->Reference().empty()) return leave("Exit No HDItem Reference");
  if (item->AudioFileName().empty()) return leave("Exit No HDItem AudioFileName");
  const std::int16_t number = ChoosePlayer(*item, PlayerReference);
  if (number == 0) return leave("Exit as no available Player");
  if (Volume == 0) Volume = m_audioSettings->GeneralVolume();
  const auto player = Player(number);
  const std::int16_t result = ((*player).*operation)(item, Volume) ? number : 0;
  Trace(kTraceLevel, ednCloses, "Finish ", name, " (", result, ")");
  return result;
}

std::int16_t cPlayers::QuickCueHDItem(const std::shared_ptr<cHDItem>& HDItem, std::int16_t PlayerReference,
                                      std::int16_t Volume) {
  return Quick("QuickCueHDItem", &cPlayer::CueItem, HDItem, PlayerReference, Volume);
}

std::int16_t cPlayers::QuickPlayHDItem(const std::shared_ptr<cHDItem>& HDItem, std::int16_t PlayerReference,
                                       std::int16_t Volume) {
  return Quick("QuickPlayHDItem", &cPlayer::PlayItem, HDItem, PlayerReference, Volume);
}

std::int16_t cPlayers::PlayAll() {
  const auto keeper = weak_from_this().lock();
  std::int16_t started = 0;
  for (std::int16_t number = 1; number <= NumberPlayers(); ++number) {
    const auto player = Player(number);
    if (player->Status() != psCued) continue;
    player->PlayItem(nullptr, -1);
    ++started;
  }
  return started;
}

}  // namespace qm
