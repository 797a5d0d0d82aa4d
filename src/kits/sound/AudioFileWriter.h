#pragma once
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "kits/sound/AudioFileReader.h"

namespace qm {

// Where a file grows: beside its path, whose place it takes when it is finished, or at its path from the
// start, so that what is there is a file at any time.
enum class AudioFilePlace { beside, atOnce };

// Whether what is written must be on the disk itself.
enum class AudioFileSync { system, disk };

// Everything an encoder may be told.
struct AudioFileSettings {
  std::int32_t sampleRate = 44100;
  std::int32_t channels = 2;
  std::int32_t bits = 16;      // WAV
  std::int32_t formatTag = 1;  // WAV
  std::int32_t bitRate = 128000;
  std::int32_t minimumBitRate = 0, maximumBitRate = 0;  // Ogg
  bool variableBitRate = false;                         // MP3
  std::int64_t longFormBeyond = 0xFFFFFFFF;             // WAV: bytes of a form that only RF64 can hold
  AudioFilePlace place = AudioFilePlace::beside;
};

// An audio file being written. Destroyed without Finish it leaves nothing behind, unless it grew at its path.
class AudioFileWriter {
 public:
  virtual ~AudioFileWriter() = default;
  virtual AudioFileError Write(const float* interleaved, std::size_t frames) = 0;
  // Frames as a WAV file of the writer's format stores them; writers that encode refuse.
  virtual AudioFileError WriteStored(const std::uint8_t* stored, std::size_t frames);
  // Makes what was written so far readable, up to what an encoder holds back (a tenth of a second at most).
  // Also after a failed Write, for what that left.
  virtual AudioFileError Checkpoint(AudioFileSync sync) = 0;
  // Completes the file and puts it in its place.
  virtual AudioFileError Finish() = 0;

  const cAudioFormat& Format() const { return m_format; }

 protected:
  cAudioFormat m_format;
};

// A writer for a mode of enCreationMode. Null, and the error, when the settings do not fit or the system
// refuses.
std::unique_ptr<AudioFileWriter> CreateAudioFileWriter(const std::string& path, std::int32_t mode,
                                                       const AudioFileSettings& settings,
                                                       AudioFileError& error);

}  // namespace qm
