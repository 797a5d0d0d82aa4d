#include "cli/LiveView.h"

#include <algorithm>

#include "cli/Failure.h"
#include "cli/LiveKeys.h"
#include "cli/LivePicture.h"
#include "cli/PlayRun.h"
#include "cli/Terminal.h"
#include "cli/TerminalText.h"
#include "item/cHDItem.h"
#include "kits/sound/cAudioFormat.h"
#include "playback/cPlayer.h"

namespace qm::cli {

namespace {

constexpr auto kInterval = std::chrono::milliseconds(50);

void TakeMarks(const cHDItem& item, LiveState& state) {
  state.audioStart = item.AudioStart(1);
  state.introStart = item.IntroStart(1);
  state.introEnd = item.IntroEnd(1);
  state.extro = item.Extro(1);
  state.audioEnd = item.AudioEnd(1);
}

LiveState StateOf(const PlayRun& run) {
  const cPlayer& player = run.Player();
  LiveState state;
  if (const auto whole = player.HDItem()) TakeMarks(*whole, state);
  if (const auto item = run.Item()) {
    state.title = item->FullDescription();
    state.format = item->AudioFormat()->FormatDescription();
  }
  state.item = run.ItemNumber();
  state.items = run.ItemCount();
  state.isList = player.ListMode();
  state.status = player.Status();
  state.section = player.Section();
  state.position = player.SecondsPlayed();
  state.remaining = player.SecondsRemaining();
  state.remainingExtro = player.SecondsRemainingExtro();
  state.inLoop = player.InLoop();
  state.volume = run.Volume();
  state.misses = run.Pool().Engine().CountMisses();
  return state;
}

}  // namespace

LiveView::LiveView(PlayRun& run, const Terminal& terminal)
    : m_teller(run), m_run(run), m_terminal(terminal), m_unicode(Terminal::TakesUnicode()) {
  // Of an item and of a list alike.
  m_levels = run.Player().events.LevelChanged.connect([this](std::int16_t left, std::int16_t right) {
    m_left = left;
    m_right = right;
  });
}

LiveView::~LiveView() {
  m_levels.disconnect();
}

void LiveView::Hear(const HeardEvent& heard) {
  const bool ofFade = heard.sValue1 == static_cast<float>(pvcFadeOut);
  if (heard.event == peVolumeChangeStartNotify && ofFade)
    m_fading = true;
  else if (heard.event == peClosed || (heard.event == peVolumeChangeEndNotify && ofFade))
    m_fading = false;
  const std::string line = m_teller.Line(heard);
  if (line.empty()) return;
  Erase();
  m_terminal.Write(line + "\n");
  Draw();
}

void LiveView::Press(const Key& key) {
  PressKey(key, m_run);
}

void LiveView::Refresh() {
  if (Clock::now() >= m_next) Draw();
}

void LiveView::Draw() {
  m_next = Clock::now() + kInterval;
  LiveState state = StateOf(m_run);
  state.fading = m_fading;
  if (state.status == psPlaying) {
    state.left = m_left;
    state.right = m_right;
  }
  const std::size_t width = m_terminal.Width();
  std::string text = ToBlockStart(width);
  m_widths.clear();
  // The last cell stays free: some terminals wrap when it is written.
  for (const std::string& line : DrawLive(state, std::max<std::size_t>(width, 2) - 1, m_unicode)) {
    text += line + "\x1b[K\n";
    m_widths.push_back(TextWidth(line));
  }
  m_terminal.Write(text + "\x1b[J");
}

// A terminal that has become narrower since has wrapped the lines.
std::string LiveView::ToBlockStart(std::size_t width) const {
  std::size_t rows = 0;
  for (std::size_t cells : m_widths) rows += std::max<std::size_t>(1, (cells + width - 1) / width);
  return rows > 0 ? "\r\x1b[" + std::to_string(rows) + "A" : "\r";
}

void LiveView::Erase() {
  m_terminal.Write(ToBlockStart(m_terminal.Width()) + "\x1b[J");
  Leave();
}

void LiveView::Tell(const std::string& text) {
  Erase();
  TellFailure(text);
  Draw();
}

}  // namespace qm::cli
