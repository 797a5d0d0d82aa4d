#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "kits/sound/AudioFileReader.h"
#include "kits/sound/AudioFileSamples.h"

namespace qm {

// What a WAV file's header says, with the lies taken out.
struct WaveHeader {
  std::int32_t formatTag = 0;  // of the sub-format when the header is an extensible one
  std::int32_t channels = 0;
  std::int32_t sampleRate = 0;
  std::int32_t bytesPerSecond = 0;
  std::int32_t blockAlign = 0;  // bytes
  std::int32_t bits = 0;        // valid bits of a sample
  std::vector<std::uint8_t>
      extra;  // what follows the 18 bytes of the format, an extensible header's 22 left out
  std::int64_t dataStart = 0;
  std::int64_t dataBytes = 0;  // those that the file really holds
  std::int64_t factFrames = -1;

  bool IsStored() const { return formatTag == wftPCM || formatTag == wftFloat; }
};

// True when the bytes begin a RIFF, RF64 or BW64 form of type WAVE.
bool IsWave(AudioFileBytes& bytes);

// Reads the chunks up to the data. The error's text does not name the file.
AudioFileError ReadWaveHeader(AudioFileBytes& bytes, WaveHeader& header);

// The coding of a sample in a file with this header; false when it is none that is stored sample by sample.
bool WaveCoding(const WaveHeader& header, SampleCoding& coding);

// Takes over the bytes. Null, and the error, when the header or its coding does not suit.
std::unique_ptr<AudioFileReader> MakeWaveReader(std::unique_ptr<AudioFileBytes> bytes,
                                                const WaveHeader& header, AudioFileError& error);

}  // namespace qm
