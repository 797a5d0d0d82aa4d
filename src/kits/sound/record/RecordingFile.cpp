#include "kits/sound/record/RecordingFile.h"

#include <sys/statvfs.h>

#include "kits/common/Files.h"
#include "kits/common/Numbers.h"
#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/AudioFileWriters.h"
#include "kits/sound/cAudioFile.h"

namespace qm {

namespace {

constexpr double kCheckpointSeconds = 0.5;  // of sound, and of time between two visits to the disk itself
constexpr std::int32_t kUsualBitRate = 128000;

struct TypeMode {
  std::int32_t type, tag, mode;  // tag 0: any
};
constexpr TypeMode kModes[] = {{aftWAV, wftMPEG, ecwLayer2}, {aftWAV, wftMPEGLayer3, ecwLayer3},
                               {aftWAV, 0, ecmWAV},          {aftMP3, 0, ecmMP3},
                               {aftOgg, 0, ecmOgg},          {aftWMA, 0, ecmWMA},
                               {aftMP2, 0, ecmMP2}};

std::int32_t ModeOf(const cAudioFormat& format) {
  for (const TypeMode& row : kModes)
    if (row.type == format.FormatType() && (row.tag == 0 || row.tag == format.WAVFormatTag()))
      return row.mode;
  return 0;
}

// "44100,2,128000": the last of a Windows Media profile's three numbers.
std::int32_t BitRateOf(const cAudioFormat& format) {
  if (format.BitRate() > 0) return format.BitRate();
  const std::string& profile = format.WMAProfile();
  const std::size_t comma = profile.rfind(',');
  const std::int32_t rate = comma == std::string::npos ? 0 : ParseWhole(profile.substr(comma + 1));
  return rate > 0 ? rate : kUsualBitRate;
}

AudioFileSettings SettingsFor(const cAudioFormat& format) {
  AudioFileSettings settings;
  settings.sampleRate = format.SampleRate();
  settings.channels = format.Channels();
  settings.formatTag = format.WAVFormatTag() > 0 ? format.WAVFormatTag() : wftPCM;
  const std::int32_t usualBits = settings.formatTag == wftFloat ? 32 : 16;
  settings.bits = format.BitsPerSample() > 0 ? format.BitsPerSample() : usualBits;
  settings.bitRate = BitRateOf(format);
  settings.place = AudioFilePlace::atOnce;
  return settings;
}

double BytesPerSecond(const cAudioFormat& format) {
  const AudioFileSettings settings = SettingsFor(format);
  return ModeOf(format) == ecmWAV
             ? static_cast<double>(settings.sampleRate) * settings.channels * settings.bits / 8
             : settings.bitRate / 8.0;
}

}  // namespace

RecordingFile::RecordingFile() = default;
RecordingFile::~RecordingFile() = default;

AudioFileError RecordingFile::Fail(AudioFileError error) {
  if (error && !m_error) m_error = std::move(error);
  return m_error;
}

AudioFileError RecordingFile::Create(const std::string& path, const cAudioFormat& format) {
  m_path = path;
  m_format = format;
  AudioFileError error;
  m_writer = CreateAudioFileWriter(path, ModeOf(format), SettingsFor(format), error);
  return Fail(error);
}

AudioFileError RecordingFile::Write(const float* interleaved, std::size_t frames) {
  if (m_error || frames == 0) return m_error;
  if (AudioFileError error = m_writer->Write(interleaved, frames)) {
    m_writer->Checkpoint(AudioFileSync::disk);
    return Fail(std::move(error));
  }
  m_frames += static_cast<std::int64_t>(frames);
  const double since = static_cast<double>(m_frames - m_checkpointFrames) / m_format.SampleRate();
  return since >= kCheckpointSeconds ? Checkpoint() : AudioFileError{};
}

// By sound, so that the file's bytes do not depend on how fast they came; to the disk itself only as time
// passes.
AudioFileError RecordingFile::Checkpoint() {
  if (m_error || m_frames == m_checkpointFrames) return m_error;
  const Clock::time_point now = Clock::now();
  const bool sync = now - m_synced >= std::chrono::duration<double>(kCheckpointSeconds * 0.9);
  m_checkpointFrames = m_frames;
  if (sync) m_synced = now;
  return Fail(m_writer->Checkpoint(sync ? AudioFileSync::disk : AudioFileSync::system));
}

AudioFileError RecordingFile::Finish() {
  auto writer = std::move(m_writer);
  return writer && !m_error ? Fail(writer->Finish()) : m_error;
}

void RecordingFile::Delete() {
  m_writer.reset();
  DeleteFile(m_path);
}

double RecordingFile::SecondsOfRoom() const {
  struct statvfs room {};
  if (statvfs(AudioFilePath(m_path).c_str(), &room) != 0) return 0;
  return static_cast<double>(room.f_bavail) * static_cast<double>(room.f_frsize) / BytesPerSecond(m_format);
}

}  // namespace qm
