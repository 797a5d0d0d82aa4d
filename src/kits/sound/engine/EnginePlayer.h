#pragma once
#include <memory>
#include <string>

#include "kits/sound/ctlVellanPlayer.h"
#include "kits/sound/engine/Voice.h"

namespace qm {

class AudioEngine;
class Device;

// The playback control over the mixing engine: commands one voice at a time of its device's mixer.
class EnginePlayer : public ctlVellanPlayer {
 public:
  explicit EnginePlayer(std::shared_ptr<AudioEngine> engine);
  ~EnginePlayer() override;

  std::int32_t Open(const std::string& FileName) override;
  bool Cue() override;
  bool Play() override;
  bool Pause() override;
  bool Seek(double Percent) override;
  bool Close() override;
  void ExitLoop() override;
  void InitialiseEngine() override;
  bool AddPositionEvent(const tyPositionMark& Mark) override;
  bool RemovePositionEvent(std::int32_t EventId, std::int32_t Reserved) override;
  bool AddVolumeChange(const tyVolumeChange& Change) override;
  bool RemoveVolumeChange(std::int16_t Reference) override;

  float SecondsPlayed() const override;
  float SecondsRemaining() const override;
  float PercentPlayed() const override;

  void SetAudioStart(float Seconds) override;
  void SetAudioEnd(float Seconds) override;
  float LoopStart() const override { return m_route.loopStart; }
  void SetLoopStart(float Seconds) override;
  float LoopEnd() const override { return m_route.loopEnd; }
  void SetLoopEnd(float Seconds) override;
  bool UseLoop() const override { return m_route.useLoop; }
  void SetUseLoop(bool Use) override;
  std::int32_t LoopCount() const override { return m_loopCount; }
  void SetLoopCount(std::int32_t Passes) override;
  bool InLoop() const override;

  float Volume() const override;
  void SetVolume(float Percent) override;
  float PlaySpeed() const override { return m_route.speed; }
  void SetPlaySpeed(float Speed) override;
  float TimeStretchRatio() const override { return m_route.stretch; }
  void SetTimeStretchRatio(float Ratio) override;
  bool ReportErrors() const override { return m_reportErrors; }
  void SetReportErrors(bool Report) override { m_reportErrors = Report; }
  std::string EngineName() const override;

  void SetPlayerId(std::int32_t Id) override { m_playerId = Id; }
  void SetBufferLength(std::int32_t Milliseconds) override { m_bufferLength = Milliseconds; }
  void SetBufferCount(std::int32_t Count) override { m_bufferCount = Count; }
  void SetDeviceType(std::int32_t Type) override { m_deviceType = Type; }
  void SetDeviceNumber(std::int32_t Number) override { m_deviceNumber = Number; }

 private:
  // Hears the mixer for as long as the control lives: a notification may find the control gone.
  struct Ears : VoiceOwner {
    EnginePlayer* player = nullptr;
    void Deliver(const Notification& notification) override {
      if (player) player->Deliver(notification);
    }
  };

  void Deliver(const Notification& notification);
  void DeliverPosition(const Notification& notification);
  std::int32_t Fail(std::int32_t number, const std::string& text);
  Mixer& VoiceMixer() const;
  std::size_t RingFrames(std::int32_t sampleRate) const;
  void ApplyRoute();
  void Release();

  const std::shared_ptr<AudioEngine> m_engine;
  const std::shared_ptr<Ears> m_ears;
  Device* m_device = nullptr;  // of the open voice
  std::shared_ptr<SourceReader> m_reader;
  std::shared_ptr<Voice> m_voice;  // null when closed
  VoiceRoute m_route;
  float m_volume = 100;  // kept from file to file
  std::int32_t m_loopCount = 0;
  bool m_cued = false;  // the voice has been given a place to start from
  bool m_reportErrors = true;
  std::int32_t m_playerId = 0;
  std::int32_t m_bufferLength = 250;  // milliseconds
  std::int32_t m_bufferCount = 16;
  std::int32_t m_deviceType = 0;
  std::int32_t m_deviceNumber = 0;
};

}  // namespace qm
