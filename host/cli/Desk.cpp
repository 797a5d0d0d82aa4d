#include "cli/Desk.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/ItemFile.h"
#include "item/cHDItem.h"
#include "kits/common/Dates.h"
#include "kits/common/Files.h"
#include "kits/common/Numbers.h"
#include "kits/sound/engine/AudioEngine.h"
#include "playback/cPlayLog.h"
#include "playback/cPlayer.h"
#include "playback/cPlayers.h"

namespace qm::cli {

namespace {

constexpr std::int16_t kFirstFunctionKey = 112;
constexpr std::int16_t kAlt = 4;

std::string Quoted(const cHDItem& item) {
  return "'" + item.FullDescription() + "'";
}

}  // namespace

Desk::Desk(PlayPool& pool, std::vector<ItemArgument> items, std::optional<std::int16_t> volume)
    : Run(pool), m_volume(volume) {
  for (ItemArgument& argument : items) m_files.push_back({std::move(argument), nullptr, {}, false});
  for (std::int16_t number = 1; number <= pool.Players().NumberPlayers(); ++number)
    m_wires.push_back(pool.Player(number).events.LevelChanged.connect(
        [this, number](std::int16_t left, std::int16_t right) {
          m_levels[number] = {left, right};
        }));
}

Desk::~Desk() {
  for (auto& wire : m_wires) wire.disconnect();
}

void Desk::Load(DeskFile& file) {
  if (file.item || !file.errorText.empty()) return;
  ItemFile loaded;
  if (!LoadItemFile(file.argument.path, loaded, file.errorText)) return;
  ApplyFields(file.argument, *loaded.item);
  file.item = loaded.item;
}

// One at a time: the players need their turns.
void Desk::LoadAhead() {
  if (m_loaded < m_files.size()) Load(m_files[m_loaded++]);
}

void Desk::Stop() {
  for (std::int16_t number = 1; number <= Pool().Players().NumberPlayers(); ++number)
    Pool().Player(number).CloseItem();
  Finish();
}

void Desk::ChooseFile(std::ptrdiff_t steps) {
  if (m_files.empty()) return;
  m_chosen = static_cast<std::size_t>(
      Limit<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(m_chosen) + steps, 0, std::ssize(m_files) - 1));
}

void Desk::ChoosePlayer(std::int16_t steps) {
  const std::int16_t count = Pool().Players().NumberPlayers();
  m_player = static_cast<std::int16_t>((m_player - 1 + steps + count) % count + 1);
}

// Absent, and told, when it cannot be read. A file that could not be read before may be there now.
std::shared_ptr<cHDItem> Desk::ChosenItem() {
  if (m_files.empty()) return nullptr;
  DeskFile& file = m_files[m_chosen];
  file.errorText.clear();
  Load(file);
  if (!file.item) Refuse(file.errorText);
  return file.item;
}

void Desk::Quick(QuickOperation operation, const char* done, std::int16_t player) {
  const auto item = ChosenItem();
  if (!item) return;
  cPlayers& players = Pool().Players();
  if (player > players.NumberPlayers()) return Refuse(fmt::format("there is no player {}", player));
  if (player > 0 && Pool().Player(player).Status() < psCued)
    return Refuse(fmt::format("player {} is in use", player));
  m_told = false;
  const std::int16_t volume = !m_volume && item->PlayVolume() > 0 ? item->PlayVolume() : std::int16_t{0};
  if (const std::int16_t number = (players.*operation)(item, player, volume))
    return Say(fmt::format("player {} {} {}", number, done, Quoted(*item)));
  if (m_told) return;
  if (!FileExists(item->AudioFileName()))
    Refuse("'" + item->AudioFileName() + "' is not there any more");
  else if (!(item->AudioLength(1) > 0))
    Refuse(Quoted(*item) + " has nothing to play between AudioStart and AudioEnd");
  else
    Refuse("no player is free for " + Quoted(*item));
}

void Desk::Cue(std::int16_t player) {
  Quick(&cPlayers::QuickCueHDItem, "has cued", player);
}

void Desk::Play(std::int16_t player) {
  Quick(&cPlayers::QuickPlayHDItem, "plays", player);
}

void Desk::PlayAll() {
  const std::int16_t started = Pool().Players().PlayAll();
  if (started == 0) return Refuse("nothing is cued");
  Say(fmt::format("{} player{} started", started, started == 1 ? "" : "s"));
}

