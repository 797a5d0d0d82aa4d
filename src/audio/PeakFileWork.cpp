#include "audio/PeakFileWork.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <limits>

#include "audio/FileDates.h"
#include "audio/cPeakFile.h"
#include "kits/common/Files.h"
#include "kits/common/LittleEndian.h"
#include "kits/common/Numbers.h"
#include "kits/sound/AudioFileTarget.h"
#include "kits/sound/cAudioFile.h"

namespace qm {
namespace {

constexpr std::int64_t kAudioDateTolerance = 5;  // seconds
constexpr std::int64_t kPeakDateTolerance = 30;

bool Near(double first, double second, std::int64_t seconds) {
  constexpr double kDaySeconds = 86400;
  const double apart = std::abs(first - second) * kDaySeconds;
  return std::isfinite(apart) && RoundToWhole(apart) <= seconds;
}

// The magnitude of a sample, full scale at most 32767.
std::int16_t Level(std::int16_t sample) {
  return static_cast<std::int16_t>(Limit(std::abs(int{sample}), 0, 32767));
}

}  // namespace

tyPeakFileWork::tyPeakFileWork() = default;
tyPeakFileWork::~tyPeakFileWork() = default;

std::int32_t tyPeakFileWork::OpenAudioForScan(const Clock& clock) {
  const auto modified = GetFileModified(AudioFile);
  auto audio = std::make_unique<cAudioFile>();
  audio->AllowCompressedOpen(true);
  if (const std::int32_t error = audio->OpenForRead(AudioFile, 0, 1); error != afeNone) return error;
  Header.AudioLastModified = modified ? NormaliseFileDate(*modified) : 0;
  Header.AudioFileSize = PeakHeaderFileSize(FileLength(AudioFile));
  Header.PeakFileDate = CurrentFileDate(clock);
  Header.AudioChannels = static_cast<std::int16_t>(audio->Channels());
  Header.AudioSampleRate = audio->SampleRate();
  Header.AudioNumberSamples = static_cast<double>(audio->NumberSamples());
  AudioReader = std::move(audio);
  return afeNone;
}

enPeakFileErr tyPeakFileWork::CreatePeakFile() {
  if (PeakFile.empty()) return pfeInvalidPeakFile;
  auto file = std::make_unique<AudioFileTarget>();
  if (file->Create(PeakFile)) return pfeOpenDestFileFail;
  m_file = std::move(file);
  m_image.assign(kPeakHeaderBytes, '\0');
  return pfeOK;
}

void tyPeakFileWork::AddPoint(const std::int16_t* point) {
  AppendLittleEndian<std::int16_t>(m_image, point[0]);
  Header.MaxLeftLevel = Greater(Header.MaxLeftLevel, Level(point[0]));
  if (Header.AudioChannels > 1) {
    AppendLittleEndian<std::int16_t>(m_image, point[1]);
    Header.MaxRightLevel = Greater(Header.MaxRightLevel, Level(point[1]));
  }
  Header.NumberPeakSamples += 1;
}

bool tyPeakFileWork::WritePeakFile() {
  StorePeakHeader(Header, m_image.data());
  return m_file->WriteAt(0, m_image.data(), m_image.size()) && !m_file->Commit();
}

bool tyPeakFileWork::ClosePeakWork(PeakFileKeep keep) {
  AudioReader.reset();
  const bool written = keep == PeakFileKeep::discard || !m_file || WritePeakFile();
  m_file.reset();
  m_image.clear();
  if (keep == PeakFileKeep::discard) DeletePeakFile(PeakFile);
  return written;
}

std::string DefaultPeakFile(const std::string& audioFile) {
  if (audioFile.empty()) return {};
  return JoinPath(JoinPath(FolderOf(audioFile), "Peakfiles"), BaseNameOf(audioFile) + ".ppk");
}

bool IsPeakFileValid(const std::string& audioFile, const std::string& peakFile) {
  if (audioFile.empty() || peakFile.empty()) return false;
  const std::int64_t audioLength = FileLength(audioFile);
  const auto modified = GetFileModified(audioFile);
  PeakFileHeader header;
  if (audioLength <= 0 || !modified || !ReadPeakHeader(peakFile, header)) return false;
  if (!(header.HeaderVersion >= kPeakHeaderVersion)) return false;  // a value that is no number fails as well
  if (header.AudioFileSize != PeakHeaderFileSize(audioLength)) return false;
  const double audioDate = NormaliseFileDate(*modified);
  // The second: audio rewritten at about the moment when its peak file was made.
  return Near(audioDate, header.AudioLastModified, kAudioDateTolerance) ||
         Near(audioDate, header.PeakFileDate, kPeakDateTolerance);
}

std::int32_t PeakHeaderFileSize(std::int64_t bytes) {
  return static_cast<std::int32_t>(Limit<std::int64_t>(bytes, 0, std::numeric_limits<std::int32_t>::max()));
}

void DeletePeakFile(const std::string& path) {
  std::error_code error;
  if (std::filesystem::is_regular_file(NativePath(path), error)) DeleteFile(path);
}

}  // namespace qm
