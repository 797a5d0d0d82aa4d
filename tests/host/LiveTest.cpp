#include <gmock/gmock.h>
#include <pty.h>
#include <termios.h>
#include <utmp.h>

#include "ProgramRun.h"
#include "cli/LivePicture.h"
#include "cli/TerminalKeys.h"
#include "cli/TerminalText.h"

namespace qm::cli {
namespace {

using namespace test;

LiveState Somewhere() {
  LiveState state;
  state.title = "Caf\u00e9 \u97f3\u697d";
  state.format = "Ogg 44100 Hz stereo";
  state.item = 2;
  state.items = 3;
  state.status = psPlaying;
  state.section = epsMain;
  state.position = 50;
  state.remaining = 50;
  state.remainingExtro = 30;
  state.introEnd = 10;
  state.extro = 80;
  state.audioEnd = 100;
  state.volume = 90;
  state.left = 32767;
  return state;
}

TEST(LivePicture, FitsEveryWidth) {
  for (std::size_t width = 1; width <= 140; ++width)
    for (const bool unicode : {false, true})
      for (const std::string& line : DrawLive(Somewhere(), width, unicode))
        EXPECT_LE(TextWidth(line), width) << line;
}

TEST(LivePicture, ShowsMarksAndPlaceOnTheBar) {
  LiveState state = Somewhere();
  EXPECT_EQ(DrawLive(state, 20, false)[2], "==I=======O-----E---");
  state.position = 100;
  EXPECT_EQ(DrawLive(state, 20, false)[2], "==I=============E==O");
  state.audioStart = 40;
  state.position = 40;
  EXPECT_EQ(DrawLive(state, 12, false)[2], "O-------E---");
  state.audioEnd = 0;
  EXPECT_EQ(DrawLive(state, 12, false)[2], "------------");
}

TEST(LivePicture, TellsStateInWords) {
  const auto lines = DrawLive(Somewhere(), 100, true);
  EXPECT_EQ(lines[0], "2/3  Caf\u00e9 \u97f3\u697d  Ogg 44100 Hz stereo");
  EXPECT_EQ(lines[1], "playing  main              volume  90");
  EXPECT_EQ(lines[3], "0:50.00 played   0:50.00 left   extro in 0:30.00");
  EXPECT_NE(lines[4].find(" 0.0 dB"), std::string::npos) << lines[4];
}

TEST(TerminalText, CountsCells) {
  EXPECT_EQ(TextWidth("Caf\u00e9"), 4u);
  EXPECT_EQ(TextWidth("\u97f3\u697d"), 4u);
  EXPECT_EQ(FitText("\u97f3\u697d", 3), "\u97f3 ");
  EXPECT_EQ(CutText("a\x1b[2J\xff", 9), "a?[2J?");
}

struct SentKey {
  std::string bytes;
  Key key;
};

TEST(KeyReader, ReadsWhatTerminalsSend) {
  const SentKey sent[] = {
      {"c", {'c', 0}},
      {"\n", {ekEnter, 0}},
      {"\u00e9", {0xE9, 0}},
      {"\x1bp", {'p', ehAlt}},
      {"\x1b[A", {ekUp, 0}},
      {"\x1bOD", {ekLeft, 0}},
      {"\x1b[1;5C", {ekRight, ehControl}},
      {"\x1b[6~", {ekPageDown, 0}},
      {"\x1bOP", {ekF1, 0}},               // xterm
      {"\x1b[1;2P", {ekF1, ehShift}},      // xterm
      {"\x1bO5S", {ekF1 + 3, ehControl}},  // older terminals
      {"\x1bO1;3R", {ekF1 + 2, ehAlt}},
      {"\x1b[11~", {ekF1, 0}},
      {"\x1b[[E", {ekF1 + 4, 0}},  // Linux console
      {"\x1b[15;8~", {ekF1 + 4, ehShift | ehControl | ehAlt}},
      {"\x1b[24~", {ekF1 + 11, 0}},
      {"\x1b[23^", {ekF1 + 10, ehControl}},  // rxvt
      {"\x1b\x1bOQ", {ekF1 + 1, ehAlt}},     // rxvt
      {"\x1b[29~", {ekF16, 0}},
      {"\x1b[99~", {ekUnknown, 0}},
  };
  KeyReader whole, split;
  const KeyReader::Time now{};
  Key key;
  std::string all;
  for (const SentKey& row : sent) {
    for (std::size_t at = 0; at + 1 < row.bytes.size() && row.bytes[0] == '\x1b'; ++at) {
      split.Feed(row.bytes.substr(at, 1), now);
      EXPECT_FALSE(split.Take(key, now)) << row.bytes;
    }
    split.Feed(row.bytes[0] == '\x1b' ? row.bytes.substr(row.bytes.size() - 1) : row.bytes, now);
    ASSERT_TRUE(split.Take(key, now)) << row.bytes;
    EXPECT_EQ(key.code, row.key.code) << row.bytes;
    EXPECT_EQ(key.held, row.key.held) << row.bytes;
    all += row.bytes;
  }
  whole.Feed(all, now);
  for (const SentKey& row : sent) EXPECT_TRUE(whole.Take(key, now) && key == row.key) << row.bytes;
}

TEST(KeyReader, TakesAnEscapeThatNothingFollowsForAKey) {
  KeyReader reader;
  const KeyReader::Time now{};
  Key key;
  reader.Feed("\x1b", now);
  EXPECT_FALSE(reader.Take(key, now));
  EXPECT_TRUE(reader.Take(key, now + KeyReader::kPatience));
  EXPECT_EQ(key.code, ekEscape);
}

// The program on a terminal of its own.
class OnTerminal : public testing::Test {
 protected:
  void Start(std::vector<std::string> words) {
    WriteBytes(m_folder.File("a.wav"), Wav16(Noise16(44100 * 60, 0.1), 44100, 1));
    int slave = -1;
    winsize size{24, 100, 0, 0};
    ASSERT_EQ(openpty(&m_terminal, &slave, nullptr, nullptr, &size), 0);
    ASSERT_EQ(tcgetattr(slave, &m_former), 0);
    m_slave = slave;
    m_id = fork();
    if (m_id != 0) return;
    setenv("XDG_CONFIG_HOME", m_folder.Path().c_str(), 1);
    if (chdir(m_folder.Path().c_str()) != 0 || login_tty(slave) != 0) _exit(126);
    ProgramRun::Execute(words);
  }
  ~OnTerminal() override {
    if (m_id > 0) {
      kill(m_id, SIGKILL);
      waitpid(m_id, nullptr, 0);
    }
    close(m_slave);
    close(m_terminal);
  }

