#include "kits/sound/AudioFileWriters.h"
#include "kits/sound/cAudioFile.h"

namespace qm {

std::unique_ptr<AudioFileWriter> CreateAudioFileWriter(const std::string& path, std::int32_t mode,
                                                       const AudioFileSettings& settings,
                                                       AudioFileError& error) {
  return mode == ecmWAV ? CreateWaveWriter(path, settings, error)
                        : CreateEncodingWriter(path, mode, settings, error);
}

}  // namespace qm
