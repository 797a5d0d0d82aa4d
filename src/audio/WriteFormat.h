#pragma once
#include <cstdint>

namespace qm {

class cAudioFile;
class cAudioFormat;

// Tells a file object the format in which it is to create a file. Returns the enCreationMode for CreateFile,
// 0 for a format that cannot be written. A WAV format goes by way of a temporary empty file that has it.
std::int32_t UseFormat(cAudioFile& file, const cAudioFormat& format);

}  // namespace qm
