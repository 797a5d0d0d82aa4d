#include <vector>

#include "kits/common/LittleEndian.h"
#include "kits/sound/AudioFileTarget.h"
#include "kits/sound/AudioFileWave.h"
#include "kits/sound/AudioFileWriters.h"
#include "kits/sound/cAudioFile.h"

namespace qm {

namespace {

constexpr std::uint32_t kTooLong = 0xFFFFFFFF;
constexpr std::size_t kLongSizesBytes = 28;  // of a ds64 chunk without a table (EBU Tech 3306)

template <class T>
void Append(std::string& text, std::int64_t value) {
  AppendLittleEndian<T>(text, static_cast<T>(value));
}

// The format chunk's body: 16 bytes for PCM of one or two channels, extensible for more channels.
std::string FormatChunk(const WaveHeader& header) {
  const bool extensible = header.channels > 2;
  std::string body;
  Append<std::uint16_t>(body, extensible ? static_cast<std::int32_t>(wftExtensible) : header.formatTag);
  Append<std::uint16_t>(body, header.channels);
  Append<std::uint32_t>(body, header.sampleRate);
  Append<std::uint32_t>(body, header.bytesPerSecond);
  Append<std::uint16_t>(body, header.blockAlign);
  Append<std::uint16_t>(body, header.bits);
  if (extensible) {
    Append<std::uint16_t>(body, 22);
    Append<std::uint16_t>(body, header.bits);
    Append<std::uint32_t>(body, 0);  // no loudspeaker is named
    Append<std::uint16_t>(body, header.formatTag);
    body.append("\0\0\0\0\x10\0\x80\0\0\xAA\0\x38\x9B\x71", 14);
  } else if (header.formatTag != wftPCM) {
    Append<std::uint16_t>(body, 0);
  }
  return body;
}

class WaveWriter : public AudioFileWriter {
 public:
  AudioFileError Create(const std::string& path, const WaveHeader& header, SampleCoding coding,
                        const AudioFileSettings& settings);
  AudioFileError Write(const float* interleaved, std::size_t frames) override;
  AudioFileError WriteStored(const std::uint8_t* stored, std::size_t frames) override;
  AudioFileError Checkpoint(AudioFileSync sync) override;
  AudioFileError Finish() override;

 private:
  std::string Header() const;

