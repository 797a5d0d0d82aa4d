#include "contract/IPlayerCallback.h"
#include "item/cHDItem.h"
#include "kits/sound/ctlVellanPlayer.h"
#include "playback/PlayerOperation.h"
#include "playback/cBasePlayer.h"

// What the player says, and what its control says to it.
namespace qm {

void cBasePlayer::TellListeners(std::int32_t event, std::string hdReference, float& sValue1, float& sValue2,
                                std::string strValue1) {
  std::string strValue2;
  if (!m_eventsInhibited) events.PlayerEvent(event, hdReference, sValue1, sValue2, strValue1, strValue2);
}

void cBasePlayer::TellOwner(std::int32_t event, std::string hdReference, float& sValue1, float& sValue2,
                            std::string strValue1) {
  std::string strValue2;
  const auto owner = m_callback;
  if (owner && !m_eventsInhibited)
    owner->PlayerEvent(m_reference, event, hdReference, sValue1, sValue2, strValue1, strValue2);
}

void cBasePlayer::ReportWith(std::int32_t event, const std::string& hdReference, float sValue1, float sValue2,
                             const std::string& strValue1) {
  float first = sValue1, second = sValue2;
  TellListeners(event, hdReference, first, second, strValue1);
  TellOwner(event, hdReference, sValue1, sValue2, strValue1);
}

void cBasePlayer::Report(std::int32_t event, float sValue1, float sValue2, const std::string& strValue1) {
  ReportWith(event, HDReference(), sValue1, sValue2, strValue1);
}

cBasePlayer::Answer cBasePlayer::Query(std::int32_t event, const std::string& hdReference,
                                       float& listenersValue, float& ownersValue) {
  const std::string reference = hdReference;
  float cancel = 0;
  TellListeners(event, reference, listenersValue, cancel);
  TellOwner(event, reference, ownersValue, cancel);
  return cancel == 0 ? Answer::Go : Answer::Refused;
}

void cBasePlayer::HandlePlayerEvent(std::int32_t event, float sValue1, float sValue2,
                                    const std::string& strValue1) {
  if (m_eventsInhibited) return;
  const PlayerKeeper keeper(*this);
  switch (event) {
    case pePlaying:
    case pePaused:
      return;  // the transport has reported them itself
    case peClosed:
    case peCued:
    case peOpened:
      return RecomputeSection(m_control->SecondsPlayed());
    case pePositionChanged:
      return HandlePosition(sValue1);
    case peSweeperStartReached:
      PlayLinkedPlayer();
      break;
    case peHookEndReached:
      if (m_closeAtHookEnd) CloseItem();
      break;
    case peVolumeChangeNotify:
      HandleFadeNotify(sValue1);
      break;
    case peAudioLevelChanged:
      events.LevelChanged(static_cast<std::int16_t>(sValue1), static_cast<std::int16_t>(sValue2));
      break;
  }
  if (m_control) Report(event, sValue1, sValue2, strValue1);
}

void cBasePlayer::HandleFadeNotify(float reference) {
  if (reference != static_cast<float>(pvcFadeOut) || !m_fadeActive) return;
  m_fadeNotified = true;
  Report(peFadingOut);
}

void cBasePlayer::HandlePosition(float position) {
  if (!m_control || !m_item) return;
  RecomputeSection(position);
  m_secondsPlayed = m_control->SecondsPlayed();
  m_secondsRemaining = m_control->SecondsRemaining();
  const float extro = m_item->Extro(1);
  m_secondsRemainingExtro = !m_itemClosed && m_secondsPlayed <= extro ? extro - m_secondsPlayed : 0;
  Report(pePositionChanged, m_secondsPlayed, m_secondsRemaining);
}

void cBasePlayer::RecomputeSection(float position) {
  m_section = epsEmpty;
  if (!m_item || m_itemClosed || !(m_item->AudioLength(1) > 0)) return;
  if (position >= m_item->Extro(1))
    m_section = epsExtro;
  else if (position >= m_item->IntroEnd(1))
    m_section = epsMain;
  else if (position >= m_item->IntroStart(1))
    m_section = epsDuringIntro;
  else
    m_section = epsPreIntro;
}

}  // namespace qm
