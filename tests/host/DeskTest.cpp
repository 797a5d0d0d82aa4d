#include <gmock/gmock.h>

#include "OnTerminal.h"
#include "cli/DeskPicture.h"
#include "cli/TerminalText.h"

namespace qm::cli {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;

std::string TextOf(const DeskLine& line) {
  std::string text;
  for (const DeskSpan& span : line) text += span.text;
  return text;
}

DeskState Studio(int players) {
  DeskState state;
  for (int number = 1; number <= players; ++number) {
    const auto reference = static_cast<std::int16_t>(number);
    DeskPlayer player;
    player.number = reference, player.firstKey = static_cast<std::int16_t>(reference * 4 - 3);
    player.title = "Caf\u00e9 \u97f3\u697d \u97f3\u697d \u97f3\u697d \u97f3\u697d \u97f3\u697d \u97f3\u697d";
    player.status = number % 2 ? psPlaying : psClosed;
    player.hasExtro = true, player.toExtro = 3725.5f, player.toEnd = 3730;
    player.chosen = number == players;
    state.players.push_back(player);
  }
  for (int row = 1; row <= 60; ++row)
    state.rows.push_back({"\u97f3\u697d " + std::to_string(row), "3:12.00", "on the air on 1", false});
  state.chosenRow = 41;
  state.clock = "12:00:00";
  state.message = "the last to give way";
  return state;
}

TEST(DeskPicture, FillsEveryWindowToTheCellWithTheChosenFileInSight) {
  for (const int players : {1, 4, 7, 12})
    for (std::size_t width = 1; width <= 150; width += width < 40 ? 1 : 7)
      for (const std::size_t height : {1, 4, 12, 24, 60})
        for (const bool unicode : {true, false}) {
          const auto lines = DrawDesk(Studio(players), width, height, unicode);
          ASSERT_EQ(lines.size(), height);
          for (const DeskLine& line : lines) ASSERT_EQ(TextWidth(TextOf(line)), width) << TextOf(line);
          EXPECT_EQ(lines.back()[0].text, FitText("the last to give way", width));
        }
  for (const std::size_t chosen : {0u, 1u, 30u, 59u}) {
    DeskState state = Studio(12);
    state.chosenRow = chosen;
    std::string picture;
    for (const DeskLine& line : DrawDesk(state, 80, 24, true)) picture += TextOf(line) + '\n';
    EXPECT_THAT(picture, HasSubstr("> " + std::string(chosen < 9 ? " " : "") + std::to_string(chosen + 1)));
  }
}

class DeskProgram : public OnTerminal {};

TEST_F(DeskProgram, WorksPlayersByKeysAndLogsWhatWasPlayed) {
  WriteBytes(m_folder.File("short.wav"), Wav16(Noise16(4410, 0.1), 44100, 1));
  Start(
      "play --desk a.wav a.wav::ItemTitle=Second,Reference=second short.wav gone.wav --device null "
      "--playlogs logs");
  ASSERT_TRUE(See("cannot be read"));  // the whole list has been looked at
  Work({
      {"\r", "player 1 has cued 'a'"},
      {"\x1b[B\x1b[15;3~", "on the air on 2"},  // down, and alt with F5
      {"\x1bOP", "on the air on 1"},            // F1
      {"\x1b[12~", "paused"},                   // F2
      {"\x1b[B3", "player 3 has cued 'short'"},
      {"a", "player 3 played 'short' to 0:00.10"},
      {"\x1b[F\r", "cannot open 'gone.wav'"},
      {"\x1bOR", "cued"},                 // F3 cues what is paused
      {"\x1bOS", "player 1 played 'a'"},  // F4 closes it
      {"q", "on the air: player 2. Leave"},
      {"n", "staying"},
      {"q", "on the air: player 2. Leave"},
      {"y", "\x1b[?1049l"},  // the former screen
  });
  ExpectEnd(0);
  std::vector<std::string> logged;
  for (const std::string& line : Lines(ReadBytes(m_folder.File("logs"))))
    logged.push_back(line.substr(0, line.find(' ')) + line.substr(line.find(" Player="), 9));
  EXPECT_THAT(logged, ElementsAre("HDRef=\"short.wav\" Player=3", "HDRef=\"a.wav\" Player=1",
                                  "HDRef=\"second\" Player=2"));
}

TEST_F(DeskProgram, FollowsTheWindowAndGivesTheScreenBackWhenEnded) {
  Start("play --players 12 a.wav --device null");
  ASSERT_TRUE(See("q quit"));
  for (const winsize& size : {winsize{5, 18, 0, 0}, winsize{40, 130, 0, 0}}) {
    ASSERT_EQ(ioctl(m_terminal, TIOCSWINSZ, &size), 0);
    ASSERT_TRUE(See("\x1b[2J"));
    ASSERT_TRUE(See("\x1b[" + std::to_string(size.ws_row) + ";1H"));  // the bottom line
  }
  m_run->Signal(SIGTERM);
  ASSERT_TRUE(See("\x1b[?1049l"));
  ExpectEnd(128 + SIGTERM);
}

}  // namespace
}  // namespace qm::cli
