#include "kits/sound/AudioFileWriters.h"
#include "kits/sound/cAudioFile.h"

namespace qm {

std::unique_ptr<AudioFileWriter> CreateAudioFileWriter(const std::string& path, std::int32_t mode,
                                                       const AudioFileSettings& settings,
                                                       AudioFileError& error) {
  if (mode == ecmWAV) return CreateWaveWriter(path, settings, error);
  error = {afeBadSettings, "cannot create '" + path + "': there is no creation mode " + std::to_string(mode)};
  return nullptr;
}

}  // namespace qm
