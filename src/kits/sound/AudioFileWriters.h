#pragma once
#include "kits/sound/AudioFileWriter.h"

namespace qm {

// The writers behind CreateAudioFileWriter.
std::unique_ptr<AudioFileWriter> CreateWaveWriter(const std::string& path, const AudioFileSettings& settings,
                                                  AudioFileError& error);
std::unique_ptr<AudioFileWriter> CreateEncodingWriter(const std::string& path, std::int32_t mode,
                                                      const AudioFileSettings& settings,
                                                      AudioFileError& error);

}  // namespace qm