void Desk::PlayOrPause() {
  cPlayer& player = Pool().Player(m_player);
  if (!player.HDItem()) return Refuse(fmt::format("player {} is empty", m_player));
  if (player.Status() == psPlaying)
    player.PauseItem();
  else
    player.PlayItem();
}

void Desk::CueAgain() {
  if (!Pool().Player(m_player).CueItem()) Refuse(fmt::format("player {} is empty", m_player));
}

void Desk::Close() {
  cPlayer& player = Pool().Player(m_player);
  if (player.Status() == psClosed) return Refuse(fmt::format("player {} is empty", m_player));
  player.CloseItem();
}

void Desk::Fade(float seconds) {
  cPlayer& player = Pool().Player(m_player);
  if (player.Status() != psPlaying) return Refuse(fmt::format("player {} is not on the air", m_player));
  if (player.Fade(player.SecondsPlayed(), seconds, pvcFadeOut)) m_fading.insert(m_player);
}

void Desk::ChangeVolume(std::int32_t step) {
  cPlayer& player = Pool().Player(m_player);
  player.SetInitialVolume(static_cast<std::int16_t>(Limit(player.PlayVolume() + step, 0, 100)));
}

void Desk::PressFunctionKey(std::int16_t number, std::int16_t held) {
  const auto item = held & kAlt ? ChosenItem() : nullptr;
  if ((held & kAlt) && !item) return;
  const auto code = static_cast<std::int16_t>(kFirstFunctionKey + number - 1);
  m_message.clear();
  if (!Pool().Players().CheckKeyPress(code, held, item))
    Refuse(fmt::format("F{}: nothing there (with alt it loads the chosen item)", number));
}

DeskLevels Desk::Levels(std::int16_t player) const {
  const auto found = m_levels.find(player);
  return found == m_levels.end() || Pool().Player(player).Status() != psPlaying ? DeskLevels{}
                                                                                : found->second;
}

std::string Desk::NumbersOnAir() const {
  std::string numbers;
  for (std::int16_t number = 1; number <= Pool().Players().NumberPlayers(); ++number)
    if (Pool().Player(number).Status() == psPlaying)
      numbers += (numbers.empty() ? "" : ", ") + std::to_string(number);
  return numbers;
}

void Desk::AskToLeave() {
  const std::string numbers = NumbersOnAir();
  if (numbers.empty()) return Stop();
  const bool several = numbers.find(',') != numbers.npos;
  Refuse(fmt::format("on the air: player{} {}. Leave, and stop {}? y or n", several ? "s" : "", numbers,
                     several ? "them" : "it"));
  m_asking = true;
}

void Desk::Answer(bool leave) {
  Say(leave ? "" : "staying");
  if (leave) Stop();
}

void Desk::Say(const std::string& text) {
  m_message = text;
  m_refusal = m_asking = false;
}

void Desk::Refuse(const std::string& text) {
  Say(text);
  m_refusal = true;
}

// A device's fault is heard from each of its players at once.
void Desk::HearError(const HeardEvent& heard) {
  m_told = true;
  if (heard.frame == m_errorFrame && m_message == heard.strValue1) return;
  m_errorFrame = heard.frame;
  Pool().tell(heard.strValue1);
}

// The record of the play is there by now.
void Desk::HearClosing(std::int16_t number) {
  m_fading.erase(number);
  m_levels.erase(number);
  if (m_played.erase(number) == 0) return;
  const auto log = Pool().Player(number).PreviousItemPlayLog();
  const auto item = log ? log->HardDiskItem() : nullptr;
  if (!item) return;
  for (DeskFile& file : m_files)
    if (file.item == item) file.played = true;
  if (m_asking) return;
  Say(fmt::format("player {} played {} to {}", number, Quoted(*item),
                  SecondsToText(static_cast<double>(log->Duration()), ettDuration, true)));
}

void Desk::Act(const HeardEvent& heard) {
  switch (heard.event) {
    case pePlaying:
      m_played.insert(heard.player);
      break;
    case peError:
      HearError(heard);
      break;
    case peClosing:
      HearClosing(heard.player);
      break;
    case peAudioEndReached:
      Pool().Player(heard.player).CloseItem();
      break;
    case peCued:
      m_fading.erase(heard.player);
      break;
    case peVolumeChangeEndNotify:
      if (heard.sValue1 == static_cast<float>(pvcFadeOut) && m_fading.count(heard.player) > 0)
        Pool().Player(heard.player).CloseItem();
      break;
  }
}

}  // namespace qm::cli
