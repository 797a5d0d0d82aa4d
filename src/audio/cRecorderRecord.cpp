#include <cctype>

#include "audio/AudioFileService.h"
#include "audio/cRecorder.h"
#include "contract/IPlayerCallback.h"
#include "item/cHDItem.h"
#include "kits/common/Files.h"
#include "kits/sound/cAudioFormat.h"
#include "kits/sound/record/RecordingControl.h"
#include "kits/sound/record/RecordingFile.h"
#include "services/Diagnostics.h"
#include "settings/cAudioSettings.h"

namespace qm {

namespace {

constexpr std::int32_t kRecordingBackColour = 255;  // red
constexpr std::int32_t kRecordingTextColour = 0xFFFFFF;

bool Exit(const char* reason) {
  Trace(5, ednCloses, "Exit : ", reason);
  return false;
}

// What a recording takes the place of, in case that none comes about.
struct ItemMarks {
  explicit ItemMarks(const cHDItem& item)
      : backColour(item.BackColour()),
        textColour(item.TextColour()),
        endType(item.EndType()),
        audioStart(item.AudioStart(1)),
        audioEnd(item.AudioEnd(1)),
        extro(item.Extro(1)),
        introStart(item.IntroStart(1)),
        introEnd(item.IntroEnd(1)) {}

  void PutBack(cHDItem& item) const {
    item.SetBackColour(backColour);
    item.SetTextColour(textColour);
    item.SetEndType(endType);
    item.SetAudioStart(1, audioStart);
    item.SetAudioEnd(1, audioEnd);
    item.SetExtro(1, extro);
    item.SetIntroStart(1, introStart);
    item.SetIntroEnd(1, introEnd);
  }

  std::int32_t backColour, textColour;
  enItemEndType endType;
  float audioStart, audioEnd, extro, introStart, introEnd;
};

void MarkItem(cHDItem& item) {
  item.SetBackColour(kRecordingBackColour);
  item.SetTextColour(kRecordingTextColour);
  item.SetAudioStart(1, 0);
  item.SetAudioEnd(1, 0);
  item.SetExtro(1, 0);
  item.SetIntroEnd(1, 0);
  item.SetIntroStart(1, 0);
  item.SetEndType(ietNonSpecific);
}

void FillTexts(cHDItem& item, const std::string& title, const std::string& artist,
               const std::string& source) {
  if (item.ItemTitle().empty()) item.SetItemTitle(title);
  if (item.ArtistName(1).empty() && !artist.empty()) item.SetArtistName(1, artist);
  if (item.ItemDescription(1).empty() && !source.empty()) item.SetItemDescription(1, "On " + source);
}

bool BeginsWithDrive(const std::string& path) {
  return path.size() > 1 && path[1] == ':' && std::isalpha(static_cast<unsigned char>(path[0]));
}

}  // namespace

bool cRecorder::RecordItem(std::shared_ptr<cHDItem> RecordHDItem, std::shared_ptr<cAudioFormat> AudioFormat,
                           std::int16_t TriggerLevel, float TriggerTime, const std::string& Title,
                           const std::string& ArtistName, const std::string& Source) {
  const auto keeper = weak_from_this().lock();
  WriteDebug("Start RecordItem", 5, ednOpens);
  if (!m_callback || !m_control || !RecordHDItem || m_item || m_status != rsClosed)
    return Exit("not ready to record");
  if (!ResolveFormat(AudioFormat) || !MayRecordInto(RecordHDItem->AudioFileName())) return false;
  m_secondsRecorded = m_secondsRemaining = 0;
  m_start = -1;
  m_triggerLevel = TriggerLevel;
  m_triggerTime = TriggerTime;
  if (!PrepareFile(RecordHDItem->AudioFileName(), AudioFormat)) return Exit("no file to record into");
  const ItemMarks marks(*RecordHDItem);
  MarkItem(*RecordHDItem);
  if (!OpenControl(RecordHDItem, *AudioFormat)) {
    marks.PutBack(*RecordHDItem);
    return Exit("the recording control does not open");
  }
  FillTexts(*RecordHDItem, Title, ArtistName, Source);
  WriteDebug("Finish RecordItem", 5, ednCloses);
  return true;
}

bool cRecorder::ResolveFormat(std::shared_ptr<cAudioFormat>& format) const {
  if (!format)
    if (const auto settings = m_callback->AudioSettings()) format = settings->AudioFormat();
  if (!format) return Exit("no AudioFormat");
  const bool fits = format->SampleRate() > 0 && format->SampleRate() < 48000 && format->Channels() > 0 &&
                    format->Channels() < 3 && format->FormatType() > 0;
  return fits || Exit("the AudioFormat is not one to record in");
}

bool cRecorder::MayRecordInto(const std::string& path) const {
  std::string errorText;
  if (path.empty()) return Exit("no AudioFileName");
  return RecordingPathUsable(path, errorText) || Exit(errorText.c_str());
}

// This platform has no drives with letters, so that a letter never names a fixed local one.
bool cRecorder::MustTransfer(const std::string& path) const {
  const auto settings = m_callback->AudioSettings();
  if (!settings || !settings->AudioRecordLocal()) return false;
  return path.starts_with("\\\\") || BeginsWithDrive(path) || IsNetworkPath(path);
}

bool cRecorder::PrepareFile(const std::string& path, const std::shared_ptr<cAudioFormat>& format) {
  m_transferToNetwork = MustTransfer(path);
  m_recordFileName = path;
  if (!m_transferToNetwork) return true;
  if (OpenRecordingFile(path, format, true, *m_platform)) {
    m_recordFileName = TemporaryFileName(ExtensionOf(path));
    return true;
  }
  Reset();
  return false;
}

bool cRecorder::OpenControl(const std::shared_ptr<cHDItem>& item, const cAudioFormat& format) {
  const auto control = m_control;
  RecordingRequest request;
  request.path = m_recordFileName;
  request.format = format;
  request.triggerLevel = m_triggerLevel;
  request.triggerSeconds = m_triggerTime;
  request.startSeconds = m_start;
  m_item = item;
  m_status = m_triggerLevel > 0 ? rsWaitingLevel : rsRecording;
  control->SetDeviceNumber(m_waveInDeviceNumber);
  const std::int32_t error = control->Open(request);
  if (error == 0 && m_control) return true;
  if (error == 0) control->Close(erkDiscard);  // terminated by a listener
  if (m_transferToNetwork) DeleteFile(m_recordFileName);
  Reset();
  return false;
}

}  // namespace qm
