#include "audio/StoredFrames.h"

#include <algorithm>

#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/AudioFileWave.h"

namespace qm {

StoredFrames::StoredFrames() : m_file(std::make_unique<AudioFileBytes>()) {}
StoredFrames::~StoredFrames() = default;

std::unique_ptr<StoredFrames> StoredFrames::Open(const std::string& path) {
  std::unique_ptr<StoredFrames> frames(new StoredFrames);
  WaveHeader header;
  if (frames->m_file->Open(path) || !IsWave(*frames->m_file) || ReadWaveHeader(*frames->m_file, header) ||
      !WaveCoding(header, frames->m_coding))
    return nullptr;
  frames->m_channels = static_cast<std::size_t>(header.channels);
  frames->m_dataStart = header.dataStart;
  frames->m_length = header.dataBytes / static_cast<std::int64_t>(frames->FrameBytes());
  return frames;
}

std::size_t StoredFrames::ReadAt(std::int64_t start, std::uint8_t* stored, std::size_t frames) const {
  const auto left = static_cast<std::size_t>(std::max<std::int64_t>(m_length - start, 0));
  const std::int64_t position = m_dataStart + start * static_cast<std::int64_t>(FrameBytes());
  return m_file->ReadAt(position, stored, std::min(frames, left) * FrameBytes()) / FrameBytes();
}

}  // namespace qm
