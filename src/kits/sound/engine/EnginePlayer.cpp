#include "kits/sound/engine/EnginePlayer.h"

#include <algorithm>
#include <cmath>

#include "kits/sound/cAudioFile.h"
#include "kits/sound/engine/AudioEngine.h"
#include "kits/sound/engine/Device.h"
#include "kits/sound/engine/SourceReader.h"

namespace qm {

namespace {

// Error numbers of a control besides those of its files.
constexpr std::int32_t kNoDevice = 10;
constexpr std::int32_t kNotPlayable = 11;

// Beyond these neither resampler nor stretcher gives anything worth hearing.
constexpr float kSlowest = 0.1f;
constexpr float kFastest = 10.f;

constexpr std::int32_t kLeastBuffer = 200;   // milliseconds read ahead, at least
constexpr std::int32_t kMostBuffer = 30000;  // and at most

bool Sensible(float value) {
  return std::isfinite(value) && value > 0;
}

}  // namespace

EnginePlayer::EnginePlayer(std::shared_ptr<AudioEngine> engine)
    : m_engine(std::move(engine)), m_ears(std::make_shared<Ears>()) {
  m_ears->player = this;
}

EnginePlayer::~EnginePlayer() {
  m_ears->player = nullptr;
  Release();
}

std::string EnginePlayer::EngineName() const {
  return m_engine->Name();
}

void EnginePlayer::InitialiseEngine() {
  m_engine->Initialise();
}

std::int32_t EnginePlayer::Fail(std::int32_t number, const std::string& text) {
  if (m_reportErrors) events.Error(number, text);
  return number;
}

std::int32_t EnginePlayer::Open(const std::string& FileName) {
  Release();
  auto file = std::make_unique<cAudioFile>();
  file->AllowCompressedOpen(true);
  if (const std::int32_t error = file->OpenForRead(FileName, 0, 1); error != 0)
    return Fail(error, file->ErrorText());
  if (file->SampleRate() <= 0 || file->Channels() <= 0)
    return Fail(kNotPlayable, "'" + FileName + "' holds no audio that can be played");

  std::string errorText;
  Device* device = m_engine->FindDevice(m_deviceType, m_deviceNumber, errorText);
  if (!device || !device->Start(file->SampleRate(), errorText)) return Fail(kNoDevice, errorText);

  VoiceFile source{nullptr, file->SampleRate(), file->Channels(), file->NumberSamples()};
  source.reader = m_reader = std::make_shared<SourceReader>(std::move(file));
  Mixer& mixer = *device->GetMixer();
  m_device = device;
  m_voice = std::make_shared<Voice>(m_engine->NextSerial(), m_ears, std::move(source), mixer.Format(),
                                    mixer.RampFrames(), RingFrames(mixer.Format().sampleRate),
                                    device->Offline() ? erdWithin : erdAhead);
  // Speed and stretch stay from file to file; where to start, end and loop is the file's own.
  m_route = VoiceRoute{.speed = m_route.speed, .stretch = m_route.stretch};
  m_loopCount = 0;
  m_voice->SetRoute(m_route, mixer);
  m_voice->SetVolume(static_cast<double>(m_volume));
  mixer.Attach(m_voice);
  if (!device->Offline()) m_engine->Readers().Add(m_reader);
  if (m_engine->StreamDebugMode() > 0 && m_engine->onTrace)
    m_engine->onTrace("Audio Engine opened '" + FileName + "' on " + device->Name());
  events.Opened();
  return 0;
}

std::size_t EnginePlayer::RingFrames(std::int32_t sampleRate) const {
  const double milliseconds = static_cast<double>(m_bufferLength) * static_cast<double>(m_bufferCount);
  const double held = std::clamp<double>(milliseconds, kLeastBuffer, kMostBuffer);
  return static_cast<std::size_t>(held / 1000 * sampleRate);
}

Mixer& EnginePlayer::VoiceMixer() const {
  return *m_device->GetMixer();
}

void EnginePlayer::Release() {
  if (!m_voice) return;
  VoiceMixer().Detach(m_voice);
  m_engine->Readers().Remove(m_reader);
  m_voice.reset();
  m_reader.reset();
  m_device = nullptr;
  m_cued = false;
}

bool EnginePlayer::Close() {
  if (!m_voice) return false;
  m_volume = Volume();
  Release();
  events.Closed();
  return true;
}

bool EnginePlayer::Cue() {
  if (!m_voice) return false;
  {
    const auto lock = VoiceMixer().Lock();
    m_voice->Cue(VoiceMixer());
  }
  m_cued = true;
  m_engine->Readers().Wake();
  events.Cued();
  return true;
}

bool EnginePlayer::Play() {
  if (!m_voice) return false;
  {
    const auto lock = VoiceMixer().Lock();
    if (!m_cued) m_voice->Cue(VoiceMixer());
    m_voice->Play();
  }
  m_cued = true;
  m_engine->Readers().Wake();
  events.Playing();
  return true;
}

bool EnginePlayer::Pause() {
  if (!m_voice) return false;
  {
    const auto lock = VoiceMixer().Lock();
    m_voice->Pause(VoiceMixer());
  }
  events.Paused();
  return true;
}

bool EnginePlayer::Seek(double Percent) {
  if (!m_voice || !std::isfinite(Percent)) return false;
  {
    const auto lock = VoiceMixer().Lock();
    m_voice->LocatePercent(std::clamp(Percent, 0.0, 100.0), VoiceMixer());
  }
  m_cued = true;
  m_engine->Readers().Wake();
  return true;
}

void EnginePlayer::ExitLoop() {
  if (!m_voice) return;
  {
    const auto lock = VoiceMixer().Lock();
    if (m_voice->LeaveLoop(VoiceMixer())) VoiceMixer().Post(*m_voice, entLoopCompleted);
  }
  m_engine->Readers().Wake();
}

bool EnginePlayer::AddPositionEvent(const tyPositionMark& Mark) {
  if (!m_voice || !std::isfinite(Mark.Position)) return false;
  const auto lock = VoiceMixer().Lock();
  m_voice->SetMark(Mark);
  return true;
}

bool EnginePlayer::RemovePositionEvent(std::int32_t EventId, std::int32_t) {
  if (!m_voice) return false;
  const auto lock = VoiceMixer().Lock();
  return m_voice->RemoveMark(EventId);
}

bool EnginePlayer::AddVolumeChange(const tyVolumeChange& Change) {
  if (!m_voice) return false;
  const auto lock = VoiceMixer().Lock();
  return m_voice->AddVolumeChange(Change);
}

bool EnginePlayer::RemoveVolumeChange(std::int16_t Reference) {
  if (!m_voice) return false;
  const auto lock = VoiceMixer().Lock();
  return m_voice->RemoveVolumeChange(Reference);
}

float EnginePlayer::SecondsPlayed() const {
  if (!m_voice) return 0;
  const auto lock = VoiceMixer().Lock();
  return m_voice->Seconds();
}

float EnginePlayer::SecondsRemaining() const {
  if (!m_voice) return 0;
  const auto lock = VoiceMixer().Lock();
  return m_voice->SecondsRemaining();
}

float EnginePlayer::PercentPlayed() const {
  if (!m_voice) return 0;
  const auto lock = VoiceMixer().Lock();
  return m_voice->Percent();
}

bool EnginePlayer::InLoop() const {
  if (!m_voice) return false;
  const auto lock = VoiceMixer().Lock();
  return m_voice->InLoop();
}

void EnginePlayer::ApplyRoute() {
  if (!m_voice) return;
  {
    const auto lock = VoiceMixer().Lock();
    m_voice->SetRoute(m_route, VoiceMixer());
  }
  m_engine->Readers().Wake();
}

void EnginePlayer::SetAudioStart(float Seconds) {
  if (!std::isfinite(Seconds)) return;
  m_route.audioStart = Seconds;
  ApplyRoute();
}

void EnginePlayer::SetAudioEnd(float Seconds) {
  if (!std::isfinite(Seconds)) return;
  m_route.audioEnd = Seconds;
  ApplyRoute();
}

void EnginePlayer::SetLoopStart(float Seconds) {
  if (!std::isfinite(Seconds)) return;
  m_route.loopStart = Seconds;
  ApplyRoute();
}

void EnginePlayer::SetLoopEnd(float Seconds) {
  if (!std::isfinite(Seconds)) return;
  m_route.loopEnd = Seconds;
  ApplyRoute();
}

void EnginePlayer::SetUseLoop(bool Use) {
  m_route.useLoop = Use;
  ApplyRoute();
}

void EnginePlayer::SetLoopCount(std::int32_t Passes) {
  m_loopCount = Passes;
  m_route.loopPasses = std::max(1, Passes);
  ApplyRoute();
}

float EnginePlayer::Volume() const {
  if (!m_voice) return m_volume;
  const auto lock = VoiceMixer().Lock();
  return m_voice->Volume();
}

void EnginePlayer::SetVolume(float Percent) {
  if (!std::isfinite(Percent)) return;
  const float before = Volume();
  m_volume = std::clamp(Percent, 0.f, 100.f);
  if (m_voice) {
    const auto lock = VoiceMixer().Lock();
    m_voice->SetVolume(static_cast<double>(m_volume));
  }
  if (m_volume != before) events.Volume(m_volume);
}

void EnginePlayer::SetPlaySpeed(float Speed) {
  if (!Sensible(Speed)) return;
  m_route.speed = std::clamp(Speed, kSlowest, kFastest);
  ApplyRoute();
  events.PlaySpeed(m_route.speed);
}

void EnginePlayer::SetTimeStretchRatio(float Ratio) {
  if (!Sensible(Ratio)) return;
  m_route.stretch = std::clamp(Ratio, kSlowest, kFastest);
  ApplyRoute();
  events.TimeStretch(m_route.stretch);
}

void EnginePlayer::DeliverPosition(const Notification& notification) {
  // A listener may close or destroy the control between the two.
  const std::shared_ptr<Ears> ears = m_ears;
  events.Position();
  if (notification.number != 0 && ears->player && m_voice && m_voice->Serial() == notification.voice)
    events.Level(notification.leftLevel, notification.rightLevel);
}

void EnginePlayer::Deliver(const Notification& notification) {
  if (!m_voice || m_voice->Serial() != notification.voice) return;
  const auto reference = static_cast<std::int16_t>(notification.number);
  switch (notification.kind) {
    case entPosition:
      return DeliverPosition(notification);
    case entMark:
      return events.Mark(notification.number, notification.tag);
    case entVolume:
      return events.Volume(notification.volume);
    case entVolumeStart:
      return events.VolumeStart(reference);
    case entVolumeNotify:
      return events.VolumeNotify(reference);
    case entVolumeEnd:
      return events.VolumeEnd(reference);
    case entLoopRestart:
      return events.LoopRestart();
    case entLoopCompleted:
      return events.LoopCompleted();
    case entAudioEnd:
      return events.AudioEnd();
    case entError:
      Fail(notification.number, notification.text);
      return;
  }
}

}  // namespace qm
