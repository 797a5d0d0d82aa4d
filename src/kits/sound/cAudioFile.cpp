#include "kits/sound/cAudioFile.h"

#include <algorithm>
#include <exception>

#include "kits/common/Numbers.h"
#include "kits/common/Text.h"
#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/AudioFileReader.h"
#include "kits/sound/AudioFileSamples.h"
#include "kits/sound/AudioFileWave.h"
#include "kits/sound/AudioFileWriter.h"

namespace qm {

struct cAudioFile::State {
  CompressedAudio compressed = CompressedAudio::refuse;
  std::unique_ptr<AudioFileReader> reader;
  std::unique_ptr<AudioFileWriter> writer;
  AudioFileSettings wav, mp3, ogg, wma, mp2;
  std::string path;
  cAudioFormat format;
  std::int64_t written = 0;   // frames
  AudioFileError writeError;  // once set, the file being written is not to take its place
  AudioFileError error;
  std::vector<float> scratch;

  std::int32_t Fail(AudioFileError failure) {
    error = std::move(failure);
    return error.number;
  }

  // Runs what may throw inside a library; memory that runs out is an error like any other.
  template <class Work>
  std::int32_t Guarded(Work work) {
    error = {};
    try {
      return Fail(work());
    } catch (const std::exception& failure) {
      return Fail({afeDamaged, "'" + path + "': " + failure.what()});
    }
  }

  // Frames on their way into the writer.
  template <class Put>
  std::int32_t Append(std::size_t frames, Put put) {
    return Guarded([&]() -> AudioFileError {
      if (!writer) return {afeNotOpen, "no file is open for writing"};
      if (!writeError) writeError = put(*writer);
      if (!writeError) written += static_cast<std::int64_t>(frames);
      return writeError;
    });
  }

