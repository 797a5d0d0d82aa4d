#include "audio/cCopyAudioFileNCT.h"

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

#include "audio/CopyCore.h"
#include "audio/CopyDestination.h"
#include "audio/CopyFormat.h"
#include "audio/RetainedAudio.h"
#include "kits/common/Files.h"
#include "services/Diagnostics.h"

namespace qm {
namespace {

constexpr std::int32_t kTraceLevel = 5;
constexpr std::int32_t kFailureLevel = 2;
constexpr float kLowestPercent = 0.00001f;

// A percentage that is no number is the lowest one.
float LimitPercent(float percent, float highest) {
  return percent > kLowestPercent ? std::min(percent, highest) : kLowestPercent;
}

// False for as long as it is set, true again when the work ends, however it ends.
class Busy {
 public:
  explicit Busy(bool& working) : m_working(working) { m_working = true; }
  ~Busy() { m_working = false; }
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;

 private:
  bool& m_working;
};

}  // namespace

cCopyAudioFileNCT::cCopyAudioFileNCT()
    : m_destination(std::make_unique<CopyDestination>()), m_retained(std::make_unique<RetainedAudio>()) {}

cCopyAudioFileNCT::~cCopyAudioFileNCT() {
  Terminate();
}

void cCopyAudioFileNCT::SetNormalisePercentage(float percent) {
  m_settings.NormalisePercentage = LimitPercent(percent, 500);
}
void cCopyAudioFileNCT::SetAutoTopThreshold(float percent) {
  m_settings.AutoTopThreshold = LimitPercent(percent, 100);
}
void cCopyAudioFileNCT::SetMixVolume(float percent) {
  m_settings.MixVolume = LimitPercent(percent, 100);
}

float cCopyAudioFileNCT::DestinationDuration() const {
  return m_destination->Duration();
}

// Runs one public call: nested ones are refused, nothing is thrown, and what a listener asked for meanwhile
// is done behind it.
template <class Work>
std::int32_t cCopyAudioFileNCT::Operation(const char* name, Work work) {
  if (m_working) return cerDestinationInvalid;
  Trace(kTraceLevel, ednOpens, "Start ", name);
  m_detail.clear();
  try {
    const Busy busy(m_working);
    m_lastError = work();
  } catch (const std::bad_alloc&) {
    m_lastError = cerRetainInvalid;  // nothing else takes memory by the length of the audio
  } catch (const std::exception& failure) {
    m_lastError = cerCancelled;
    m_detail = failure.what();
  }
  m_sourceFilename.clear();
  m_stop = false;
  const std::int32_t code = m_lastError;
  if (const Leave leave = std::exchange(m_leave, Leave::no); leave != Leave::no) CloseDestination(leave);
  if (code == cerOK)
    Trace(kTraceLevel, ednCloses, "Finish ", name);
  else
    Trace(kFailureLevel, ednCloses, "Exit : ", name, " (", CopyErrorText(code), ")");
  return code;
}

std::int32_t cCopyAudioFileNCT::CreateDestinationFile(const std::string& DestFile,
                                                      const std::shared_ptr<cAudioFormat>& Format) {
  return Operation("CreateDestinationFile", [&] { return Create(DestFile, Format.get()); });
}

enCopyError cCopyAudioFileNCT::Create(const std::string& path, const cAudioFormat* format) {
  if (path.empty()) return cerDestinationInvalid;
  if (format == nullptr) return cerNoFormat;
  if (const enCopyError error = CheckCopyFormat(*format)) return error;
  if (!m_destFileName.empty()) CloseDestination(Leave::finish);
  m_retained->Clear();
  const enCopyError error = m_destination->Open(path, *format);
  m_detail = m_destination->Problem();
  if (error == cerOK) m_destFileName = path;
  return error;
}

std::int32_t cCopyAudioFileNCT::AddFile(const std::string& SourceFile, float StartPosition, float EndPosition,
                                        float RetainSeconds) {
  return Operation("AddFile", [&] { return Add(SourceFile, StartPosition, EndPosition, RetainSeconds); });
}

enCopyError cCopyAudioFileNCT::Add(const std::string& path, float start, float end, float retain) {
  if (!FileExists(path)) return cerSourceInvalid;
  if (m_destFileName.empty()) return cerDestinationInvalid;
  CopySource source;
  if (const enCopyError error = OpenSource(path, source)) return error;
  return CopyStretchOf(path, source, start, end, retain);
}

enCopyError cCopyAudioFileNCT::OpenSource(const std::string& path, CopySource& source) {
  const enCopyError error = source.Open(path);
  m_detail = source.Reader.ErrorText();
  return error;
}

enCopyError cCopyAudioFileNCT::CopyStretchOf(const std::string& path, CopySource& source, float start,
                                             float end, float retain) {
  m_sourceFilename = path;
  m_sourceBrokeOff = false;
  CopyStretch stretch;
  if (const enCopyError error = stretch.Set(source, start, end, retain)) return error;
  CopyCore core(*this, m_stop, source, stretch, *m_destination, *m_retained);
  const enCopyError error = core.Run();
  m_sourceBrokeOff = core.SourceBrokeOff();
  if (m_sourceBrokeOff) {
    m_detail = source.Reader.ErrorText();
    Trace(kFailureLevel, ednPlain, "The source breaks off : ", path, " ", m_detail);
  }
  if (error == cerDestinationNotCreated) m_detail = m_destination->Problem();
  return error;
}

std::int32_t cCopyAudioFileNCT::CopyAudioFile(const std::string& SourceFile, const std::string& DestFile,
                                              const std::shared_ptr<cAudioFormat>& Format,
                                              float StartPosition, float EndPosition, float& SourceDuration) {
  return Operation("CopyAudioFile", [&] {
    return CopyOnce(SourceFile, DestFile, Format.get(), StartPosition, EndPosition, SourceDuration);
  });
}

std::int32_t cCopyAudioFileNCT::CopyAudioFile(const std::string& SourceFile, const std::string& DestFile,
                                              const std::shared_ptr<cAudioFormat>& Format,
                                              float StartPosition, float EndPosition) {
  float ignored = 0;
  return CopyAudioFile(SourceFile, DestFile, Format, StartPosition, EndPosition, ignored);
}

enCopyError cCopyAudioFileNCT::CopyOnce(const std::string& sourceFile, const std::string& destFile,
                                        const cAudioFormat* format, float start, float end, float& duration) {
  if (!FileExists(sourceFile)) return cerSourceInvalid;
  CopySource source;
  if (const enCopyError error = OpenSource(sourceFile, source)) return error;
  const cAudioFormat wanted = CompleteCopyFormat(format ? *format : cAudioFormat(), source.Format);
  if (const enCopyError error = Create(destFile, &wanted)) return error;
  // However this ends, a listener's exception included.
  const struct AbandonUnlessFinished {
    cCopyAudioFileNCT& copier;
    ~AbandonUnlessFinished() { copier.CloseDestination(Leave::abandon); }
  } guard{*this};
  if (const enCopyError error = CopyStretchOf(sourceFile, source, start, end, -1)) return error;
  m_lastError = cerOK;
  CloseDestination(Leave::finish);
  if (m_lastError == cerOK) duration = source.DurationSeconds;
  return static_cast<enCopyError>(m_lastError);
}

void cCopyAudioFileNCT::CloseDestination(Leave how) {
  if (m_destFileName.empty()) return;
  if (how == Leave::abandon) {
    m_destination->Abandon();
  } else if (!m_destination->Write(m_retained->Samples()) || !m_destination->Finish()) {
    m_destination->Abandon();
    m_lastError = cerDestinationNotCreated;
    m_detail = m_destination->Problem();
  }
  m_retained->Clear();
  m_destFileName.clear();
}

// A listener's call waits for the work to end, and ends it.
void cCopyAudioFileNCT::LeaveDestination(Leave how) {
  if (m_working) {
    m_leave = how;
    m_stop = true;
    return;
  }
  const char* name = how == Leave::finish ? "FinishDestAudioFile" : "AbandonDestAudioFile";
  Trace(kTraceLevel, ednOpens, "Start ", name);
  CloseDestination(how);
  Trace(kTraceLevel, ednCloses, "Finish ", name);
}

void cCopyAudioFileNCT::FinishDestAudioFile() {
  LeaveDestination(Leave::finish);
}
void cCopyAudioFileNCT::AbandonDestAudioFile() {
  LeaveDestination(Leave::abandon);
}
void cCopyAudioFileNCT::Terminate() {
  if (!m_destFileName.empty()) LeaveDestination(Leave::finish);
}

}  // namespace qm
