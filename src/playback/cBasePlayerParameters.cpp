#include <cmath>
#include <limits>

#include "item/cHDItem.h"
#include "kits/common/Numbers.h"
#include "kits/sound/ctlVellanPlayer.h"
#include "playback/LoopLimits.h"
#include "playback/PlayerOperation.h"
#include "playback/cBasePlayer.h"

// Live changes of the open item's marks and loop.
namespace qm {
namespace {

enum class MovesWhen { Below, Above };

struct Neighbour {
  enChangeHDItemParam param;
  MovesWhen when;
};

struct MarkRow {
  enChangeHDItemParam param;
  float (cHDItem::*time)(std::int32_t) const;
  void (cHDItem::*setTime)(std::int32_t, float);
  std::int32_t event;                        // the mark that goes with it, 0 for none
  void (ctlVellanPlayer::*setBound)(float);  // else the bound of the control
  Neighbour neighbours[4];                   // in the order in which they move; the rest is 0
};

constexpr auto Below = MovesWhen::Below;
constexpr auto Above = MovesWhen::Above;

constexpr MarkRow kMarkRows[] = {
    {hipAudioStart,
     &cHDItem::AudioStart,
     &cHDItem::SetAudioStart,
     0,
     &ctlVellanPlayer::SetAudioStart,
     {{hipIntroStart, Below}, {hipIntroEnd, Below}, {hipExtro, Below}}},
    {hipIntroStart,
     &cHDItem::IntroStart,
     &cHDItem::SetIntroStart,
     peIntroStartReached,
     nullptr,
     {{hipIntroEnd, Below}, {hipExtro, Below}}},
    {hipIntroEnd,
     &cHDItem::IntroEnd,
     &cHDItem::SetIntroEnd,
     peIntroEndReached,
     nullptr,
     {{hipIntroStart, Above}, {hipExtro, Below}}},
    {hipHookStart,
     &cHDItem::HookStart,
     &cHDItem::SetHookStart,
     peHookStartReached,
     nullptr,
     {{hipHookEnd, Below}}},
    {hipHookEnd, &cHDItem::HookEnd, &cHDItem::SetHookEnd, peHookEndReached, nullptr, {{hipHookStart, Above}}},
    {hipExtro, &cHDItem::Extro, &cHDItem::SetExtro, peExtroReached, nullptr, {}},
    {hipAudioEnd,
     &cHDItem::AudioEnd,
     &cHDItem::SetAudioEnd,
     0,
     &ctlVellanPlayer::SetAudioEnd,
     {{hipAudioStart, Above}, {hipIntroStart, Above}, {hipIntroEnd, Above}, {hipExtro, Above}}},
};

constexpr std::uint32_t Bit(std::int32_t param) {
  return 1u << param;
}

}  // namespace

bool cBasePlayer::ChangeHDItemParameter(enChangeHDItemParam Param, float NewSetting) {
  PlayerOperation operation(*this, "ChangeHDItemParameter");
  if (!Ready() || m_status == psClosed || !CurrentItem()) return operation.Exit("No Item");
  if (Param < hipAudioStart || Param > hipLoopPlayToEnd || !std::isfinite(NewSetting))
    return operation.Exit("Not A Setting");
  return ChangeParameter(Param, NewSetting, 0);
}

// `underway` holds the parameters that are being changed further out: on an item whose marks contradict each
// other two neighbours would push each other for ever.
bool cBasePlayer::ChangeParameter(std::int32_t param, float setting, std::uint32_t underway) {
  underway |= Bit(param);
  if (param <= hipAudioEnd) return ChangeMark(param, setting, underway);
  if (param == hipLoopStart) ChangeLoopStart(setting, underway);
  if (param == hipLoopEnd) ChangeLoopEnd(setting, underway);
  if (param == hipLoopNumberLoops) ChangeNumberLoops(setting);
  if (param == hipLoopPlayToEnd) m_item->SetLoopPlayToEnd(setting != 0);
  return false;
}

bool cBasePlayer::ChangeMark(std::int32_t param, float setting, std::uint32_t underway) {
  const MarkRow& row = kMarkRows[param - hipAudioStart];
  const ItemVisit visit = m_visit;
  const float last = param == hipAudioEnd ? std::numeric_limits<float>::max() : m_item->AudioEnd(1);
  setting = Limit(setting, 0.0f, last);
  for (const Neighbour& neighbour : row.neighbours) {
    if (neighbour.param == 0 || (underway & Bit(neighbour.param))) continue;
    const float theirs = (*m_item.*kMarkRows[neighbour.param - hipAudioStart].time)(1);
    if (neighbour.when == Below ? theirs >= setting : theirs <= setting) continue;
    ChangeParameter(neighbour.param, setting, underway);
    if (!Stays(visit)) return false;
  }
  (*m_item.*row.setTime)(1, setting);
  if (row.setBound)
    (*m_control.*row.setBound)(setting);
  else if (setting > 0)
    m_control->AddPositionEvent({setting, row.event, 0});
  else
    m_control->RemovePositionEvent(row.event, 0);
  HandlePosition(-1);
  return true;
}

void cBasePlayer::ClearLoop() {
  m_item->SetLoopStart(0);
  m_item->SetLoopEnd(0);
  m_control->SetUseLoop(false);
  m_control->SetLoopStart(0);
  m_control->SetLoopEnd(0);
}

void cBasePlayer::ChangeLoopStart(float setting, std::uint32_t underway) {
  if (setting == 0) return ClearLoop();
  setting = Greater(setting, kEarliestLoopStart);
  m_item->SetLoopStart(setting);
  m_control->SetLoopStart(setting);
  if (m_item->LoopEnd() - kShortestLoop <= setting && !(underway & Bit(hipLoopEnd)))
    ChangeParameter(hipLoopEnd, setting + kShortestLoop, underway);
  m_control->SetUseLoop(true);
}

void cBasePlayer::ChangeLoopEnd(float setting, std::uint32_t underway) {
  if (setting == 0) {
    m_item->SetLoopNumberLoops(0);
    return ClearLoop();
  }
  setting = Greater(setting, kEarliestLoopEnd);
  m_item->SetLoopEnd(setting);
  m_control->SetLoopEnd(setting);
  if (m_item->LoopStart() + kShortestLoop > setting && !(underway & Bit(hipLoopStart)))
    ChangeParameter(hipLoopStart, setting - kShortestLoop, underway);
  m_control->SetUseLoop(true);
}

void cBasePlayer::ChangeNumberLoops(float setting) {
  const bool looped = m_item->LoopStart() >= 0 && m_item->LoopEnd() > 0;
  const std::int64_t whole = RoundToWhole(setting == 0 ? kEndlessLoops : setting);
  const auto loops =
      static_cast<std::int32_t>(looped ? Limit<std::int64_t>(whole, std::numeric_limits<std::int32_t>::min(),
                                                             std::numeric_limits<std::int32_t>::max())
                                       : 0);
  m_item->SetLoopNumberLoops(loops);
  m_control->SetUseLoop(looped);
  m_control->SetLoopCount(loops);
}

}  // namespace qm
