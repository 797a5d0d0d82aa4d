#include "audio/cPeakFile.h"

#include <algorithm>
#include <exception>

#include "audio/FileDates.h"
#include "audio/PeakFileTrace.h"
#include "audio/PeakFileWork.h"
#include "kits/common/Files.h"
#include "kits/common/Numbers.h"

namespace qm {
namespace {

void FillPeakFile(const std::string& audioFile, std::string& peakFile) {
  if (peakFile.empty()) peakFile = DefaultPeakFile(audioFile);
}

enPeakFileErr UpdateHeader(const std::string& audioFile, const std::string& peakFile, bool forceLength,
                           const Clock& clock) {
  if (audioFile.empty()) return pfeInvalidAudioFile;
  const std::int64_t peakLength = FileLength(peakFile);
  if (peakLength < static_cast<std::int64_t>(kPeakHeaderBytes) || peakLength > kMostPeakFileBytes)
    return pfeInvalidPeakFile;
  const std::int64_t audioLength = FileLength(audioFile);
  const auto modified = GetFileModified(audioFile);
  if (audioLength <= 0 || !modified) return pfeInvalidAudioFile;

  std::string image;
  if (!ReadWholeFile(peakFile, image) || image.size() < kPeakHeaderBytes) return pfeOpenDestFileFail;
  PeakFileHeader header = LoadPeakHeader(image);
  if (!forceLength && header.AudioFileSize != PeakHeaderFileSize(audioLength)) return pfeInvalidPeakFile;
  header.AudioLastModified = NormaliseFileDate(*modified);
  header.AudioFileSize = PeakHeaderFileSize(audioLength);
  header.PeakFileDate = CurrentFileDate(clock);
  StorePeakHeader(header, image.data());
  return WriteFileAtomically(peakFile, image) ? pfeOK : pfeOpenDestFileFail;
}

}  // namespace

cPeakFile::cPeakFile(std::shared_ptr<Clock> clock) : m_clock(clock ? std::move(clock) : SystemClock()) {}

cPeakFile::~cPeakFile() {
  Terminate();
}

void cPeakFile::Terminate() {
  m_points = {};
}

qmPeakFileHeader cPeakFile::Header() const {
  return m_header;
}

bool cPeakFile::CheckPeakFileValid(const std::string& AudioFile, std::string& PeakFile) const try {
  FillPeakFile(AudioFile, PeakFile);
  return IsPeakFileValid(AudioFile, PeakFile);
} catch (const std::exception&) {
  return false;
}

bool cPeakFile::CheckPeakFileValid(const std::string& AudioFile, const std::string& PeakFile) const {
  std::string peakFile = PeakFile;
  return CheckPeakFileValid(AudioFile, peakFile);
}

enPeakFileErr cPeakFile::ReadAudioPeakFile(const std::string& AudioFile, bool AutoCreate) try {
  PeakFileTrace trace("ReadAudioPeakFile");
  if (FileLength(AudioFile) <= 0) return trace.Result(Fail(pfeInvalidAudioFile));
  std::string peakFile = DefaultPeakFile(AudioFile);
  if (!IsPeakFileValid(AudioFile, peakFile)) {
    if (!AutoCreate) return trace.Result(pfeInvalidPeakFile);
    const enPeakFileErr scanned = ScanAudioFile(AudioFile, peakFile, true);
    if (scanned != pfeOK) return trace.Result(scanned);
  }
  return trace.Result(ReadPeakFile(peakFile));
} catch (const std::exception&) {
  return Fail(pfeOpenDestFileFail);
}

enPeakFileErr cPeakFile::ReadPeakFile(const std::string& PeakFile) try {
  PeakFileTrace trace("ReadPeakFile");
  return trace.Result(Read(PeakFile));
} catch (const std::exception&) {
  return Fail(pfeOpenDestFileFail);
}

enPeakFileErr cPeakFile::Read(const std::string& peakFile) {
  PeakFileContents contents;
  if (!ReadPeakContents(peakFile, contents)) {
    m_scanning = false;
    DeletePeakFile(peakFile);
    return Fail(pfeOpenDestFileFail);
  }
  m_header = contents.header;
  m_points = std::move(contents.points);
  if (m_cancelRequested) DeletePeakFile(peakFile);
  return Fail(pfeOK);
}

bool cPeakFile::GetSamples(std::int32_t StartSample, std::int32_t NumberSamples,
                           std::vector<std::int16_t>& arrSamples) const try {
  if (m_points.empty() || m_header.SamplingInterval < 1) return false;
  const double interval = m_header.SamplingInterval;
  const auto length = static_cast<std::int64_t>(m_points.size());
  const std::int64_t first = RoundToWhole((StartSample - 1.0) / interval) * m_header.AudioChannels;
  const std::int64_t wanted = RoundToWhole(NumberSamples / interval) * m_header.AudioChannels;
  const std::int64_t count = std::min(wanted, length - first);
  if (first < 0 || count < 1) return false;
  const auto from = m_points.begin() + first;
  arrSamples.assign(from, from + count);
  return true;
} catch (const std::exception&) {
  return false;
}

enPeakFileErr cPeakFile::UpdatePeakFileHeader(const std::string& AudioFile, std::string& PeakFile,
                                              bool ForceUpdateLength) const try {
  PeakFileTrace trace("UpdatePeakFileHeader");
  FillPeakFile(AudioFile, PeakFile);
  return trace.Result(UpdateHeader(AudioFile, PeakFile, ForceUpdateLength, *m_clock));
} catch (const std::exception&) {
  return pfeOpenDestFileFail;
}

enPeakFileErr cPeakFile::UpdatePeakFileHeader(const std::string& AudioFile, const std::string& PeakFile,
                                              bool ForceUpdateLength) const {
  std::string peakFile = PeakFile;
  return UpdatePeakFileHeader(AudioFile, peakFile, ForceUpdateLength);
}

}  // namespace qm