  // Reads on until the text has come.
  bool See(const std::string& text) {
    char bytes[4096];
    while (m_seen.find(text) == std::string::npos) {
      const ssize_t got = read(m_terminal, bytes, sizeof bytes);
      if (got <= 0) return false;
      m_seen.append(bytes, static_cast<std::size_t>(got));
    }
    m_seen.erase(0, m_seen.find(text) + text.size());
    return true;
  }
  void Press(const std::string& keys) {
    ASSERT_EQ(write(m_terminal, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }
  int Status() {
    int status = 0;
    waitpid(m_id, &status, 0);
    m_id = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }
  // The terminal is as it was before, with its cursor shown.
  void ExpectRestored() {
    EXPECT_TRUE(See("\x1b[?25h"));
    termios now{};
    ASSERT_EQ(tcgetattr(m_slave, &now), 0);
    EXPECT_EQ(now.c_lflag, m_former.c_lflag);
    EXPECT_EQ(now.c_cc[VMIN], m_former.c_cc[VMIN]);
  }

  TempFolder m_folder;
  pid_t m_id = -1;
  int m_terminal = -1, m_slave = -1;
  termios m_former{};
  std::string m_seen;
};

TEST_F(OnTerminal, ObeysKeysAndPutsTheTerminalBack) {
  Start(Quillmere({"play", "a.wav", "a.wav::ItemTitle=Second", "--device", "null"}));
  ASSERT_TRUE(See("playing  main"));
  Press(" ");
  ASSERT_TRUE(See("paused"));
  Press("\x1b[C");
  ASSERT_TRUE(See("0:05."));
  Press("[[");
  ASSERT_TRUE(See("volume  90"));
  Press("c");
  ASSERT_TRUE(See("cued     main"));
  Press("n");
  ASSERT_TRUE(See("2/2  Second"));
  ASSERT_TRUE(See("playing  main"));
  Press("q");
  ExpectRestored();
  EXPECT_EQ(Status(), 0);
}

TEST_F(OnTerminal, PutsTheTerminalBackWhenEndedFromOutside) {
  for (const int number : {SIGTERM, SIGINT, SIGABRT}) {
    Start(Quillmere({"play", "a.wav", "--device", "null"}));
    ASSERT_TRUE(See("playing  main"));
    kill(m_id, number);
    ExpectRestored();
    EXPECT_EQ(Status(), number == SIGABRT ? -SIGABRT : 128 + number);
    close(m_slave);
    close(m_terminal);
  }
}

}  // namespace
}  // namespace qm::cli
