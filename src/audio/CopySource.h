#pragma once
#include <cstdint>
#include <string>

#include "audio/CopyErrors.h"
#include "kits/sound/cAudioFile.h"
#include "kits/sound/cAudioFormat.h"

namespace qm {

// A source file while it is copied.
struct CopySource {
  std::string Path;
  cAudioFile Reader;
  cAudioFormat Format;
  float DurationSeconds = 0;
  std::int64_t NumberSamples = 0;  // frames

  enCopyError Open(const std::string& path);
};

// What of the source is wanted, in its frames.
struct CopyStretch {
  std::int64_t start = 0;
  std::int64_t total = 0;
  std::int64_t mixPoint = -1;  // frames behind the start at which the audio to retain begins; -1 for none

  // From seconds, -1 for the source's own start and end and for nothing to retain. On a failure the stretch
  // is not to be used.
  enCopyError Set(const CopySource& source, float startPosition, float endPosition, float retainSeconds);
};

}  // namespace qm
