#include <algorithm>
#include <exception>
#include <utility>

#include "audio/PeakFileTrace.h"
#include "audio/PeakFileWork.h"
#include "audio/PeakPointReader.h"
#include "audio/cPeakFile.h"
#include "kits/common/Files.h"
#include "kits/common/Numbers.h"
#include "kits/sound/cAudioFile.h"

namespace qm {
namespace {

// Set as long as a scan runs, and again for the outer one when a listener has scanned something else.
class FlagWhile {
 public:
  explicit FlagWhile(bool& flag) : m_flag(flag), m_before(std::exchange(flag, true)) {}
  ~FlagWhile() { m_flag = m_before; }
  FlagWhile(const FlagWhile&) = delete;
  FlagWhile& operator=(const FlagWhile&) = delete;

 private:
  bool& m_flag;
  bool m_before;
};

bool MakeFolderOf(const std::string& file) {
  const std::string folder = FolderOf(file);
  return folder.empty() || MakeFolder(folder);
}

std::int16_t Percent(std::int32_t position, std::int32_t frames) {
  return static_cast<std::int16_t>(Limit<std::int64_t>(RoundToWhole(position * 100.0 / frames), 0, 100));
}

}  // namespace

enPeakFileErr cPeakFile::ScanAudioFile(const std::string& AudioFile, std::string& PeakFile,
                                       bool ForceScan) try {
  PeakFileTrace trace("ScanAudioFile");
  const FlagWhile scanning(m_scanning);
  m_cancelRequested = false;
  return trace.Result(Scan(AudioFile, PeakFile, ForceScan));
} catch (const std::exception&) {
  return Fail(pfeOpenAudioFileFail);
}

enPeakFileErr cPeakFile::ScanAudioFile(const std::string& AudioFile, const std::string& PeakFile,
                                       bool ForceScan) {
  std::string peakFile = PeakFile;
  return ScanAudioFile(AudioFile, peakFile, ForceScan);
}

enPeakFileErr cPeakFile::Scan(const std::string& audioFile, std::string& peakFile, bool force) {
  if (FileLength(audioFile) <= 0) return Fail(pfeInvalidAudioFile);
  if (peakFile.empty()) peakFile = DefaultPeakFile(audioFile);
  if (!MakeFolderOf(peakFile)) return pfeOpenDestFileFail;
  if (!force && IsPeakFileValid(audioFile, peakFile)) return Fail(pfeOK);

  tyPeakFileWork work;
  work.AudioFile = audioFile;
  work.PeakFile = peakFile;
  work.Header.SamplingInterval = kPeakSamplingInterval;
  work.Header.HeaderVersion = kPeakHeaderVersion;
  if (work.OpenAudioForScan(*m_clock) != afeNone) return Fail(pfeOpenAudioFileFail);
  if (work.CreatePeakFile() != pfeOK) return Fail(pfeOpenDestFileFail);
  events.ScanAudioStart();
  ScanBlocks(work);
  EndScan(work);
  events.ScanAudioEnd();
  return m_lastError;
}

void cPeakFile::ScanBlocks(tyPeakFileWork& work) {
  constexpr double kLongest = INT32_MAX;
  const auto frames = static_cast<std::int32_t>(std::min(work.Header.AudioNumberSamples, kLongest));
  PeakPointReader reader(*work.AudioReader, work.AudioFile, work.Header.SamplingInterval);
  std::int32_t position = 0;
  std::int16_t lastPercent = 0;
  while (position < frames && !m_cancelRequested) {
    const std::int16_t percent = Percent(position, frames);
    if (percent != lastPercent) {
      events.ScanAudioProgress(percent);
      if (m_cancelRequested) break;
      lastPercent = percent;
    }
    const std::int32_t read = reader.Next(std::min(work.Header.SamplingInterval, frames - position));
    if (read == 0) break;
    work.AddPoint(reader.Point());
    position += read;
  }
}

// A listener may cancel up to the very last report of progress.
void cPeakFile::EndScan(tyPeakFileWork& work) {
  if (!m_cancelRequested) {
    m_lastError = pfeOK;
    events.ScanAudioProgress(100);
  }
  if (m_cancelRequested) {
    work.ClosePeakWork(PeakFileKeep::discard);
    m_lastError = pfeCancelled;
  } else if (work.ClosePeakWork(PeakFileKeep::keep)) {
    ReadPeakFile(work.PeakFile);
  } else {
    m_lastError = pfeOpenDestFileFail;
  }
}

}  // namespace qm
