#pragma once
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "kits/sound/cAudioFormat.h"

namespace qm {

class AudioFileWriter;

// The compressing writer: WAV files whose audio is MPEG Layer 2 or 3, which cAudioFile does not create.
// Otherwise it is like a cAudioFile that writes: an encoder is loaded first, frames go into a file beside the
// path, and Close puts that in its place. One thread at a time.
class VellanCompress {
 public:
  VellanCompress();
  ~VellanCompress();  // abandons

  // Whether a format calls for this writer.
  static bool IsFor(const cAudioFormat& format);

  // Finds the encoder for the format; false when the system has none.
  bool Load(const cAudioFormat& format);
  // These answer 0 or an enAudioFileError.
  std::int32_t CreateFile(const std::string& path);
  std::int32_t WriteFrames(const float* interleaved, std::size_t frames);
  std::int32_t Close();
  void Abandon();

  const cAudioFormat& Format() const { return m_format; }
  const std::string& ErrorText() const { return m_errorText; }

 private:
  template <class Work>
  std::int32_t Guarded(Work work);

  cAudioFormat m_format;
  std::int32_t m_mode = 0;
  std::unique_ptr<AudioFileWriter> m_writer;
  std::int32_t m_writeError = 0;  // once set, the file does not take its place
  std::string m_errorText;
};

}  // namespace qm
