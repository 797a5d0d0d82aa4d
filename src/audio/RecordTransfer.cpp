#include "audio/RecordTransfer.h"

#include <algorithm>
#include <vector>

#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/AudioFileTarget.h"

namespace qm {

namespace {

constexpr std::size_t kBlockBytes = 1 << 18;

bool Told(const AudioFileError& error, std::string& errorText) {
  errorText = error.text;
  return !error;
}

}  // namespace

bool TransferRecording(const std::string& from, const std::string& to,
                       const std::function<void(float percent)>& progress, std::string& errorText) {
  AudioFileBytes source;
  AudioFileTarget target;
  if (!Told(source.Open(from), errorText) || !Told(target.Create(to), errorText)) return false;
  std::vector<char> block(kBlockBytes);
  for (std::int64_t done = 0; done < source.Size();) {
    const std::size_t got = source.ReadAt(done, block.data(), block.size());
    if (got == 0) {
      errorText = "'" + from + "' cannot be read further";
      return false;
    }
    if (!target.WriteAt(done, block.data(), got)) return Told(target.Error(), errorText);
    done += static_cast<std::int64_t>(got);
    if (progress) progress(100 * static_cast<float>(done) / static_cast<float>(source.Size()));
  }
  return Told(target.Commit(), errorText);
}

}  // namespace qm
