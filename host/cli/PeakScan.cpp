#include "cli/PeakScan.h"

#include "audio/cPeakFile.h"
#include "cli/LongWork.h"
#include "kits/sound/cAudioFile.h"

namespace qm::cli {

void WatchScans(cPeakFile& peaks, LongWork& work) {
  peaks.events.ScanAudioProgress.connect([&peaks, &work](std::int16_t percent) {
    if (!work.GoesOn()) peaks.CancelScanning();
    work.Show(percent);
  });
}

std::string ScanFailure(const std::string& audioFile, const std::string& peakFile, enPeakFileErr error) {
  if (error == pfeOpenDestFileFail) return "'" + audioFile + "': cannot write '" + peakFile + "'";
  cAudioFile audio;
  audio.AllowCompressedOpen(true);
  return audio.OpenForRead(audioFile) != afeNone ? audio.ErrorText() : "'" + audioFile + "' holds no audio";
}

}  // namespace qm::cli
