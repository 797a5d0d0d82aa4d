#include "audio/cRecorder.h"

#include "contract/IPlayerCallback.h"
#include "item/cHDItem.h"
#include "kits/common/Text.h"
#include "kits/sound/SoundSystem.h"
#include "kits/sound/record/RecordingControl.h"
#include "services/Diagnostics.h"
#include "settings/cAudioSettings.h"

namespace qm {

cRecorder::cRecorder(std::shared_ptr<const Platform> platform)
    : m_platform(platform ? std::move(platform) : DefaultPlatform()) {}

cRecorder::~cRecorder() {
  Terminate();
}

bool cRecorder::InitRecorder(const std::shared_ptr<cAudioSettings>& AudioSettings) {
  if (m_item) return false;
  WriteDebug("Start InitRecorder", 5, ednOpens);
  Disconnect();
  m_control = m_platform->sound ? m_platform->sound->CreateRecorder() : nullptr;
  if (m_control) Connect();
  if (AudioSettings) m_waveInDeviceNumber = static_cast<std::int16_t>(AudioSettings->RecordingSoundDevice());
  m_silent = false;
  WriteDebug("Finish InitRecorder", 5, ednCloses);
  return m_control != nullptr;
}

// Within a close that is under way, only nobody hears of the rest.
void cRecorder::Terminate() {
  m_silent = true;
  if (!m_closing && m_control && m_status != rsClosed) CloseItem(rcpSave);
  Disconnect();
  m_control.reset();
  m_callback.reset();
  if (!m_closing) Reset();
}

void cRecorder::Connect() {
  auto& told = m_control->events;
  m_wires = {
      told.Position.connect([this] { HandlePosition(); }),
      told.Level.connect([this](std::int16_t left, std::int16_t right) { HandleLevel(left, right); }),
      told.State.connect([this](std::int32_t state) { HandleState(state); }),
      told.Error.connect([this](std::int32_t number, const std::string& text) {
        Report(reError, static_cast<float>(number), 0, text);
      }),
      told.EndReached.connect([this] { Report(reEndReached, m_secondsRecorded); }),
      told.Closed.connect([this] { m_status = rsClosed; }),
  };
}

void cRecorder::Disconnect() {
  for (auto& wire : m_wires) wire.disconnect();
  m_wires.clear();
}

std::string cRecorder::HDReference() const {
  return m_item ? m_item->Reference() : std::string();
}

bool cRecorder::IsSameHDReference(const std::string& HDReference) const {
  return m_item && SameReference(m_item->Reference(), HDReference);
}

void cRecorder::SetTriggerLevel(std::int16_t Level) {
  m_triggerLevel = Level;
  if (m_control && m_status == rsWaitingLevel) m_control->SetTriggerLevel(Level);
}

bool cRecorder::PauseItem() {
  if (!MayChange()) return false;
  WriteDebug("Start PauseItem", 5, ednOpens);
  const enRecorderStatus before = m_status;
  if (before != rsPaused) m_statusBeforePause = before;
  m_status = rsPaused;
  const bool paused = m_control->Pause();
  if (paused)
    Report(rePaused);
  else
    m_status = before;
  WriteDebug("Finish PauseItem", 5, ednCloses);
  return paused;
}

bool cRecorder::ResumeItem() {
  if (!MayChange()) return false;
  WriteDebug("Start ResumeItem", 5, ednOpens);
  const enRecorderStatus before = m_status;
  if (before == rsPaused) m_status = m_statusBeforePause;
  const bool resumed = m_control->Resume();
  if (resumed)
    Report(reRecording);
  else
    m_status = before;
  WriteDebug("Finish ResumeItem", 5, ednCloses);
  return resumed;
}

// While paused, only what a resume will lead back to has changed.
void cRecorder::HandleState(std::int32_t state) {
  if (!m_item) return;
  const bool recording = state == ersRecording;
  if (m_status == rsPaused) {
    m_statusBeforePause = recording ? rsRecording : rsWaitingLevel;
    return;
  }
  m_status = recording ? rsRecording : rsWaitingLevel;
  Report(recording ? reRecording : reOpened);
}

void cRecorder::HandlePosition() {
  if (!m_item) return;
  m_secondsRecorded = m_control->Position();
  m_secondsRemaining = m_control->Length() - m_control->Position();
  if (m_item->Extro(1) == m_item->AudioEnd(1)) {
    m_item->SetTotalLength(m_secondsRecorded);
    m_item->SetAudioEnd(1, m_secondsRecorded);
    m_item->SetExtro(1, m_secondsRecorded);
  }
  Report(rePositionChanged, m_secondsRecorded, m_secondsRemaining);
}

void cRecorder::HandleLevel(std::int16_t left, std::int16_t right) {
  const auto keeper = weak_from_this().lock();
  m_leftLevel = left;
  m_rightLevel = right;
  if (!m_silent) events.LevelChanged(left, right);
  Report(reAudioLevelChanged, left, right);
}

void cRecorder::Report(std::int32_t event, float sValue1, float sValue2, const std::string& strValue1) {
  ReportWith(event, HDReference(), sValue1, sValue2, strValue1);
}

// Each hearer gets texts and values of its own.
void cRecorder::ReportWith(std::int32_t event, const std::string& hdReference, float sValue1, float sValue2,
                           const std::string& strValue1) {
  const auto keeper = weak_from_this().lock();
  const auto tell = [&](auto&& hearer) {
    if (m_silent) return;
    std::string reference = hdReference, text1 = strValue1, text2;
    float first = sValue1, second = sValue2;
    hearer(event, reference, first, second, text1, text2);
  };
  if (event == reError) Trace(2, ednPlain, "Recorder error ", sValue1, " : ", strValue1);
  tell([this](auto&&... values) { events.RecorderEvent(values...); });
  const auto owner = m_callback;
  if (owner) tell([&](auto&&... values) { owner->RecorderEvent(values...); });
}

}  // namespace qm
