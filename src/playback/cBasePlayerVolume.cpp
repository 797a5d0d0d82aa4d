#include "contract/IPlayerCallback.h"
#include "item/cHDItem.h"
#include "kits/common/Numbers.h"
#include "kits/sound/ctlVellanPlayer.h"
#include "playback/PlayerOperation.h"
#include "playback/cBasePlayer.h"
#include "settings/cAudioSettings.h"

// Volumes, fades and other volume changes.
namespace qm {
namespace {

std::int16_t LimitVolume(std::int16_t volume) {
  return Limit<std::int16_t>(volume, 0, 100);
}

}  // namespace

std::shared_ptr<cAudioSettings> cBasePlayer::OwnerSettings() const {
  return m_callback ? m_callback->AudioSettings() : nullptr;
}

void cBasePlayer::SetInitialVolume(std::int16_t Volume) {
  const PlayerKeeper keeper(*this);
  if (!m_control) return;
  m_initialVolume = LimitVolume(Volume);
  if (m_control->Volume() != m_initialVolume) m_control->SetVolume(m_initialVolume);
}

std::int16_t cBasePlayer::PlayVolume() const {
  return m_control ? static_cast<std::int16_t>(RoundToWhole(m_control->Volume())) : std::int16_t{0};
}

void cBasePlayer::SetPlayVolume(std::int16_t Volume) {
  const PlayerKeeper keeper(*this);
  if (m_control) m_control->SetVolume(LimitVolume(Volume));
}

bool cBasePlayer::Fade(float StartTime, float DurationSecs, std::int16_t Reference) {
  PlayerOperation operation(*this, "Fade");
  const auto item = CurrentItem();
  const auto settings = OwnerSettings();
  if (!Ready() || !item || !settings) return operation.Exit("No Item Or Settings");
  m_fadeActive = m_fadeNotified = false;
  const tyVolumeChange change{
      .Reference = Reference,
      .StartTime = StartTime > item->AudioLength(1) ? item->AudioLength(1) : StartTime,
      .Duration = DurationSecs,
      .StartVolume = static_cast<float>(m_initialVolume),
      .EndVolume = 0,
      .NotifyVolume = static_cast<float>(settings->FadeFirePercent()),
      .RemoveWhenComplete = true,
      .SetVolumePermanently = true};
  if (!m_control->AddVolumeChange(change)) return operation.Exit("Not Added");
  m_fadeActive = true;
  return true;
}

bool cBasePlayer::AddVolumeChangeEvent(std::int16_t Reference, float StartTime, float DurationSecs,
                                       float StartVolume, float EndVolume, float NotifyVolume,
                                       bool RemoveWhenComplete, bool SetVolumePermanently) {
  PlayerOperation operation(*this, "AddVolumeChangeEvent");
  if (!Ready() || !CurrentItem()) return operation.Exit("No Item");
  return m_control->AddVolumeChange({Reference, StartTime, DurationSecs, StartVolume, EndVolume, NotifyVolume,
                                     RemoveWhenComplete, SetVolumePermanently}) ||
         operation.Exit("Not Added");
}

bool cBasePlayer::RemoveVolumeChangeEvent(std::int16_t ReferenceNumber) {
  PlayerOperation operation(*this, "RemoveVolumeChangeEvent");
  if (!Ready() || !CurrentItem()) return operation.Exit("No Item");
  return m_control->RemoveVolumeChange(ReferenceNumber) || operation.Exit("Not There");
}

}  // namespace qm