  AudioFileTarget m_target;
  WaveHeader m_header;
  SampleCoding m_coding{};
  std::int64_t m_longFormBeyond = 0;
  std::int64_t m_dataStart = 0, m_dataBytes = 0;
  std::vector<std::uint8_t> m_stored;
};

AudioFileError WaveWriter::Create(const std::string& path, const WaveHeader& header, SampleCoding coding,
                                  const AudioFileSettings& settings) {
  m_header = header;
  m_longFormBeyond = settings.longFormBeyond;
  m_coding = coding;
  m_format.SetFormatType(aftWAV);
  m_format.SetSampleRate(header.sampleRate);
  m_format.SetChannels(header.channels);
  m_format.SetBitsPerSample(header.bits);
  m_format.SetWAVFormatTag(header.formatTag);
  if (AudioFileError error = m_target.Create(path, settings.place)) return error;
  const std::string head = Header();
  m_dataStart = static_cast<std::int64_t>(head.size());
  m_target.WriteAt(0, head.data(), head.size());
  return m_target.Error();
}

// The sizes as they stand. Beyond 4 GiB the room kept for it turns into the chunk of long sizes.
std::string WaveWriter::Header() const {
  const std::string format = FormatChunk(m_header);
  const bool fact = m_header.formatTag != wftPCM;
  const auto body =
      static_cast<std::int64_t>(4 + 8 + kLongSizesBytes + 8 + format.size() + (fact ? 12 : 0) + 8) +
      m_dataBytes + (m_dataBytes & 1);
  const bool isLong = body > m_longFormBeyond;
  const std::int64_t frames = m_dataBytes / m_header.blockAlign;
  std::string head = isLong ? "RF64" : "RIFF";
  Append<std::uint32_t>(head, isLong ? kTooLong : body);
  head += isLong ? "WAVEds64" : "WAVEJUNK";
  Append<std::uint32_t>(head, kLongSizesBytes);
  for (std::int64_t size : {body, m_dataBytes, frames}) Append<std::uint64_t>(head, isLong ? size : 0);
  Append<std::uint32_t>(head, 0);
  head += "fmt ";
  Append<std::uint32_t>(head, static_cast<std::int64_t>(format.size()));
  head += format;
  if (fact) {
    head += "fact";
    Append<std::uint32_t>(head, 4);
    Append<std::uint32_t>(head, isLong ? kTooLong : frames);
  }
  head += "data";
  Append<std::uint32_t>(head, isLong ? kTooLong : m_dataBytes);
  return head;
}

AudioFileError WaveWriter::Write(const float* interleaved, std::size_t frames) {
  constexpr std::size_t kPartSamples = 1 << 14;
  const std::size_t sampleBytes = BytesOf(m_coding);
  m_stored.resize(kPartSamples * sampleBytes);
  for (std::size_t left = frames * static_cast<std::size_t>(m_header.channels); left > 0;) {
    const std::size_t part = left < kPartSamples ? left : kPartSamples;
    EncodeSamples(m_coding, interleaved, part, m_stored.data());
    if (!m_target.WriteAt(m_dataStart + m_dataBytes, m_stored.data(), part * sampleBytes))
      return m_target.Error();
    m_dataBytes += static_cast<std::int64_t>(part * sampleBytes);
    interleaved += part;
    left -= part;
  }
  return {};
}

AudioFileError WaveWriter::WriteStored(const std::uint8_t* stored, std::size_t frames) {
  const std::size_t bytes = frames * static_cast<std::size_t>(m_header.blockAlign);
  if (!m_target.WriteAt(m_dataStart + m_dataBytes, stored, bytes)) return m_target.Error();
  m_dataBytes += static_cast<std::int64_t>(bytes);
  return {};
}

AudioFileError WaveWriter::Checkpoint(AudioFileSync sync) {
  const std::string head = Header();
  m_target.Rewrite(0, head.data(), head.size());
  if (sync == AudioFileSync::disk) m_target.Flush();
  return m_target.Error();
}

AudioFileError WaveWriter::Finish() {
  const std::string head = Header();
  m_target.WriteAt(0, head.data(), head.size());
  if (m_dataBytes & 1) m_target.WriteAt(m_dataStart + m_dataBytes, "", 1);
  return m_target.Commit();
}

}  // namespace

std::unique_ptr<AudioFileWriter> CreateWaveWriter(const std::string& path, const AudioFileSettings& settings,
                                                  AudioFileError& error) {
  WaveHeader header;
  header.formatTag = settings.formatTag;
  header.channels = settings.channels;
  header.sampleRate = settings.sampleRate;
  header.bits = settings.bits;
  SampleCoding coding{};
  const bool stored = header.IsStored() && settings.channels >= 1 && settings.channels <= 8 &&
                      settings.sampleRate >= 1 && settings.sampleRate <= 768000 && WaveCoding(header, coding);
  if (!stored || static_cast<std::int32_t>(BytesOf(coding)) * 8 != settings.bits) {
    error = {afeBadSettings, "cannot create '" + path + "': there is no WAV format with tag " +
                                 std::to_string(settings.formatTag) + ", " +
                                 std::to_string(settings.sampleRate) + " Hz, " +
                                 std::to_string(settings.channels) + " channels and " +
                                 std::to_string(settings.bits) + " bits"};
    return nullptr;
  }
  header.blockAlign = settings.bits / 8 * settings.channels;
  header.bytesPerSecond = header.blockAlign * settings.sampleRate;
  auto writer = std::make_unique<WaveWriter>();
  error = writer->Create(path, header, coding, settings);
  if (error) return nullptr;
  return writer;
}

}  // namespace qm
