#pragma once
#include "kits/sound/AudioFileWriter.h"

namespace qm {

// Modes of CreateEncodingWriter beyond those of enCreationMode: WAV files that hold MPEG audio.
enum enCompressedWaveMode : std::int32_t { ecwLayer2 = 102, ecwLayer3 = 103 };

// The writers behind CreateAudioFileWriter.
std::unique_ptr<AudioFileWriter> CreateWaveWriter(const std::string& path, const AudioFileSettings& settings,
                                                  AudioFileError& error);
std::unique_ptr<AudioFileWriter> CreateEncodingWriter(const std::string& path, std::int32_t mode,
                                                      const AudioFileSettings& settings,
                                                      AudioFileError& error);

}  // namespace qm
