#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contract/RecorderVocabulary.h"
#include "kits/common/Event.h"
#include "kits/sound/Platform.h"

namespace qm {

class cAudioFormat;
class cAudioSettings;
class cHDItem;
class IPlayerCallback;
class RecordingControl;

// Records one audio item at a time through one recording control, keeps the item's timing up with the sound,
// and decides at the close whether the file stays. Every step is reported to `events.RecorderEvent`, then to
// the owner's IPlayerCallback. Host thread only.
//
// A refused or failed operation returns false. No operation works without an owner or without a control.
// Listeners may call any operation from any event, terminate the recorder or drop the last holder of it. Hold
// it by std::shared_ptr. Times are seconds, levels signed 16-bit peaks.
class cRecorder : public std::enable_shared_from_this<cRecorder> {
 public:
  explicit cRecorder(std::shared_ptr<const Platform> platform = DefaultPlatform());
  // Does what Terminate does.
  ~cRecorder();
  cRecorder(const cRecorder&) = delete;
  cRecorder& operator=(const cRecorder&) = delete;

  struct Events {
    Event<std::int16_t, std::int16_t> LevelChanged;  // left, right: signed 16-bit peaks
    // EventReference (enRecorderEvent), HDReference, sValue1, sValue2, strValue1, strValue2.
    Event<std::int32_t, std::string&, float&, float&, std::string&, std::string&> RecorderEvent;
  } events;

  // Starts recording into the item's AudioFileName, in the owner's settings' format when none is given: below
  // 48000 Hz, 1 or 2 channels. With a TriggerLevel above 0 it waits until the input has reached that level
  // for TriggerTime seconds (0: one frame) and begins where the level was reached first. Title, ArtistName
  // and Source (as "On " and the text, into the description) go where the item's own texts are empty. The
  // item's timing of set 1 and its colours change with the recording.
  bool RecordItem(std::shared_ptr<cHDItem> RecordHDItem, std::shared_ptr<cAudioFormat> AudioFormat = nullptr,
                  std::int16_t TriggerLevel = 0, float TriggerTime = 0, const std::string& Title = "",
                  const std::string& ArtistName = "", const std::string& Source = "");
  // True when nothing is being recorded. rcpPrompt asks by the platform's message box. False when the file
  // could not be completed or brought to its place: an error event tells where the sound is.
  bool CloseItem(enRecorderClosePrompt Prompt);
  bool ResumeItem();
  bool PauseItem();

  // Counts the inputs from 1, 0 is the default one; the settings' device at first. Taken at the next
  // RecordItem.
  std::int16_t WaveInDeviceNumber() const { return m_waveInDeviceNumber; }
  void SetWaveInDeviceNumber(std::int16_t Number) { m_waveInDeviceNumber = Number; }
  std::shared_ptr<cHDItem> HDItem() const { return m_item; }
  std::shared_ptr<cHDItem> PreviousHDItem() const { return m_previousItem; }
  float PreviousSecondsRecorded() const { return m_previousSecondsRecorded; }
  std::int32_t PreviousRecordingReference() const { return m_previousRecordingReference; }
  float SecondsRecorded() const { return m_secondsRecorded; }
  float SecondsRemaining() const { return m_secondsRemaining; }  // of the disk's room
  std::string HDReference() const;                               // "" without an item
  float Start() const { return m_start; }                        // -1: at once
  enRecorderStatus Status() const { return m_status; }
  std::int16_t TriggerLevel() const { return m_triggerLevel; }
  // Also while waiting for it.
  void SetTriggerLevel(std::int16_t Level);
  // The caller's own number.
  std::int32_t RecordingReference() const { return m_recordingReference; }
  void SetRecordingReference(std::int32_t Reference) { m_recordingReference = Reference; }
  // Trimmed, ignoring case; false without an item.
  bool IsSameHDReference(const std::string& HDReference) const;

  // A host with a screen shows how far a transfer has come: a caption and per cent. It comes from within
  // CloseItem.
  std::function<void(const std::string& caption, float percent)> onProgress;

  // For the owners of recorders.

  // Makes the control and takes the input device from the settings. False without a control; settings may be
  // absent.
  bool InitRecorder(const std::shared_ptr<cAudioSettings>& AudioSettings);
  // Keeps what is still being recorded, without asking or telling, and lets go of the control, the item and
  // the owner. Idempotent. Afterwards every operation is refused.
  void Terminate();
  std::shared_ptr<IPlayerCallback> PlayerCallback() const { return m_callback; }
  // Held until Terminate: an owner that is itself held by its recorder must terminate it.
  void SetPlayerCallback(std::shared_ptr<IPlayerCallback> Callback) { m_callback = std::move(Callback); }
  // Whether the recording is made in a local file and copied at the close, and the file that is written.
  bool TransferToNetwork() const { return m_transferToNetwork; }
  const std::string& RecordFileName() const { return m_recordFileName; }
  std::int32_t LeftLevel() const { return m_leftLevel; }
  std::int32_t RightLevel() const { return m_rightLevel; }
  // Null before InitRecorder and after Terminate.
  RecordingControl* Control() const { return m_control.get(); }

 private:
  void Connect();
  void Disconnect();
  void Report(std::int32_t event, float sValue1 = 0, float sValue2 = 0, const std::string& strValue1 = {});
  void ReportWith(std::int32_t event, const std::string& hdReference, float sValue1, float sValue2 = 0,
                  const std::string& strValue1 = {});

  // What the control says.
  void HandleState(std::int32_t state);
  void HandlePosition();
  void HandleLevel(std::int16_t left, std::int16_t right);

  bool ResolveFormat(std::shared_ptr<cAudioFormat>& format) const;
  bool MayRecordInto(const std::string& path) const;
  bool MustTransfer(const std::string& path) const;
  bool PrepareFile(const std::string& path, const std::shared_ptr<cAudioFormat>& format);
  bool OpenControl(const std::shared_ptr<cHDItem>& item, const cAudioFormat& format);
  bool MayChange() const { return m_callback && m_control && m_status != rsClosed && m_item; }
  bool AskToKeep(const cHDItem& item) const;
  bool WantsToKeep(enRecorderClosePrompt prompt, const cHDItem& item) const;
  bool Keep(cHDItem& item);
  bool Transfer(const std::string& path);
  void Reset();

  std::shared_ptr<const Platform> m_platform;
  std::shared_ptr<RecordingControl> m_control;
  std::vector<Event<>::Connection> m_wires;
  std::shared_ptr<IPlayerCallback> m_callback;
  float m_secondsRecorded = 0;
  float m_secondsRemaining = 0;
  enRecorderStatus m_status = rsClosed;
  enRecorderStatus m_statusBeforePause = rsRecording;
  std::int32_t m_recordingReference = 0;
  float m_start = -1;
  std::int16_t m_triggerLevel = 0;
  float m_triggerTime = 0;
  bool m_transferToNetwork = false;
  std::string m_recordFileName;
  std::shared_ptr<cHDItem> m_item;
  std::shared_ptr<cHDItem> m_previousItem;
  float m_previousSecondsRecorded = 0;
  std::int32_t m_previousRecordingReference = 0;
  std::int16_t m_waveInDeviceNumber = 0;
  std::int32_t m_leftLevel = 0;
  std::int32_t m_rightLevel = 0;
  bool m_closing = false;
  bool m_silent = false;  // nobody is told any more
};

}  // namespace qm
