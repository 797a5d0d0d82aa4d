#include "item/WaveFacts.h"

#include <algorithm>

#include "item/RiffSource.h"
#include "item/RiffWalk.h"

namespace qm {

float WaveFacts::Seconds() const {
  if (format.AverageBytesPerSecond == 0) return 0;
  return static_cast<float>(static_cast<double>(dataBytes) / format.AverageBytesPerSecond);
}

std::optional<WaveFacts> FindWaveFacts(const RiffSource& file, const RiffForm& form) {
  const RiffChunk* format = FindRiffChunk(form, "fmt ");
  if (format == nullptr) return {};
  WaveFacts facts;
  const auto bytes = std::min<std::int64_t>(format->length, kWaveFormatBytes);
  facts.format = WaveFormatFrom(file.Read(format->start, static_cast<std::size_t>(bytes)));
  if (const RiffChunk* data = FindRiffChunk(form, "data")) facts.dataBytes = data->length;
  return facts;
}

}  // namespace qm