  const AudioFileSettings& SettingsFor(std::int32_t mode) const {
    switch (mode) {
      case ecmMP3:
        return mp3;
      case ecmOgg:
        return ogg;
      case ecmWMA:
        return wma;
      case ecmMP2:
        return mp2;
      default:
        return wav;
    }
  }
};

cAudioFile::cAudioFile() : m_state(std::make_unique<State>()) {}
cAudioFile::~cAudioFile() {
  Close();
}

void cAudioFile::AllowCompressedOpen(bool allow) {
  m_state->compressed = allow ? CompressedAudio::allow : CompressedAudio::refuse;
}

std::int32_t cAudioFile::OpenForRead(const std::string& path, std::int32_t, std::int32_t) {
  Close();
  State& s = *m_state;
  s.path = path;
  s.format = {};
  return s.Guarded([&] {
    AudioFileError error;
    s.reader = OpenAudioFileReader(path, s.compressed, error);
    if (s.reader) s.format = s.reader->Format();
    return error;
  });
}

std::int32_t cAudioFile::CreateFile(const std::string& path, std::int32_t mode) {
  Close();
  State& s = *m_state;
  s.path = path;
  s.format = {};
  s.written = 0;
  s.writeError = {};
  return s.Guarded([&] {
    AudioFileError error;
    s.writer = CreateAudioFileWriter(path, mode, s.SettingsFor(mode), error);
    if (s.writer) s.format = s.writer->Format();
    return error;
  });
}

std::int32_t cAudioFile::Close() {
  State& s = *m_state;
  s.reader.reset();
  auto writer = std::move(s.writer);
  if (!writer) return afeNone;
  return s.Guarded([&] { return s.writeError ? s.writeError : writer->Finish(); });
}

void cAudioFile::Abandon() {
  m_state->reader.reset();
  m_state->writer.reset();
}

bool cAudioFile::IsOpen() const {
  return m_state->reader || m_state->writer;
}

void cAudioFile::ReadSamples(std::int32_t count, std::vector<std::int16_t>& samples) {
  State& s = *m_state;
  samples.clear();
  if (!s.reader) s.Fail({afeNotOpen, "no file is open for reading"});
  if (!s.reader || count <= 0) return;
  const auto channels = static_cast<std::size_t>(Channels());
  constexpr std::size_t kPartFrames = 8192;
  s.scratch.resize(kPartFrames * channels);
  auto left = static_cast<std::size_t>(count);
  while (left > 0) {
    std::size_t got = ReadFrames(s.scratch.data(), std::min(left, kPartFrames));
    if (got == 0) return;
    std::size_t filled = samples.size();
    samples.resize(filled + got * channels);
    FloatTo16Bit(s.scratch.data(), got * channels, samples.data() + filled);
    left -= got;
  }
}

std::size_t cAudioFile::ReadFrames(float* interleaved, std::size_t frames) {
  State& s = *m_state;
  std::size_t done = 0;
  s.Guarded([&]() -> AudioFileError {
    if (!s.reader) return {afeNotOpen, "no file is open for reading"};
    done = s.reader->Read(interleaved, frames);
    if (done > 0 || !s.reader->Error()) return {};
    return {s.reader->Error().number, "'" + s.path + "' " + s.reader->Error().text};
  });
  return done;
}

bool cAudioFile::Seek(std::int64_t frame) {
  State& s = *m_state;
  return s.Guarded([&]() -> AudioFileError {
    if (!s.reader) return {afeNotOpen, "no file is open for reading"};
    if (s.reader->Seek(Limit<std::int64_t>(frame, 0, s.reader->Length()))) return {};
    return {afeDamaged, "'" + s.path + "' cannot be positioned"};
  }) == afeNone;
}

std::int32_t cAudioFile::WriteSamples(const std::int16_t* interleaved, std::size_t frames) {
  State& s = *m_state;
  if (!s.writer) return s.Fail({afeNotOpen, "no file is open for writing"});
  const auto channels = static_cast<std::size_t>(Channels());
  constexpr std::size_t kPartFrames = 8192;
  while (frames > 0) {
    std::size_t part = std::min(frames, kPartFrames);
    s.scratch.resize(part * channels);
    Float16Bit(interleaved, part * channels, s.scratch.data());
    if (std::int32_t number = WriteFrames(s.scratch.data(), part)) return number;
    interleaved += part * channels;
    frames -= part;
  }
  return afeNone;
}

std::int32_t cAudioFile::WriteFrames(const float* interleaved, std::size_t frames) {
  return m_state->Append(frames, [&](AudioFileWriter& writer) { return writer.Write(interleaved, frames); });
}

std::int32_t cAudioFile::WriteStored(const std::uint8_t* stored, std::size_t frames) {
  return m_state->Append(frames, [&](AudioFileWriter& writer) { return writer.WriteStored(stored, frames); });
}

std::int32_t cAudioFile::SetTemplateWAV(const std::string& path) {
  State& s = *m_state;
  s.path = path;
  return s.Guarded([&]() -> AudioFileError {
    AudioFileBytes bytes;
    if (AudioFileError error = bytes.Open(path)) return error;
    WaveHeader header;
    AudioFileError error =
        IsWave(bytes) ? ReadWaveHeader(bytes, header) : AudioFileError{afeUnknownType, "is not a WAV file"};
    if (error) return {error.number, "'" + path + "' " + error.text};
    SampleCoding coding{};
    const bool stored = WaveCoding(header, coding);
    SetWAVSettings(header.sampleRate, header.channels,
                   stored ? static_cast<std::int32_t>(8 * BytesOf(coding)) : header.bits, header.formatTag);
    return {};
  });
}

void cAudioFile::SetWAVSettings(std::int32_t sampleRate, std::int32_t channels, std::int32_t bits,
                                std::int32_t formatTag) {
  AudioFileSettings& wav = m_state->wav;
  wav.sampleRate = sampleRate;
  wav.channels = channels;
  wav.bits = bits;
  wav.formatTag = formatTag;
}

void cAudioFile::SetMP3Settings(const tyMP3Settings& settings) {
  AudioFileSettings& mp3 = m_state->mp3;
  mp3.sampleRate = settings.SampleRate;
  mp3.bitRate = settings.BitRate;
  mp3.channels = settings.Channels;
  mp3.variableBitRate = settings.VariableBitRate;
}

void cAudioFile::SetOggSettings(std::int32_t rate, std::int32_t channels, std::int32_t bitRate,
                                std::int32_t minimumBitRate, std::int32_t maximumBitRate, bool managed) {
  AudioFileSettings& ogg = m_state->ogg;
  ogg.sampleRate = rate;
  ogg.channels = channels;
  ogg.bitRate = bitRate;
  ogg.minimumBitRate = managed ? minimumBitRate : 0;
  ogg.maximumBitRate = managed ? maximumBitRate : 0;
}

void cAudioFile::SetWMAProfile(const std::string& profile) {
  AudioFileSettings& wma = m_state->wma;
  wma = {};
  std::int32_t* fields[] = {&wma.sampleRate, &wma.channels, &wma.bitRate};
  std::size_t start = 0;
  for (std::int32_t* field : fields) {
    if (start > profile.size()) break;
    std::size_t comma = std::string::npos;
    std::string_view token = Trim(GetDelimitedText(profile, start, ",", comma));
    if (!token.empty()) *field = ParseWhole(token);
    if (comma == std::string::npos) break;
    start = comma + 1;
  }
}

void cAudioFile::SetMP2Settings(std::int32_t rate, std::int32_t bitRate, std::int32_t channels) {
  AudioFileSettings& mp2 = m_state->mp2;
  mp2.sampleRate = rate;
  mp2.bitRate = bitRate;
  mp2.channels = channels;
}

std::int64_t cAudioFile::NumberSamples() const {
  const State& s = *m_state;
  return s.reader ? s.reader->Length() : s.writer ? s.written : 0;
}

std::int32_t cAudioFile::SampleRate() const {
  return m_state->format.SampleRate();
}
std::int32_t cAudioFile::Channels() const {
  return m_state->format.Channels();
}

double cAudioFile::LengthMilliseconds() const {
  return SampleRate() > 0 ? static_cast<double>(NumberSamples()) * 1000 / SampleRate() : 0;
}

const cAudioFormat& cAudioFile::Format() const {
  return m_state->format;
}
std::int32_t cAudioFile::LastError() const {
  return m_state->error.number;
}
const std::string& cAudioFile::ErrorText() const {
  return m_state->error.text;
}

}  // namespace qm
