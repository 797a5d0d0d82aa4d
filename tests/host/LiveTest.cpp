#include <gmock/gmock.h>

#include "OnTerminal.h"
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
  state.item = 2, state.items = 3;
  state.status = psPlaying, state.section = epsMain;
  state.position = 50, state.remaining = 50, state.remainingExtro = 30;
  state.introEnd = 10, state.extro = 80, state.audioEnd = 100;
  state.volume = 90, state.left = 32767;
  return state;
}

TEST(LivePicture, TellsStateInWordsAndPlaceOnTheBar) {
  LiveState state = Somewhere();
  const auto lines = DrawLive(state, 100, true);
  EXPECT_EQ(lines[0], "2/3  Caf\u00e9 \u97f3\u697d  Ogg 44100 Hz stereo");
  EXPECT_EQ(lines[1], "playing  main              volume  90");
  EXPECT_EQ(lines[3], "0:50.00 played   0:50.00 left   extro in 0:30.00");
  EXPECT_NE(lines[4].find(" 0.0 dB"), std::string::npos) << lines[4];
  EXPECT_EQ(DrawLive(state, 20, false)[2], "==I=======O-----E---");
  state.position = 100;
  EXPECT_EQ(DrawLive(state, 20, false)[2], "==I=============E==O");
  state.position = state.audioStart = 40;
  EXPECT_EQ(DrawLive(state, 12, false)[2], "O-------E---");
  state.audioEnd = 0;
  EXPECT_EQ(DrawLive(state, 12, false)[2], "------------");
  for (std::size_t width = 1; width <= 140; ++width)
    for (const bool unicode : {false, true})
      for (const std::string& line : DrawLive(Somewhere(), width, unicode))
        EXPECT_LE(TextWidth(line), width) << line;
}

TEST(TerminalText, CountsCells) {
  EXPECT_EQ(TextWidth("Caf\u00e9"), 4u);
  EXPECT_EQ(TextWidth("\u97f3\u697d"), 4u);
  EXPECT_EQ(FitText("\u97f3\u697d", 3), "\u97f3 ");
  EXPECT_EQ(CutText("a\x1b[2J\xff", 9), "a?[2J?");
}

TEST(KeyReader, ReadsWhatTerminalsSend) {
  const std::pair<std::string, Key> sent[] = {
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
  for (const auto& [bytes, sentKey] : sent) {
    const std::size_t last = bytes[0] == '\x1b' ? bytes.size() - 1 : 0;
    for (std::size_t at = 0; at < last; ++at) {
      split.Feed(bytes.substr(at, 1), now);
      EXPECT_FALSE(split.Take(key, now)) << bytes;
    }
    split.Feed(bytes.substr(last), now);
    EXPECT_TRUE(split.Take(key, now) && key == sentKey) << bytes << " " << key.code << " " << key.held;
    all += bytes;
  }
  whole.Feed(all, now);
  for (const auto& [bytes, sentKey] : sent) EXPECT_TRUE(whole.Take(key, now) && key == sentKey) << bytes;
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

class LiveProgram : public OnTerminal {};

TEST_F(LiveProgram, ObeysKeysAndPutsTheTerminalBack) {
  Start("play a.wav a.wav::ItemTitle=Second --device null");
  ASSERT_TRUE(See("playing  main"));
  Work({{" ", "paused"},
        {"\x1b[C", "0:05."},
        {"[[", "volume  90"},
        {"c", "cued     main"},
        {"n", "2/2  Second"},
        {"", "playing  main"},
        {"q", ""}});
  ExpectEnd(0);
}

TEST_F(LiveProgram, PutsTheTerminalBackWhenEndedFromOutside) {
  for (const int number : {SIGTERM, SIGINT, SIGABRT}) {
    Start("play a.wav --device null");
    ASSERT_TRUE(See("playing  main"));
    m_run->Signal(number);
    ExpectEnd(number == SIGABRT ? -SIGABRT : 128 + number);
  }
}

}  // namespace
}  // namespace qm::cli
