#include "playback/cBasePlayer.h"

#include <cmath>

#include "item/cHDItem.h"
#include "kits/common/Numbers.h"
#include "kits/sound/ctlVellanPlayer.h"
#include "playback/PlayerOperation.h"
#include "playback/TransportSteps.h"
#include "playback/frmPlayer.h"

namespace qm {
namespace {

// Part of the way from start to end, in per cent; 0 where there is no way.
float Percentage(float position, float start, float end) {
  const double percent = (double{position} - start) / (double{end} - start) * 100;
  return std::isfinite(percent) ? static_cast<float>(percent) : 0;
}

}  // namespace

cBasePlayer::cBasePlayer(std::shared_ptr<const Platform> platform)
    : m_platform(platform ? std::move(platform) : DefaultPlatform()),
      m_form(std::make_shared<frmPlayer>(m_platform->sound)),
      m_control(m_form->Control()) {
  m_form->Load([this](std::int32_t event, float sValue1, float sValue2, const std::string& strValue1) {
    HandlePlayerEvent(event, sValue1, sValue2, strValue1);
  });
}

cBasePlayer::~cBasePlayer() {
  TerminatePlayer();
}

void cBasePlayer::TerminatePlayer() {
  if (m_eventsInhibited) return;
  const PlayerOperation operation(*this, "TerminatePlayer");
  m_eventsInhibited = true;
  CloseItem();
  RemoveSweeperPlayerLink(false);
  m_control = nullptr;
  if (m_form) m_form->Unload();
  m_form.reset();
  SetItem(nullptr);
  Move(tsClose);
  m_callback.reset();
  m_reference = 0;
  m_eventsInhibited = false;
}

void cBasePlayer::SetItem(std::shared_ptr<cHDItem> item) {
  m_item = std::move(item);
  m_itemLost = false;
  ++m_visit;
}

std::string cBasePlayer::HDReference() const {
  return m_item ? m_item->Reference() : std::string();
}

float cBasePlayer::PercentagePlayed() const {
  if (!m_item) return 0;
  const float extro = m_item->Extro(1);
  if (!(extro > 0 && m_secondsPlayed < extro)) return 100;
  return Percentage(m_secondsPlayed, m_item->AudioStart(1), extro);
}

float cBasePlayer::TotalPercentagePlayed() const {
  if (!m_item || !(m_item->AudioEnd(1) > 0)) return 0;
  return Percentage(m_secondsPlayed, m_item->AudioStart(1), m_item->AudioEnd(1));
}

std::string cBasePlayer::EngineName() const {
  return m_control ? m_control->EngineName() : std::string();
}

bool cBasePlayer::ReportErrors() const {
  return m_control && m_control->ReportErrors();
}

void cBasePlayer::SetReportErrors(bool Report) {
  if (m_control) m_control->SetReportErrors(Report);
}

bool cBasePlayer::InLoop() const {
  return m_control && m_control->InLoop();
}

bool cBasePlayer::UseLoop() const {
  return m_control && m_control->UseLoop();
}

void cBasePlayer::SetUseLoop(bool Use) {
  if (m_control) m_control->SetUseLoop(Use);
}

float cBasePlayer::PlaySpeed() const {
  return m_control ? m_control->PlaySpeed() : 0;
}

void cBasePlayer::SetPlaySpeed(float Speed) {
  const PlayerKeeper keeper(*this);
  if (m_control) m_control->SetPlaySpeed(Speed);
}

float cBasePlayer::TimeStretchRatio() const {
  return m_control ? m_control->TimeStretchRatio() : 0;
}

void cBasePlayer::SetTimeStretchRatio(float Ratio) {
  const PlayerKeeper keeper(*this);
  if (m_control) m_control->SetTimeStretchRatio(Ratio);
}

void cBasePlayer::SetPlayHookMode(bool Value) {
  const PlayerKeeper keeper(*this);
  m_playHookMode = Value;
  Report(Value ? peSetPlayHookMode : peClearPlayHookMode);
}

void cBasePlayer::SetPreviewMode(bool Value) {
  const PlayerKeeper keeper(*this);
  m_previewMode = Value;
  Report(Value ? peSetPreviewMode : peClearPreviewMode);
}

void cBasePlayer::SetReservation(std::int32_t Reference, const std::string& Caption) {
  const PlayerKeeper keeper(*this);
  m_reservationReference = Reference;
  m_reservationCaption = Caption;
  const std::string caption = Caption;
  if (!m_eventsInhibited) events.Reserved(Reference, caption);
  ReportWith(peReserved, {}, static_cast<float>(Reference), 0);
}

void cBasePlayer::ClearReservation() {
  const PlayerKeeper keeper(*this);
  const std::int32_t previous = m_reservationReference;
  m_reservationReference = 0;
  m_reservationCaption.clear();
  if (!m_eventsInhibited) events.ReservationCleared(previous);
  ReportWith(peReservationCleared, {}, static_cast<float>(previous), 0);
}

}  // namespace qm
