#include "kits/sound/AudioFileWriters.h"
#include "kits/sound/cAudioFile.h"

namespace qm {

AudioFileError AudioFileWriter::WriteStored(const std::uint8_t*, std::size_t) {
  return {afeBadSettings, "the file does not store its samples as they are"};
}

std::unique_ptr<AudioFileWriter> CreateAudioFileWriter(const std::string& path, std::int32_t mode,
                                                       const AudioFileSettings& settings,
                                                       AudioFileError& error) {
  return mode == ecmWAV ? CreateWaveWriter(path, settings, error)
                        : CreateEncodingWriter(path, mode, settings, error);
}

}  // namespace qm
