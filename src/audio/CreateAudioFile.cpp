#include <exception>

#include "audio/AudioFileService.h"
#include "audio/RiffWriter.h"
#include "audio/WaveEncoders.h"
#include "kits/common/Files.h"
#include "kits/sound/cAudioFormat.h"
#include "services/Diagnostics.h"

namespace qm {
namespace {

constexpr std::int32_t kTraceLevel = 5;
constexpr std::int32_t kFailureLevel = 2;

template <class... Parts>
bool Exit(const Parts&... reason) {
  Trace(kFailureLevel, ednCloses, reason...);
  return false;
}

std::string EmptyWave(const tyWaveFormat& format) {
  RiffWriter riff;
  riff.CreateChunk("RIFF", "WAVE");
  riff.CreateChunk("fmt ");
  riff.Write(WaveFormatBytes(format));
  riff.Ascend();
  riff.CreateChunk("data");
  riff.Ascend();
  riff.Ascend();
  return riff.Bytes();
}

bool Create(const std::string& path, std::int32_t sampleRate, std::int32_t channels, std::int32_t formatTag) {
  if (path.empty()) return Exit("Exit CreateAudioFile (Filename = \"\")");
  if (sampleRate == 0) return Exit("Exit CreateAudioFile (SampleRate = 0)");
  if (channels == 0) return Exit("Exit CreateAudioFile (Channels = 0)");
  tyWaveFormat source, format;
  if (const auto code = SuggestWaveFormat(PcmFormat(sampleRate, channels), wftPCM, source); code != eesOK)
    return Exit("Exit CreateAudioFile (acmFormatSuggestFailed. rc = ", code);
  if (const auto code = FindWaveEncoder(formatTag); code != eesOK)
    return Exit("Exit CreateAudioFile (acmFormatTagDetails failed. rc = ", code);
  if (const auto code = SuggestWaveFormat(source, formatTag, format); code != eesOK)
    return Exit("Exit CreateAudioFile (acmFormatSuggestFailed. rc = ", code);
  if (!WriteFileAtomically(path, EmptyWave(format)))
    return Exit("Exit CreateAudioFile (cannot write ", path, ")");
  return true;
}

}  // namespace

bool CreateAudioFile(const std::string& path, std::int32_t sampleRate, std::int32_t channels,
                     std::int32_t formatTag) try {
  Trace(kTraceLevel, ednOpens, "Start CreateAudioFile");
  if (!Create(path, sampleRate, channels, formatTag)) return false;
  Trace(kTraceLevel, ednCloses, "Finish CreateAudioFile");
  return true;
} catch (const std::exception&) {
  return false;
}

}  // namespace qm
