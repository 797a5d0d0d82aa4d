#pragma once
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "kits/sound/cAudioFormat.h"

namespace qm {

class AudioFileBytes;

// What went wrong: a number of enAudioFileError and one line for people; number 0 when nothing did.
struct AudioFileError {
  std::int32_t number = 0;
  std::string text;

  explicit operator bool() const { return number != 0; }
};

// Decoded audio of one open file. Positions and counts are frames from the start of the audio that is
// delivered, encoder delay taken off. One thread at a time.
class AudioFileReader {
 public:
  virtual ~AudioFileReader() = default;

  // Up to `frames` frames, interleaved; fewer only at the end or when reading failed.
  virtual std::size_t Read(float* interleaved, std::size_t frames) = 0;
  // The frame is between 0 and Length().
  virtual bool Seek(std::int64_t frame) = 0;

  std::int64_t Length() const { return m_length; }
  const cAudioFormat& Format() const { return m_format; }
  // Set when audio inside the file could not be read; the text does not name the file.
  const AudioFileError& Error() const { return m_error; }

 protected:
  std::int64_t m_length = 0;
  cAudioFormat m_format;
  AudioFileError m_error;
};

enum class CompressedAudio { refuse, allow };

// A reader for what the bytes hold, or none and the error, whose text names the file.
std::unique_ptr<AudioFileReader> OpenAudioFileReader(const std::string& path, CompressedAudio compressed,
                                                     AudioFileError& error);

}  // namespace qm
