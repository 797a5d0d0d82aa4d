#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "audio/AudioFileTypes.h"
#include "audio/WaveFormat.h"

// Operations on audio files that the library's other rooms share. Stateless; host thread. A failure is the
// return value; its reason is in the trace.
namespace qm {

class cAudioFormat;
struct Platform;

// Seconds of decoded audio; -1 for a file that is missing, empty or not to be opened.
double GetAudioFileLengthSeconds(const std::string& path);

// Whether audio of the first format is stored just like audio of the second. An absent one equals none.
bool AudioFormatsEqual(const std::shared_ptr<cAudioFormat>& first,
                       const std::shared_ptr<cAudioFormat>& second);

// Replaces what is at the path by an empty audio file of that format, for a recording to fill. False leaves
// an old file that could not be removed in place. A type that cannot be written (also a WAV tag without an
// encoder) gives true and no file: the caller sees it when opening. Only an absent format is told by the
// platform's message box, other failures by ReportProblem; neither is shown when silent.
bool OpenRecordingFile(const std::string& path, const std::shared_ptr<cAudioFormat>& format, bool silent,
                       const Platform& platform);

// Writes, as one step, a WAV file with an empty data chunk in the format that the encoder of that tag takes:
// 16-bit PCM or 32-bit float. False leaves what was at the path.
bool CreateAudioFile(const std::string& path, std::int32_t sampleRate, std::int32_t channels,
                     std::int32_t formatTag);

}  // namespace qm
