#include "cli/PlainView.h"

#include <fmt/format.h>

#include <cstdio>

#include "cli/PlayRun.h"
#include "contract/PlayerVocabulary.h"
#include "item/cHDItem.h"
#include "kits/common/Dates.h"
#include "kits/sound/cAudioFormat.h"

namespace qm::cli {

namespace {

struct Words {
  std::int32_t event;
  const char* words;
  bool fadeOnly = false;
};

constexpr Words kWords[] = {
    {peOpened, "opened"},
    {peCued, "cued"},
    {pePlaying, "playing"},
    {pePaused, "paused"},
    {peIntroStartReached, "intro start"},
    {peIntroEndReached, "intro end"},
    {peHookStartReached, "hook start"},
    {peHookEndReached, "hook end"},
    {peLoopRestart, "loop restart"},
    {peLoopCompleted, "loop completed"},
    {peExtroReached, "extro"},
    {peVolumeChangeStartNotify, "fade begins", true},
    {peFadingOut, "fading out"},
    {peVolumeChangeEndNotify, "fade ends", true},
    {pePlayerListCurrentItemChanged, "next item"},
    {pePlayerListItemFinished, "item finished"},
    {peAudioEndReached, "audio end"},
    {peClosed, "closed"},
};

std::string TimeText(double seconds) {
  return SecondsToText(seconds, ettDuration, true);
}

std::string ItemText(const PlayRun& run, const cHDItem& item) {
  return fmt::format("{}/{}  {}  ({}, {})", run.ItemNumber(), run.ItemCount(), item.FullDescription(),
                     item.AudioFormat()->FormatDescription(), TimeText(item.TotalLength()));
}

}  // namespace

const char* EventWords(const HeardEvent& heard) {
  for (const Words& row : kWords)
    if (row.event == heard.event && (!row.fadeOnly || heard.sValue1 == static_cast<float>(pvcFadeOut)))
      return row.words;
  return "";
}

std::string PlayTeller::Line(const HeardEvent& heard) {
  const char* words = EventWords(heard);
  // An item that could not be opened is closed as well.
  if (!*words || (heard.event == peClosed && !m_open)) return {};
  m_open = heard.event != peClosed;
  const bool begins = heard.event == peOpened || heard.event == pePlayerListCurrentItemChanged;
  std::string detail;
  if (const auto item = m_run.Item(); begins && item)
    detail = ItemText(m_run, *item);
  else if (heard.event == pePlayerListItemFinished)
    detail = heard.hdReference;
  else if (m_open)
    detail = "at " + TimeText(m_run.Position());
  const std::string line = fmt::format("{:>10}  {:<15}{}", TimeText(heard.Seconds()), words, detail);
  return line.substr(0, line.find_last_not_of(' ') + 1);
}

void PlainView::Hear(const HeardEvent& heard) {
  const std::string line = m_teller.Line(heard);
  if (line.empty()) return;
  fmt::print("{}\n", line);
  std::fflush(stdout);
}

}  // namespace qm::cli
