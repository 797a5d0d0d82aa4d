#include "kits/sound/AudioFileWave.h"

#include <algorithm>
#include <cctype>
#include <cstring>

#include "kits/common/LittleEndian.h"
#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/cAudioFile.h"

namespace qm {

namespace {

constexpr int kMostChunks = 4096;
constexpr std::uint32_t kSizeInLongChunk = 0xFFFFFFFF;
constexpr std::int32_t kMostChannels = 8;
constexpr std::int32_t kMostSampleRate = 768000;

bool Is(const std::uint8_t* id, const char* name) {
  return std::memcmp(id, name, 4) == 0;
}

bool LooksLikeId(const std::uint8_t* id) {
  return std::all_of(id, id + 4, [](std::uint8_t c) { return std::isprint(c) != 0; });
}

// Whether chunks stand end to end from here to the end of the file.
bool ChunksToTheEnd(AudioFileBytes& bytes, std::int64_t position) {
  for (int i = 0; i < kMostChunks && position < bytes.Size(); ++i) {
    const std::uint8_t* head = bytes.View(position, 8);
    if (head == nullptr || !LooksLikeId(head)) return false;
    position += 8 + static_cast<std::int64_t>(LoadLittleEndian<std::uint32_t>(head + 4)) + (head[4] & 1);
  }
  return position == bytes.Size() || position == bytes.Size() + 1;
}

// Behind a chunk of an odd size stands a byte that fills up, but not every writer knows.
std::int64_t NextChunk(AudioFileBytes& bytes, std::int64_t end, std::uint32_t size) {
  if ((size & 1) == 0) return end;
  const std::uint8_t* head = bytes.View(end, 5);
  return head != nullptr && LooksLikeId(head) && !LooksLikeId(head + 1) ? end : end + 1;
}

// A writer into a pipe cannot go back and fill in the size: it leaves 0, the largest number or some guess.
std::int64_t DataBytes(AudioFileBytes& bytes, std::int64_t start, std::uint32_t stated,
                       std::int64_t longSize) {
  const std::int64_t left = bytes.Size() - start;
  std::int64_t size = stated;
  if (stated == kSizeInLongChunk && longSize > 0) size = longSize;
  if (stated == 0 && longSize > 0) size = longSize;
  if (size == 0 && !ChunksToTheEnd(bytes, start)) return left;
  return size > left ? left : size;
}

void ReadFormat(AudioFileBytes& bytes, std::int64_t start, std::uint32_t size, WaveHeader& header) {
  std::vector<std::uint8_t> format(std::min<std::uint32_t>(size, 1024));
  format.resize(bytes.ReadAt(start, format.data(), format.size()));
  if (format.size() < 14) return;
  const std::uint8_t* p = format.data();
  header.formatTag = static_cast<std::int32_t>(LoadLittleEndian<std::uint16_t>(p));
  header.channels = static_cast<std::int32_t>(LoadLittleEndian<std::uint16_t>(p + 2));
  header.sampleRate = static_cast<std::int32_t>(LoadLittleEndian<std::uint32_t>(p + 4));
  header.bytesPerSecond = static_cast<std::int32_t>(LoadLittleEndian<std::uint32_t>(p + 8));
  header.blockAlign = static_cast<std::int32_t>(LoadLittleEndian<std::uint16_t>(p + 12));
  header.bits = format.size() < 16 ? 8 : static_cast<std::int32_t>(LoadLittleEndian<std::uint16_t>(p + 14));
  std::size_t extra = 18;
  if (header.formatTag == wftExtensible && format.size() >= 40) {
    std::int32_t valid = static_cast<std::int32_t>(LoadLittleEndian<std::uint16_t>(p + 18));
    if (valid > 0 && valid < header.bits) header.bits = valid;
    header.formatTag = static_cast<std::int32_t>(LoadLittleEndian<std::uint16_t>(p + 24));
    extra = 40;
  }
  if (format.size() > extra)
    header.extra.assign(format.begin() + static_cast<std::ptrdiff_t>(extra), format.end());
}

AudioFileError CheckFormat(const WaveHeader& header, bool formatSeen) {
  if (!formatSeen) return {afeUnsupported, "is a WAV file without a format"};
  if (header.channels < 1 || header.channels > kMostChannels)
    return {afeUnsupported, "is a WAV file with " + std::to_string(header.channels) + " channels"};
  if (header.sampleRate < 1 || header.sampleRate > kMostSampleRate)
    return {afeUnsupported, "is a WAV file with " + std::to_string(header.sampleRate) + " samples a second"};
  return {};
}

// Bytes of one sample in its container. Headers with a wrong block are believed about the bits.
std::int32_t ContainerBytes(const WaveHeader& header) {
  if (header.blockAlign > 0 && header.blockAlign % header.channels == 0) {
    std::int32_t bytes = header.blockAlign / header.channels;
    if (bytes * 8 >= header.bits && bytes <= 8) return bytes;
  }
  return (header.bits + 7) / 8;
}

class WaveReader : public AudioFileReader {
 public:
  WaveReader(std::unique_ptr<AudioFileBytes> bytes, const WaveHeader& header, SampleCoding coding)
      : m_bytes(std::move(bytes)),
        m_coding(coding),
        m_start(header.dataStart),
        m_frameBytes(BytesOf(coding) * static_cast<std::size_t>(header.channels)) {
    m_format.SetFormatType(aftWAV);
    m_format.SetSampleRate(header.sampleRate);
    m_format.SetChannels(header.channels);
    m_format.SetBitsPerSample(header.bits);
    m_format.SetWAVFormatTag(header.formatTag);
    m_length = header.dataBytes / static_cast<std::int64_t>(m_frameBytes);
    m_stored.resize(kStoredBytes / m_frameBytes * m_frameBytes);
  }

