#include "kits/sound/AudioFileContainer.h"

#include <algorithm>
#include <cstdio>

#include "kits/sound/AudioFileBytes.h"

namespace qm {

namespace {

constexpr int kBufferBytes = 1 << 15;
// The library keeps an index of its own; this holds its size down however long the file is.
constexpr unsigned kMostIndexBytes = 1 << 16;

}  // namespace

AudioFileContainer::~AudioFileContainer() {
  if (m_context != nullptr) avformat_close_input(&m_context);
  if (m_input != nullptr) av_freep(&m_input->buffer);
  avio_context_free(&m_input);
}

int AudioFileContainer::ReadPacket(void* self, std::uint8_t* out, int bytes) {
  auto& container = *static_cast<AudioFileContainer*>(self);
  std::size_t got = container.m_bytes.ReadAt(container.m_position, out, static_cast<std::size_t>(bytes));
  container.m_position += static_cast<std::int64_t>(got);
  return got == 0 ? AVERROR_EOF : static_cast<int>(got);
}

std::int64_t AudioFileContainer::SeekTo(void* self, std::int64_t offset, int whence) {
  auto& container = *static_cast<AudioFileContainer*>(self);
  whence &= ~AVSEEK_FORCE;
  if (whence == AVSEEK_SIZE) return container.m_bytes.Size();
  if (whence == SEEK_CUR) offset += container.m_position;
  if (whence == SEEK_END) offset += container.m_bytes.Size();
  if (offset < 0) return AVERROR(EINVAL);
  return container.m_position = offset;
}

int AudioFileContainer::Open(const char* formatName) {
  const AVInputFormat* format = av_find_input_format(formatName);
  if (format == nullptr) return AVERROR_DEMUXER_NOT_FOUND;
  auto* buffer = static_cast<std::uint8_t*>(av_malloc(kBufferBytes));
  m_input = avio_alloc_context(buffer, kBufferBytes, 0, this, ReadPacket, nullptr, SeekTo);
  m_context = avformat_alloc_context();
  if (m_input == nullptr || m_context == nullptr) return AVERROR(ENOMEM);
  m_context->pb = m_input;
  m_context->io_open = RefuseOpen;
  m_context->max_index_size = kMostIndexBytes;
  return avformat_open_input(&m_context, "", format, nullptr);
}

// The first stream of these codecs; the others are not even read.
AVStream* AudioFileContainer::FindAudio(std::initializer_list<AVCodecID> codecs) {
  AVStream* found = nullptr;
  for (unsigned i = 0; i < m_context->nb_streams; ++i) {
    AVStream* stream = m_context->streams[i];
    bool fits = std::find(codecs.begin(), codecs.end(), stream->codecpar->codec_id) != codecs.end();
    if (fits && found == nullptr) found = stream;
    stream->discard = stream == found ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
  }
  return found;
}

}  // namespace qm
