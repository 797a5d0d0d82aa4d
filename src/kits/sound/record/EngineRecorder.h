#pragma once
#include <memory>

#include "kits/sound/record/RecordingControl.h"

namespace qm {

class AudioEngine;
struct RecordingNote;

// The recording control of the engine.
class EngineRecorder : public RecordingControl {
 public:
  explicit EngineRecorder(std::shared_ptr<AudioEngine> engine) : m_engine(std::move(engine)) {}
  ~EngineRecorder() override;  // what is being recorded is completed and stays

  std::int32_t Open(const RecordingRequest& request) override;
  bool Stop() override;
  std::int32_t Close(enRecordingKeep keep) override;
  bool Pause() override;
  bool Resume() override;
  void SetTriggerLevel(std::int16_t level) override;
  float Position() const override { return static_cast<float>(m_position); }
  float Length() const override { return static_cast<float>(m_position + m_remaining); }
  std::uint64_t FramesLost() const override;
  void SetLimit(double seconds) override { m_limitSeconds = seconds; }
  std::int32_t DeviceNumber() const override { return m_deviceNumber; }
  void SetDeviceNumber(std::int32_t number) override { m_deviceNumber = number; }

  // For the engine, which keeps this object meanwhile. True when time has moved or anything was told.
  bool Pump();

 private:
  struct Session;

  std::int32_t Fail(std::int32_t number, const std::string& text);
  std::int32_t Prepare(Session& session, const RecordingRequest& request);
  bool Deliver();
  void Tell(const RecordingNote& note, std::int32_t sampleRate);

  const std::shared_ptr<AudioEngine> m_engine;
  std::shared_ptr<Session> m_session;  // while a file is open
  std::int32_t m_deviceNumber = 0;
  double m_limitSeconds = 0;
  double m_position = 0;   // seconds
  double m_remaining = 0;  // seconds
};

}  // namespace qm