  std::size_t Read(float* interleaved, std::size_t frames) override {
    const auto channels = static_cast<std::size_t>(m_format.Channels());
    std::size_t done = 0;
    while (done < frames && m_position < m_length) {
      std::size_t part = std::min(frames - done, m_stored.size() / m_frameBytes);
      part = static_cast<std::size_t>(
          std::min<std::int64_t>(static_cast<std::int64_t>(part), m_length - m_position));
      std::size_t got = m_bytes->ReadAt(m_start + m_position * static_cast<std::int64_t>(m_frameBytes),
                                        m_stored.data(), part * m_frameBytes) /
                        m_frameBytes;
      DecodeSamples(m_coding, m_stored.data(), got * channels, interleaved + done * channels);
      done += got;
      m_position += static_cast<std::int64_t>(got);
      if (got < part) {
        m_error = {afeDamaged, "cannot be read further"};
        break;
      }
    }
    return done;
  }

  bool Seek(std::int64_t frame) override {
    m_position = frame;
    m_error = {};
    return true;
  }

 private:
  static constexpr std::size_t kStoredBytes = 1 << 16;
  std::unique_ptr<AudioFileBytes> m_bytes;
  SampleCoding m_coding;
  std::int64_t m_start;
  std::size_t m_frameBytes;
  std::int64_t m_position = 0;
  std::vector<std::uint8_t> m_stored;
};

}  // namespace

bool IsWave(AudioFileBytes& bytes) {
  const std::uint8_t* head = bytes.View(0, 12);
  return head != nullptr && (Is(head, "RIFF") || Is(head, "RF64") || Is(head, "BW64")) &&
         Is(head + 8, "WAVE");
}

AudioFileError ReadWaveHeader(AudioFileBytes& bytes, WaveHeader& header) {
  std::int64_t position = 12, longSize = 0;
  bool formatSeen = false;
  for (int i = 0; i < kMostChunks; ++i) {
    const std::uint8_t* head = bytes.View(position, 8);
    if (head == nullptr) break;
    const std::uint32_t size = LoadLittleEndian<std::uint32_t>(head + 4);
    const std::int64_t body = position + 8;
    if (Is(head, "fmt ") && !formatSeen) {
      ReadFormat(bytes, body, size, header);
      formatSeen = true;
    } else if (Is(head, "ds64") && size >= 16) {
      const std::uint8_t* sizes = bytes.View(body, 16);
      if (sizes != nullptr) longSize = static_cast<std::int64_t>(LoadLittleEndian<std::uint64_t>(sizes + 8));
    } else if (Is(head, "fact") && size >= 4) {
      const std::uint8_t* frames = bytes.View(body, 4);
      if (frames != nullptr) header.factFrames = LoadLittleEndian<std::uint32_t>(frames);
    } else if (Is(head, "data")) {
      header.dataStart = body;
      header.dataBytes = DataBytes(bytes, body, size, longSize);
      if (formatSeen) return CheckFormat(header, formatSeen);
    }
    position = NextChunk(bytes, body + static_cast<std::int64_t>(size), size);
  }
  if (AudioFileError error = CheckFormat(header, formatSeen)) return error;
  if (header.dataStart == 0) return {afeUnsupported, "is a WAV file without audio data"};
  return {};
}

bool WaveCoding(const WaveHeader& header, SampleCoding& coding) {
  struct Row {
    std::int32_t tag, bytes;
    SampleCoding coding;
  };
  static constexpr std::int32_t kTagALaw = 6, kTagMuLaw = 7;
  static constexpr Row rows[] = {
      {wftPCM, 1, SampleCoding::unsigned8}, {wftPCM, 2, SampleCoding::signed16},
      {wftPCM, 3, SampleCoding::signed24},  {wftPCM, 4, SampleCoding::signed32},
      {wftFloat, 4, SampleCoding::float32}, {wftFloat, 8, SampleCoding::float64},
      {kTagALaw, 1, SampleCoding::aLaw},    {kTagMuLaw, 1, SampleCoding::muLaw},
  };
  const std::int32_t bytes = ContainerBytes(header);
  for (const Row& row : rows)
    if (row.tag == header.formatTag && row.bytes == bytes) return coding = row.coding, true;
  return false;
}

std::unique_ptr<AudioFileReader> MakeWaveReader(std::unique_ptr<AudioFileBytes> bytes,
                                                const WaveHeader& header, AudioFileError& error) {
  SampleCoding coding{};
  if (!WaveCoding(header, coding)) {
    error = {afeUnsupported, "is a WAV file of an unknown coding (tag " + std::to_string(header.formatTag) +
                                 ", " + std::to_string(header.bits) + " bits)"};
    return nullptr;
  }
  return std::make_unique<WaveReader>(std::move(bytes), header, coding);
}

}  // namespace qm
