#pragma once
#include <cstdint>
#include <initializer_list>

#include "kits/sound/AudioFileLibrary.h"

namespace qm {

class AudioFileBytes;

// A container opened by the library from our bytes alone: it never sees a path, and cannot open anything
// else.
class AudioFileContainer {
 public:
  explicit AudioFileContainer(AudioFileBytes& bytes) : m_bytes(bytes) {}
  ~AudioFileContainer();
  AudioFileContainer(const AudioFileContainer&) = delete;
  AudioFileContainer& operator=(const AudioFileContainer&) = delete;

  // 0 or the library's error code.
  int Open(const char* formatName);
  // The first stream of these codecs, none for no such; packets of all others are left out from then on.
  AVStream* FindAudio(std::initializer_list<AVCodecID> codecs);
  AVFormatContext* Context() const { return m_context; }

 private:
  static int ReadPacket(void* self, std::uint8_t* out, int bytes);
  static std::int64_t SeekTo(void* self, std::int64_t offset, int whence);
  static int RefuseOpen(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**) {
    return AVERROR(EPERM);
  }

  AudioFileBytes& m_bytes;
  std::int64_t m_position = 0;
  AVIOContext* m_input = nullptr;
  AVFormatContext* m_context = nullptr;
};

}  // namespace qm
