#pragma once
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "kits/sound/AudioFileReader.h"

namespace qm {

class AudioFileWriter;

// The file of a recording: at its path from the start, and readable up to the last second at any time. One
// thread at a time.
class RecordingFile {
 public:
  RecordingFile();
  ~RecordingFile();  // leaves what was recorded

  // Replaces what is at the path.
  AudioFileError Create(const std::string& path, const cAudioFormat& format);
  // After the first failure nothing more is written, and that failure is what every call answers.
  AudioFileError Write(const float* interleaved, std::size_t frames);
  AudioFileError Checkpoint();
  AudioFileError Finish();
  // Nothing stays of it.
  void Delete();

  std::int64_t Frames() const { return m_frames; }
  const cAudioFormat& Format() const { return m_format; }
  // What the disk still has room for.
  double SecondsOfRoom() const;

 private:
  AudioFileError Fail(AudioFileError error);

  using Clock = std::chrono::steady_clock;

  std::string m_path;
  cAudioFormat m_format;
  std::unique_ptr<AudioFileWriter> m_writer;
  AudioFileError m_error;
  std::int64_t m_frames = 0;
  std::int64_t m_checkpointFrames = 0;
  Clock::time_point m_synced{};
};

// Whether a recording may replace what is at the path, with the reason when not: a folder, no folder to lie
// in, no permission, or a file that somebody has open.
bool RecordingPathUsable(const std::string& path, std::string& errorText);

}  // namespace qm
