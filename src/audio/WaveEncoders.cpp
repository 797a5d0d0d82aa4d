#include "audio/WaveEncoders.h"

#include <algorithm>

#include "kits/sound/cAudioFormat.h"

namespace qm {
namespace {

// The limits of cAudioFile's WAV files.
constexpr std::int32_t kMostChannels = 8;
constexpr std::int32_t kHighestRate = 768000;

struct Encoder {
  std::int32_t tag;
  std::uint16_t bits;
};

constexpr Encoder kEncoders[] = {{wftPCM, 16}, {wftFloat, 32}};

const Encoder* Find(std::int32_t formatTag) {
  const auto* found = std::ranges::find(kEncoders, formatTag, &Encoder::tag);
  return found == std::end(kEncoders) ? nullptr : found;
}

tyWaveFormat Stored(const Encoder& encoder, std::uint32_t sampleRate, std::uint16_t channels) {
  tyWaveFormat format;
  format.FormatTag = static_cast<std::uint16_t>(encoder.tag);
  format.Channels = channels;
  format.SamplesPerSecond = sampleRate;
  format.BitsPerSample = encoder.bits;
  format.BlockAlign = static_cast<std::uint16_t>(channels * encoder.bits / 8);
  format.AverageBytesPerSecond = sampleRate * format.BlockAlign;
  return format;
}

bool Within(std::int32_t value, std::int32_t most) {
  return value >= 1 && value <= most;
}

}  // namespace

std::int32_t FindWaveEncoder(std::int32_t formatTag) {
  return Find(formatTag) != nullptr ? eesOK : eesNotPossible;
}

std::int32_t SuggestWaveFormat(const tyWaveFormat& source, std::int32_t formatTag, tyWaveFormat& suggested) {
  const Encoder* encoder = Find(formatTag);
  if (encoder == nullptr || source.SamplesPerSecond == 0 || source.Channels == 0) return eesNotPossible;
  suggested = Stored(*encoder, source.SamplesPerSecond, source.Channels);
  return eesOK;
}

tyWaveFormat PcmFormat(std::int32_t sampleRate, std::int32_t channels) {
  const bool fits = Within(sampleRate, kHighestRate) && Within(channels, kMostChannels);
  return Stored(*Find(wftPCM), static_cast<std::uint32_t>(fits ? sampleRate : 0),
                static_cast<std::uint16_t>(fits ? channels : 0));
}

}  // namespace qm
