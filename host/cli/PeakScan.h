#pragma once
#include <cstdint>
#include <string>

namespace qm {
class cPeakFile;
enum enPeakFileErr : std::int32_t;
}  // namespace qm

namespace qm::cli {

class LongWork;

// Shows the scans of a peak file object as work, and cancels them with it. The work has to live as long as
// scans are made.
void WatchScans(cPeakFile& peaks, LongWork& work);

// Why an audio file has no peak file, as one line.
std::string ScanFailure(const std::string& audioFile, const std::string& peakFile, enPeakFileErr error);

}  // namespace qm::cli
