#pragma once
#include <cstdint>

// Sound devices by what they can do. Device numbers count from 1. A device fits when it takes the 16-bit
// format of that rate (11025, 22050 or 44100 Hz) and channel count (1 or 2); none fits any other.
namespace qm {

class SoundDeviceList;

// The first output behind number `after` that fits; 0 for none.
std::int32_t FindWaveOutDevice(const SoundDeviceList& devices, std::int32_t sampleRate, std::int32_t channels,
                               std::int32_t after = 0);

// How many outputs fit.
std::int32_t CountWaveOutDevices(const SoundDeviceList& devices, std::int32_t sampleRate,
                                 std::int32_t channels);

// The last output, and the last input, that fits; 0 for none.
std::int32_t FindLastWaveOutDevice(const SoundDeviceList& devices, std::int32_t sampleRate,
                                   std::int32_t channels);
std::int32_t FindLastWaveInDevice(const SoundDeviceList& devices, std::int32_t sampleRate,
                                  std::int32_t channels);

}  // namespace qm
