#include "audio/AudioFileService.h"
#include "audio/RecordTransfer.h"
#include "audio/cRecorder.h"
#include "contract/IPlayerCallback.h"
#include "item/cHDItem.h"
#include "kits/common/Files.h"
#include "kits/common/MessageBox.h"
#include "kits/common/Process.h"
#include "kits/common/Text.h"
#include "kits/sound/cAudioFile.h"
#include "kits/sound/record/RecordingControl.h"
#include "services/Diagnostics.h"

namespace qm {

namespace {
constexpr char kTransferCaption[] = "Transferring to Network";
constexpr char kPlainTitle[] = "Recording";
constexpr char kRecordedTitle[] = "New Audio Recorded";
}  // namespace

bool cRecorder::CloseItem(enRecorderClosePrompt Prompt) {
  if (m_status == rsClosed || !m_item) return true;
  if (m_closing) return false;
  const auto keeper = weak_from_this().lock();
  const auto control = m_control;
  const auto item = m_item;
  WriteDebug("Start CloseItem", 5, ednOpens);
  m_closing = true;
  control->Stop();
  m_secondsRecorded = control->Position();
  m_previousItem = item;
  m_previousSecondsRecorded = m_secondsRecorded;
  m_previousRecordingReference = m_recordingReference;
  const bool kept = WantsToKeep(Prompt, *item);
  bool complete = control->Close(kept ? erkKeep : erkDiscard) == 0 || !kept;
  if (kept) {
    complete = Keep(*item) && complete;
  } else {
    DeleteFile(m_recordFileName);
    item->SetAudioEnd(1, -1);
  }
  Reset();
  m_closing = false;
  ReportWith(reClosed, item->Reference(), kept ? m_previousSecondsRecorded : 0);
  Trace(5, ednCloses, "Finish CloseItem - ", kept ? "kept" : "not kept");
  return complete;
}

bool cRecorder::WantsToKeep(enRecorderClosePrompt prompt, const cHDItem& item) const {
  return prompt == rcpSave || (prompt == rcpPrompt && AskToKeep(item));
}

bool cRecorder::AskToKeep(const cHDItem& item) const {
  const std::string text = "Do you want to save the recording '" + item.ItemTitle() + "'?";
  return m_platform->messageBox->Show(text, mbsYesNo + mbsQuestion, ProgramName()) == mbaYes;
}

// A recording that cannot be transferred stays where it was made.
bool cRecorder::Keep(cHDItem& item) {
  const bool inPlace = !m_transferToNetwork || Transfer(item.AudioFileName());
  if (Trim(item.ItemTitle()) == kPlainTitle) item.SetItemTitle(kRecordedTitle);
  item.SetBackColour(kButtonFaceColour);
  item.SetTextColour(kButtonTextColour);
  item.SetTotalLength(
      static_cast<float>(GetAudioFileLengthSeconds(inPlace ? item.AudioFileName() : m_recordFileName)));
  item.SetAudioEnd(1, item.TotalLength());
  item.SetExtro(1, item.AudioLength(1));
  return inPlace;
}

bool cRecorder::Transfer(const std::string& path) {
  Trace(5, ednPlain, kTransferCaption, " - ", path);
  std::string errorText;
  const auto progress = [this](float percent) {
    if (onProgress && !m_silent) onProgress(kTransferCaption, percent);
  };
  if (TransferRecording(m_recordFileName, path, progress, errorText)) return DeleteFile(m_recordFileName);
  Report(reError, afeCannotWrite, 0, errorText + "; the recording stays in '" + m_recordFileName + "'");
  return false;
}

void cRecorder::Reset() {
  m_item.reset();
  m_secondsRecorded = m_secondsRemaining = 0;
  m_status = rsClosed;
  m_statusBeforePause = rsRecording;
  m_recordingReference = 0;
  m_start = -1;
  m_triggerLevel = 0;
  m_triggerTime = 0;
  m_transferToNetwork = false;
  m_recordFileName.clear();
  m_leftLevel = m_rightLevel = 0;
}

}  // namespace qm
