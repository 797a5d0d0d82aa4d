#include "audio/WaveDevices.h"

#include <algorithm>

#include "kits/common/Numbers.h"
#include "kits/sound/SoundSystem.h"

namespace qm {

namespace {

class Fits {
 public:
  Fits(std::int32_t sampleRate, std::int32_t channels) : m_bit(SuitableFormatBit(sampleRate, channels)) {}
  bool operator()(const SoundDevice& device) const { return (device.formats & m_bit) != 0; }

 private:
  std::uint32_t m_bit;
};

std::int32_t LastThatFits(const std::vector<SoundDevice>& devices, const Fits& fits) {
  const auto found = std::find_if(devices.rbegin(), devices.rend(), fits);
  return static_cast<std::int32_t>(devices.rend() - found);
}

}  // namespace

std::int32_t FindWaveOutDevice(const SoundDeviceList& devices, std::int32_t sampleRate, std::int32_t channels,
                               std::int32_t after) {
  const std::vector<SoundDevice> outputs = devices.Outputs();
  const auto count = static_cast<std::int32_t>(outputs.size());
  const auto first = outputs.begin() + Limit(after, 0, count);
  const auto found = std::find_if(first, outputs.end(), Fits(sampleRate, channels));
  return found == outputs.end() ? 0 : static_cast<std::int32_t>(found - outputs.begin()) + 1;
}

std::int32_t CountWaveOutDevices(const SoundDeviceList& devices, std::int32_t sampleRate,
                                 std::int32_t channels) {
  return static_cast<std::int32_t>(std::ranges::count_if(devices.Outputs(), Fits(sampleRate, channels)));
}

std::int32_t FindLastWaveOutDevice(const SoundDeviceList& devices, std::int32_t sampleRate,
                                   std::int32_t channels) {
  return LastThatFits(devices.Outputs(), Fits(sampleRate, channels));
}

std::int32_t FindLastWaveInDevice(const SoundDeviceList& devices, std::int32_t sampleRate,
                                  std::int32_t channels) {
  return LastThatFits(devices.Inputs(), Fits(sampleRate, channels));
}

}  // namespace qm
