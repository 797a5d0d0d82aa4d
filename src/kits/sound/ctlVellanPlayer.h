#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "kits/common/Event.h"

namespace qm {

// A position in the file at which the control raises Mark. One mark for each EventId.
struct tyPositionMark {
  float Position = 0;        // seconds from the start of the file
  std::int32_t EventId = 0;  // given back by the notification
  std::int32_t Tag = 0;      // likewise
};

// A ramp of the volume over item time.
struct tyVolumeChange {
  std::int16_t Reference = 0;  // one change for each reference
  float StartTime = 0;         // seconds from the start of the file
  float Duration = 0;          // seconds of item time; 0 jumps
  float StartVolume = 0;       // per cent
  float EndVolume = 0;         // per cent
  float NotifyVolume = -1;     // level at whose crossing VolumeNotify is raised; -1 for none
  bool RemoveWhenComplete = true;
  bool SetVolumePermanently = true;  // the volume stays at EndVolume, else it returns to what it was
};

// The playback control: one file at a time through one output device. Host thread only.
//
// Positions are seconds from the start of the file, single precision, whatever AudioStart is. Operations take
// effect at the frame of the notification during whose delivery they are called, else where rendering stands.
// Opened, Cued, Playing, Paused and Closed, and the answers to a set volume, speed or stretch, are raised
// within the call; all others from the sound system's Pump().
class ctlVellanPlayer {
 public:
  virtual ~ctlVellanPlayer() = default;

  struct Events {
    Event<> AudioEnd;
    Event<> Closed;
    Event<> Cued;
    Event<> Opened;
    Event<> Paused;
    Event<> Playing;
    Event<> LoopRestart;
    Event<> LoopCompleted;
    Event<std::int16_t, std::int16_t> Level;        // left, right: signed 16-bit peaks since the last
    Event<std::int32_t, const std::string&> Error;  // number, text
    Event<float> PlaySpeed;
    Event<float> TimeStretch;
    Event<float> Volume;              // per cent
    Event<std::int16_t> VolumeStart;  // reference of the volume change
    Event<std::int16_t> VolumeNotify;
    Event<std::int16_t> VolumeEnd;
    Event<> Position;                        // precedes every Mark at the same frame
    Event<std::int32_t, std::int32_t> Mark;  // EventId, Tag
  } events;

  // Prepares a file for playing; anything open before is closed. 0 on success, else a number and an Error
  // event.
  virtual std::int32_t Open(const std::string& FileName) = 0;
  // Stops and returns to AudioStart.
  virtual bool Cue() = 0;
  virtual bool Play() = 0;
  virtual bool Pause() = 0;
  // Moves to a percentage of the file's total length; goes on playing when it was.
  virtual bool Seek(double Percent) = 0;
  // Releases the file. Marks and volume changes go with it; sound already rendered is heard out.
  virtual bool Close() = 0;
  // Leaves the running loop at once, going on behind its end.
  virtual void ExitLoop() = 0;
  // One-time start of the audio engine. Idempotent.
  virtual void InitialiseEngine() = 0;

  // Replaces the mark of the same EventId.
  virtual bool AddPositionEvent(const tyPositionMark& Mark) = 0;
  virtual bool RemovePositionEvent(std::int32_t EventId, std::int32_t Reserved) = 0;
  // Replaces the change of the same Reference. A change whose start has passed starts where rendering stands.
  // False with no open file or a record that makes no sense (not a number, a negative duration).
  virtual bool AddVolumeChange(const tyVolumeChange& Change) = 0;
  virtual bool RemoveVolumeChange(std::int16_t Reference) = 0;

  virtual float SecondsPlayed() const = 0;
  virtual float SecondsRemaining() const = 0;  // to AudioEnd, not below 0
  virtual float PercentPlayed() const = 0;     // of the file's total length

  virtual void SetAudioStart(float Seconds) = 0;
  virtual void SetAudioEnd(float Seconds) = 0;  // 0 or less, or beyond the file: its end

  virtual float LoopStart() const = 0;
  virtual void SetLoopStart(float Seconds) = 0;
  virtual float LoopEnd() const = 0;
  virtual void SetLoopEnd(float Seconds) = 0;
  virtual bool UseLoop() const = 0;
  virtual void SetUseLoop(bool Use) = 0;
  virtual std::int32_t LoopCount() const = 0;
  virtual void SetLoopCount(std::int32_t Passes) = 0;
  // A loop is in use and the position is within it.
  virtual bool InLoop() const = 0;

  virtual float Volume() const = 0;
  virtual void SetVolume(float Percent) = 0;
  virtual float PlaySpeed() const = 0;  // 1 is the recorded speed; changes pitch and tempo
  virtual void SetPlaySpeed(float Speed) = 0;
  virtual float TimeStretchRatio() const = 0;  // the audio lasts this many times as long, at the same pitch
  virtual void SetTimeStretchRatio(float Ratio) = 0;
  virtual bool ReportErrors() const = 0;  // whether Error events are raised
  virtual void SetReportErrors(bool Report) = 0;
  virtual std::string EngineName() const = 0;

  virtual void SetPlayerId(std::int32_t Id) = 0;
  virtual void SetBufferLength(std::int32_t Milliseconds) = 0;
  virtual void SetBufferCount(std::int32_t Count) = 0;
  // 0: DeviceNumber counts the sound server's outputs from 1, below 1 meaning the default one.
  // 2: it counts the outputs that the host added (a clock without sound, files), from 1.
  virtual void SetDeviceType(std::int32_t Type) = 0;
  virtual void SetDeviceNumber(std::int32_t Number) = 0;
};

}  // namespace qm
