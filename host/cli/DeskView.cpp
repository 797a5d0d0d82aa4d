#include "cli/DeskView.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/Desk.h"
#include "cli/LivePicture.h"
#include "cli/Terminal.h"
#include "cli/TerminalText.h"
#include "item/cHDItem.h"
#include "kits/common/Clock.h"
#include "kits/common/Dates.h"
#include "kits/sound/engine/AudioEngine.h"
#include "playback/cPlayLog.h"
#include "playback/cPlayer.h"
#include "playback/cPlayers.h"
#include "settings/cAudioSettings.h"

namespace qm::cli {

namespace {

constexpr auto kInterval = std::chrono::milliseconds(40);

constexpr const char* kStyles[] = {
    "", "\x1b[2m", "\x1b[1m", "\x1b[7m", "\x1b[1;37;41m", "\x1b[30;43m", "\x1b[1;31m", "\x1b[7m"};

// The function keys as the pool gives them out: four a player, with shift the fourth player's and on. Below
// six players, shift and the third four work the recorder.
void TakeKeys(std::int16_t players, DeskPlayer& shown) {
  constexpr std::int16_t kWithoutShift = 3, kWithShift = 7, kKeysOfPlayer = 4;
  constexpr std::int16_t kRecordersTurn = 6;
  if (shown.number > kWithShift || (shown.number == kRecordersTurn && players < kRecordersTurn)) return;
  shown.keysWithShift = shown.number > kWithoutShift;
  const int group = shown.number - (shown.keysWithShift ? kWithoutShift : 0) - 1;
  shown.firstKey = static_cast<std::int16_t>(group * kKeysOfPlayer + 1);
}

std::string LastPlay(const cPlayer& player) {
  const auto log = player.PreviousItemPlayLog();
  const auto item = log ? log->HardDiskItem() : nullptr;
  if (!item || log->StartDate() == 0) return {};
  return fmt::format("played {} to {}", item->FullDescription(),
                     SecondsToText(static_cast<double>(log->Duration()), ettDuration, true));
}

void TakeTimes(const cPlayer& player, const cHDItem& item, DeskPlayer& shown) {
  const bool waiting = shown.status == psCued || shown.status == psOpen;
  const float position = waiting ? item.AudioStart(1) : player.SecondsPlayed();
  shown.toEnd = item.AudioEnd(1) - position;
  shown.hasExtro = item.Extro(1) > 0 && item.Extro(1) < item.AudioEnd(1);
  shown.toExtro = item.Extro(1) - position;
  shown.toIntroEnd = item.IntroEnd(1) - position;
}

DeskPlayer StateOf(const Desk& desk, std::int16_t number) {
  const PlayPool& pool = desk.Pool();
  const cPlayer& player = pool.Player(number);
  DeskPlayer shown;
  shown.number = number;
  shown.caption = pool.Settings().PlayerCaption(number);
  TakeKeys(pool.Players().NumberPlayers(), shown);
  shown.lastPlay = LastPlay(player);
  shown.status = player.Status();
  shown.section = player.Section();
  shown.volume = player.PlayVolume();
  shown.left = desk.Levels(number).left;
  shown.right = desk.Levels(number).right;
  shown.inLoop = player.InLoop();
  shown.fading = desk.Fading(number);
  shown.chosen = number == desk.ChosenPlayer();
  shown.title = player.ReservationCaption();
  if (const auto item = player.HDItem()) {
    shown.title = item->FullDescription();
    TakeTimes(player, *item, shown);
  }
  return shown;
}

// Where the file is now, else what has become of it.
std::string NoteOf(const Desk& desk, const DeskFile& file) {
  std::string note;
  for (std::int16_t number = 1; number <= desk.Pool().Players().NumberPlayers(); ++number) {
    const cPlayer& player = desk.Pool().Player(number);
    if (file.item && player.HDItem() == file.item)
      note += fmt::format("{}{} on {}", note.empty() ? "" : ", ",
                          player.Status() == psPlaying ? "on the air" : StatusWords(player.Status()), number);
  }
  if (note.empty() && file.played) note = "played";
  return note;
}

DeskRow RowOf(const Desk& desk, const DeskFile& file) {
  if (!file.item)
    return {file.argument.path, "", file.errorText.empty() ? "" : "cannot be read", !file.errorText.empty()};
  return {file.item->FullDescription(),
          SecondsToText(static_cast<double>(file.item->AudioLength(1)), ettDuration, false),
          NoteOf(desk, file), false};
}

DeskState StateOf(const Desk& desk) {
  DeskState state;
  const std::int16_t players = desk.Pool().Players().NumberPlayers();
  for (std::int16_t number = 1; number <= players; ++number) state.players.push_back(StateOf(desk, number));
  for (const DeskFile& file : desk.Files()) state.rows.push_back(RowOf(desk, file));
  state.chosenRow = desk.ChosenFile();
  state.clock =
      SecondsToText(static_cast<double>(LocalDateTime(std::chrono::system_clock::now()).Time), ettClock);
  state.message = desk.Message();
  state.refusal = desk.IsRefusal();
  const AudioEngine::Misses misses = desk.Pool().Engine().CountMisses();
  state.misses = misses.lateAnswers + misses.voicesNotReady + misses.dryCallbacks;
  return state;
}

// Every stretch is put at its own place: a character that the terminal takes for wider or narrower than the
// system's table of widths does shifts nothing behind it.
std::string LineText(std::size_t row, const DeskLine& line) {
  std::string text;
  std::size_t column = 1;
  for (const DeskSpan& span : line) {
    text += fmt::format("\x1b[{};{}H{}{}", row, column, kStyles[span.style], span.text);
    if (span.style != edsPlain) text += "\x1b[m";
    column += TextWidth(span.text);
  }
  return text;
}

}  // namespace

DeskView::DeskView(Desk& desk, const Terminal& terminal)
    : m_desk(desk), m_terminal(terminal), m_unicode(Terminal::TakesUnicode()) {}

void DeskView::Refresh() {
  if (Clock::now() >= m_next) Draw();
}

void DeskView::Draw() {
  m_next = Clock::now() + kInterval;
  const std::size_t width = m_terminal.Width(), height = m_terminal.Height();
  std::string text;
  if (width != m_width || height != m_height || m_lines.empty()) {
    m_lines.clear();
    text = "\x1b[2J";
    m_width = width;
    m_height = height;
  }
  auto lines = DrawDesk(StateOf(m_desk), width, height, m_unicode);
  for (std::size_t row = 0; row < lines.size(); ++row)
    if (row >= m_lines.size() || m_lines[row] != lines[row]) text += LineText(row + 1, lines[row]);
  m_lines = std::move(lines);
  if (!text.empty()) m_terminal.Write(text);
}

void DeskView::Tell(const std::string& text) {
  m_desk.Refuse(text);
}

void DeskView::Press(const Key& key) {
  PressKey(key, m_desk);
  m_next = {};  // a key is answered at once
}

}  // namespace qm::cli
