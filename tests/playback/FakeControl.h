#pragma once
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <utility>

#include "kits/common/Files.h"
#include "kits/common/Numbers.h"
#include "kits/sound/SoundSystem.h"
#include "kits/sound/ctlVellanPlayer.h"

// A playback control without sound: keeps what it is told, writes down each call, fails where a test wants
// it.
namespace qm::test {

class FakeControl;

// What a test sees of a control, also after the control is gone.
struct ControlScript {
  std::string calls;              // commands in their order, a blank between; reads are left out
  std::set<std::string> failing;  // names of operations that answer failure
  std::set<std::string> warning;  // names of those that raise an error and go on
  bool tellErrors = false;        // whether a failure raises an error as well
  float total = 100;
  float position = 0;
  FakeControl* control = nullptr;

  std::string TakeCalls() { return std::exchange(calls, {}); }
};

class FakeControl : public ctlVellanPlayer {
 public:
  explicit FakeControl(std::shared_ptr<ControlScript> script) : m_script(std::move(script)) {
    m_script->control = this;
  }
  ~FakeControl() override {
    EXPECT_EQ(m_inCall, 0) << "destroyed from within its own call";
    m_script->control = nullptr;
  }

  std::int32_t Open(const std::string& FileName) override {
    if (!Does("Open", FileNameOf(FileName))) return 1;
    m_script->position = 0;
    events.Opened();
    return 0;
  }
  bool Cue() override {
    if (!Does("Cue")) return false;
    m_script->position = 0;
    events.Cued();
    return true;
  }
  bool Play() override { return Does("Play", events.Playing); }
  bool Pause() override { return Does("Pause", events.Paused); }
  bool Seek(double Percent) override {
    if (!Does("Seek", NumberText(Percent))) return false;
    m_script->position = static_cast<float>(Percent * double{m_script->total} / 100);
    return true;
  }
  bool Close() override { return Does("Close", events.Closed); }
  void ExitLoop() override { Does("ExitLoop"); }
  void InitialiseEngine() override { Does("InitialiseEngine"); }

  bool AddPositionEvent(const tyPositionMark& Mark) override {
    return Does("Mark", NumberText(Mark.EventId) + "@" + NumberText(Mark.Position));
  }
  bool RemovePositionEvent(std::int32_t EventId, std::int32_t) override {
    return Does("RemoveMark", NumberText(EventId));
  }
  bool AddVolumeChange(const tyVolumeChange& Change) override {
    std::string text = NumberText(std::int32_t{Change.Reference});
    for (const float value :
         {Change.StartTime, Change.Duration, Change.StartVolume, Change.EndVolume, Change.NotifyVolume})
      text += "," + NumberText(value);
    return Does("AddVolumeChange",
                text + (Change.RemoveWhenComplete && Change.SetVolumePermanently ? "" : ",?"));
  }
  bool RemoveVolumeChange(std::int16_t Reference) override {
    return Does("RemoveVolumeChange", NumberText(std::int32_t{Reference}));
  }

  float SecondsPlayed() const override { return m_script->position; }
  float SecondsRemaining() const override { return m_audioEnd - m_script->position; }
  float PercentPlayed() const override { return m_script->position / m_script->total * 100; }
  void SetAudioStart(float Seconds) override { Does("AudioStart", NumberText(Seconds)); }
  void SetAudioEnd(float Seconds) override { Keep("AudioEnd", m_audioEnd, Seconds); }

  float LoopStart() const override { return m_loopStart; }
  void SetLoopStart(float Seconds) override { Keep("LoopStart", m_loopStart, Seconds); }
  float LoopEnd() const override { return m_loopEnd; }
  void SetLoopEnd(float Seconds) override { Keep("LoopEnd", m_loopEnd, Seconds); }
  bool UseLoop() const override { return m_useLoop; }
  void SetUseLoop(bool Use) override { Does("UseLoop", (m_useLoop = Use) ? "1" : "0"); }
  std::int32_t LoopCount() const override { return m_loopCount; }
  void SetLoopCount(std::int32_t Passes) override { Keep("LoopCount", m_loopCount, Passes); }
  bool InLoop() const override { return m_useLoop && m_script->position >= m_loopStart; }

  float Volume() const override { return m_volume; }
  void SetVolume(float Percent) override {
    if (Keep("Volume", m_volume, Percent)) events.Volume(Percent);
  }
  float PlaySpeed() const override { return m_speed; }
  void SetPlaySpeed(float Speed) override {
    Keep("PlaySpeed", m_speed, Speed);
    events.PlaySpeed(Speed);
  }
  float TimeStretchRatio() const override { return m_ratio; }
  void SetTimeStretchRatio(float Ratio) override {
    Keep("TimeStretchRatio", m_ratio, Ratio);
    events.TimeStretch(Ratio);
  }
  bool ReportErrors() const override { return m_reportErrors; }
  void SetReportErrors(bool Report) override { m_reportErrors = Report; }
  std::string EngineName() const override { return "Fake"; }

  void SetPlayerId(std::int32_t Id) override { Does("PlayerId", NumberText(Id)); }
  void SetBufferLength(std::int32_t Milliseconds) override { Does("BufferLength", NumberText(Milliseconds)); }
  void SetBufferCount(std::int32_t Count) override { Does("BufferCount", NumberText(Count)); }
  void SetDeviceType(std::int32_t Type) override { Does("DeviceType", NumberText(Type)); }
  void SetDeviceNumber(std::int32_t Number) override { Does("DeviceNumber", NumberText(Number)); }

 private:
  bool Does(const std::string& operation, const std::string& arguments = {}) {
    auto& script = *m_script;
    script.calls +=
        (script.calls.empty() ? "" : " ") + operation + (arguments.empty() ? "" : "(" + arguments + ")");
    const bool fails = script.failing.contains(operation);
    ++m_inCall;
    if (fails ? script.tellErrors : script.warning.contains(operation)) events.Error(7, operation);
    --m_inCall;
    return !fails;
  }
  bool Does(const std::string& operation, Event<>& done) {
    if (!Does(operation)) return false;
    done();
    return true;
  }
  // Whether the value is another one.
  template <class T>
  bool Keep(const std::string& name, T& member, T value) {
    Does(name, NumberText(value));
    return std::exchange(member, value) != value;
  }

  std::shared_ptr<ControlScript> m_script;
  float m_audioEnd = 0, m_loopStart = 0, m_loopEnd = 0, m_volume = 100, m_speed = 1, m_ratio = 1;
  std::int32_t m_loopCount = 0;
  int m_inCall = 0;
  bool m_useLoop = false, m_reportErrors = true;
};

class FakeSound : public SoundSystem {
 public:
  // For the control that is made next.
  std::shared_ptr<ControlScript> script = std::make_shared<ControlScript>();
  StreamingSettings streaming;

  std::unique_ptr<ctlVellanPlayer> CreatePlayer() override { return std::make_unique<FakeControl>(script); }
  bool Pump() override { return false; }
  int WaitDescriptor() const override { return -1; }
  StreamingSettings Streaming() const override { return streaming; }
  std::vector<SoundDevice> Outputs() const override { return {}; }
  std::vector<SoundDevice> Inputs() const override { return {}; }
};

}  // namespace qm::test
