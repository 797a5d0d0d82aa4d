#include "audio/WaveFormat.h"

#include <algorithm>
#include <cstring>
#include <exception>

#include "kits/common/LittleEndian.h"
#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/AudioFileWave.h"

namespace qm {
namespace {

constexpr std::int64_t kFirstChunk = 12;  // behind "RIFF", its size and "WAVE"
constexpr std::int64_t kChunkHead = 8;
constexpr int kMostChunks = 4096;  // of a hostile file full of empty ones

// One list of fields for both directions.
template <class Format, class Field>
void ForEachField(Format& format, Field field) {
  field(0, format.FormatTag);
  field(2, format.Channels);
  field(4, format.SamplesPerSecond);
  field(8, format.AverageBytesPerSecond);
  field(12, format.BlockAlign);
  field(14, format.BitsPerSample);
  field(16, format.ExtraSize);
}

struct Chunk {
  std::int64_t body = 0;   // position; 0 when it was not found
  std::int64_t bytes = 0;  // those that the file holds
};

Chunk FindChunk(AudioFileBytes& file, const char* id) {
  std::int64_t position = kFirstChunk;
  for (int i = 0; i < kMostChunks; ++i) {
    const std::uint8_t* head = file.View(position, static_cast<std::size_t>(kChunkHead));
    if (head == nullptr) return {};
    const std::int64_t stated = LoadLittleEndian<std::uint32_t>(head + 4);
    const std::int64_t body = position + kChunkHead;
    if (std::memcmp(head, id, 4) == 0) return {body, std::min(stated, file.Size() - body)};
    position = body + stated + stated % 2;
  }
  return {};
}

std::int32_t Read(const std::string& path, tyWaveFormat& format, std::int64_t& dataLength) {
  AudioFileBytes file;
  if (file.Open(path)) return ewrNoFile;
  if (!IsWave(file)) return ewrChunkNotFound;
  const Chunk formatChunk = FindChunk(file, "fmt ");
  if (formatChunk.body == 0) return ewrChunkNotFound;
  char bytes[kWaveFormatBytes];
  const auto wanted = std::min<std::int64_t>(formatChunk.bytes, kWaveFormatBytes);
  const std::size_t got = file.ReadAt(formatChunk.body, bytes, static_cast<std::size_t>(wanted));
  format = WaveFormatFrom({bytes, got});
  dataLength = FindChunk(file, "data").bytes;
  return ewrOK;
}

}  // namespace

std::string WaveFormatBytes(const tyWaveFormat& format) {
  std::string bytes(kWaveFormatBytes, '\0');
  ForEachField(format,
               [&](std::size_t offset, auto value) { StoreLittleEndian(bytes.data() + offset, value); });
  return bytes;
}

tyWaveFormat WaveFormatFrom(std::string_view bytes) {
  tyWaveFormat format;
  ForEachField(format, [&]<class Value>(std::size_t offset, Value& value) {
    value = ReadLittleEndian<Value>(bytes, offset);
  });
  return format;
}

std::int32_t ReadWaveFormat(const std::string& path, tyWaveFormat& format, std::int64_t& dataLength) try {
  format = {};
  dataLength = 0;
  return Read(path, format, dataLength);
} catch (const std::exception&) {
  return ewrNoFile;
}

float GetWaveFileLengthSeconds(const std::string& path) {
  tyWaveFormat format;
  std::int64_t dataLength = 0;
  if (ReadWaveFormat(path, format, dataLength) != ewrOK || format.AverageBytesPerSecond == 0) return 0;
  return static_cast<float>(static_cast<double>(dataLength) / format.AverageBytesPerSecond);
}

}  // namespace qm
