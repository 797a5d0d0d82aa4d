#pragma once
#include "kits/sound/record/RecordingControl.h"
#include "support/SoundFixtures.h"

namespace qm::test {

// Writes what it "records" at its close: that many frames at 8000 Hz.
class FakeRecording : public RecordingControl {
 public:
  std::int32_t Open(const RecordingRequest& asked) override {
    request = asked;
    ++opened;
    return openResult;
  }
  bool Stop() override { return true; }
  std::int32_t Close(enRecordingKeep keep) override {
    kept = keep == erkKeep;
    if (kept) WriteBytes(request.path, Wav16(Ramp16(frames), 8000, 1));
    events.Closed();
    return 0;
  }
  bool Pause() override { return works; }
  bool Resume() override { return works; }
  void SetTriggerLevel(std::int16_t level) override { triggerLevel = level; }
  float Position() const override { return static_cast<float>(frames) / 8000; }
  float Length() const override { return 100; }
  std::uint64_t FramesLost() const override { return 0; }
  void SetLimit(double) override {}
  std::int32_t DeviceNumber() const override { return device; }
  void SetDeviceNumber(std::int32_t number) override { device = number; }

  RecordingRequest request;
  std::int32_t openResult = 0, device = -1, opened = 0;
  std::int16_t triggerLevel = 0;
  std::size_t frames = 16000;
  bool works = true, kept = false;
};

}  // namespace qm::test
