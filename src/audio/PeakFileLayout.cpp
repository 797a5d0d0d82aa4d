#include "audio/PeakFileLayout.h"

#include <algorithm>

#include "kits/common/LittleEndian.h"
#include "kits/sound/AudioFileBytes.h"

namespace qm {
namespace {

// One list of fields for both directions.
template <class Header, class Field>
void ForEachField(Header& header, Field field) {
  field(0, header.HeaderVersion);
  field(4, header.AudioLastModified);
  field(12, header.AudioFileSize);
  field(16, header.AudioNumberSamples);
  field(24, header.AudioSampleRate);
  field(28, header.AudioChannels);
  field(30, header.NumberPeakSamples);
  field(38, header.SamplingInterval);
  field(42, header.MaxLeftLevel);
  field(44, header.MaxRightLevel);
  field(248, header.PeakFileDate);
}

std::string ReadPart(const AudioFileBytes& file, std::int64_t position, std::int64_t bytes) {
  std::string part(static_cast<std::size_t>(std::max<std::int64_t>(bytes, 0)), '\0');
  part.resize(file.ReadAt(position, part.data(), part.size()));
  return part;
}

std::string ReadHeaderBytes(const AudioFileBytes& file) {
  return ReadPart(file, 0, static_cast<std::int64_t>(kPeakHeaderBytes));
}

}  // namespace

void StorePeakHeader(const PeakFileHeader& header, char* bytes) {
  ForEachField(header, [&](std::size_t offset, auto value) { StoreLittleEndian(bytes + offset, value); });
}

PeakFileHeader LoadPeakHeader(std::string_view bytes) {
  PeakFileHeader header;
  ForEachField(header, [&]<class Value>(std::size_t offset, Value& value) {
    value = ReadLittleEndian<Value>(bytes, offset);
  });
  return header;
}

bool ReadPeakContents(const std::string& path, PeakFileContents& contents) {
  AudioFileBytes file;
  if (file.Open(path)) return false;
  contents.header = LoadPeakHeader(ReadHeaderBytes(file));
  constexpr auto start = static_cast<std::int64_t>(kPeakHeaderBytes);
  const std::string bytes = ReadPart(file, start, std::min(file.Size(), kMostPeakFileBytes) - start);
  contents.points.resize(bytes.size() / 2);
  for (std::size_t i = 0; i < contents.points.size(); ++i)
    contents.points[i] = LoadLittleEndian<std::int16_t>(bytes.data() + 2 * i);
  return true;
}

bool ReadPeakHeader(const std::string& path, PeakFileHeader& header) {
  AudioFileBytes file;
  if (file.Open(path)) return false;
  const std::string bytes = ReadHeaderBytes(file);
  header = LoadPeakHeader(bytes);
  return bytes.size() == kPeakHeaderBytes;
}

}  // namespace qm
