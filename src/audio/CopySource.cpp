#include "audio/CopySource.h"

#include <algorithm>
#include <cmath>

#include "kits/common/Numbers.h"

namespace qm {
namespace {

constexpr float kOwn = -1;

std::int64_t FramesOf(float seconds, const CopySource& source) {
  return RoundToWhole(static_cast<double>(seconds) * source.Format.SampleRate());
}

std::int64_t Milliseconds(float seconds) {
  return RoundToWhole(static_cast<double>(seconds) * 1000);
}

}  // namespace

enCopyError CopySource::Open(const std::string& path) {
  Path = path;
  Reader.AllowCompressedOpen(true);
  if (Reader.OpenForRead(path) != afeNone) return cerSourceNotOpened;
  Format = Reader.Format();
  DurationSeconds = static_cast<float>(Reader.LengthMilliseconds() / 1000);
  NumberSamples = Reader.NumberSamples();
  return cerOK;
}

enCopyError CopyStretch::Set(const CopySource& source, float startPosition, float endPosition,
                             float retainSeconds) {
  if (std::isnan(endPosition)) return cerEndInvalid;
  if (std::isnan(retainSeconds)) return cerRetainInvalid;
  start = 0;
  if (startPosition != kOwn) {
    if (!(startPosition >= 0 && startPosition <= source.DurationSeconds)) return cerStartInvalid;
    // The duration is a single, and so may lie a little behind the last frame.
    start = std::min(FramesOf(startPosition, source), source.NumberSamples);
  }
  const bool wholeEnd =
      endPosition == kOwn || Milliseconds(endPosition) >= Milliseconds(source.DurationSeconds);
  const std::int64_t end =
      wholeEnd ? source.NumberSamples : std::min(FramesOf(endPosition, source), source.NumberSamples);
  if (start > end) return cerStartAfterEnd;
  total = end - start;
  mixPoint = -1;
  if (retainSeconds > 0) mixPoint = Limit<std::int64_t>(total - FramesOf(retainSeconds, source), 0, total);
  return cerOK;
}

}  // namespace qm
