#include <cstring>

#include "kits/sound/AudioFileAdpcm.h"
#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/AudioFileMpeg.h"
#include "kits/sound/AudioFileOgg.h"
#include "kits/sound/AudioFilePackets.h"
#include "kits/sound/AudioFileWave.h"
#include "kits/sound/AudioFileWma.h"
#include "kits/sound/cAudioFile.h"

namespace qm {

namespace {

using Bytes = std::unique_ptr<AudioFileBytes>;
using Reader = std::unique_ptr<AudioFileReader>;

constexpr std::uint8_t kAsfHeader[16] = {0x30, 0x26, 0xB2, 0x75, 0x8E, 0x66, 0xCF, 0x11,
                                         0xA6, 0xD9, 0x00, 0xAA, 0x00, 0x62, 0xCE, 0x6C};

bool BeginsWith(AudioFileBytes& bytes, const void* signature, std::size_t size) {
  const std::uint8_t* head = bytes.View(0, size);
  return head != nullptr && std::memcmp(head, signature, size) == 0;
}

Reader FromSource(std::unique_ptr<AudioPacketSource> source, AudioFileError& error) {
  return source ? MakePacketReader(std::move(source), error) : nullptr;
}

std::unique_ptr<AudioPacketSource> CompressedWaveSource(std::shared_ptr<AudioFileBytes> bytes,
                                                        const WaveHeader& header) {
  switch (header.formatTag) {
    case wftMPEG:
    case wftMPEGLayer3:
      return MakeMpegSource(std::move(bytes), header.dataStart, header.dataStart + header.dataBytes);
    case wftMicrosoftADPCM:
    case wftImaADPCM:
      return MakeAdpcmSource(std::move(bytes), header);
    default:
      return nullptr;
  }
}

Reader OpenCompressedWave(Bytes bytes, const WaveHeader& header, AudioFileError& error) {
  auto source = CompressedWaveSource(std::move(bytes), header);
  if (!source) {
    error = {afeUnsupported,
             "is a WAV file of an unknown coding (tag " + std::to_string(header.formatTag) + ")"};
    return nullptr;
  }
  cAudioFormat format = source->Info().format;
  format.SetFormatType(aftWAV);
  format.SetWAVFormatTag(header.formatTag);
  source->SetFormat(format);
  return MakePacketReader(std::move(source), error);
}

Reader OpenWave(Bytes bytes, CompressedAudio compressed, AudioFileError& error) {
  WaveHeader header;
  error = ReadWaveHeader(*bytes, header);
  if (error) return nullptr;
  if (!header.IsStored() && compressed == CompressedAudio::refuse) {
    error = {afeCompressed, "is a WAV file that holds compressed audio"};
    return nullptr;
  }
  SampleCoding coding{};
  if (header.IsStored() || WaveCoding(header, coding)) return MakeWaveReader(std::move(bytes), header, error);
  return OpenCompressedWave(std::move(bytes), header, error);
}

Reader OpenOgg(Bytes bytes, CompressedAudio, AudioFileError& error) {
  return FromSource(MakeOggSource(std::move(bytes), error), error);
}

Reader OpenWma(Bytes bytes, CompressedAudio compressed, AudioFileError& error) {
  if (compressed == CompressedAudio::allow) return FromSource(MakeWmaSource(std::move(bytes), error), error);
  error = {afeCompressed, "is a Windows Media file, and compressed files are not allowed here"};
  return nullptr;
}

Reader OpenMpeg(Bytes bytes, CompressedAudio, AudioFileError& error) {
  const std::int64_t size = bytes->Size();
  auto source = MakeMpegSource(std::move(bytes), 0, size);
  if (!source) error = {afeUnknownType, "is not an audio file of a known type"};
  return FromSource(std::move(source), error);
}

Reader OpenByContents(Bytes bytes, CompressedAudio compressed, AudioFileError& error) {
  auto open = OpenMpeg;
  if (IsWave(*bytes)) open = OpenWave;
  if (BeginsWith(*bytes, "OggS", 4)) open = OpenOgg;
  if (BeginsWith(*bytes, kAsfHeader, sizeof kAsfHeader)) open = OpenWma;
  return open(std::move(bytes), compressed, error);
}

}  // namespace

Reader OpenAudioFileReader(const std::string& path, CompressedAudio compressed, AudioFileError& error) {
  auto bytes = std::make_unique<AudioFileBytes>();
  error = bytes->Open(path);
  if (error) return nullptr;
  Reader reader = OpenByContents(std::move(bytes), compressed, error);
  if (error) error.text = "'" + path + "' " + error.text;
  return reader;
}

}  // namespace qm
