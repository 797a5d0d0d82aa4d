#include "audio/WaveDevices.h"

#include <gtest/gtest.h>

#include <array>

#include "kits/sound/SoundSystem.h"

namespace qm {
namespace {

TEST(WaveDevices, AreChosenByTheFormatTheyTake) {
  constexpr std::uint32_t kEverything = 0xFFFFF, kMono = 0x400, kSlow = 4 | 8 | 64 | 128;
  const FixedSoundDeviceList devices(
      {{"modem", kSlow}, {"one", kEverything}, {"mono", kMono}, {"two", 0x800}, {"none", 0}},
      {{"microphone", kMono}, {"line", kEverything}, {"modem", kSlow}});
  // Rate and channels; the first output, the number of them, the last, and the last input
  const std::array<std::int32_t, 6> cases[] = {{44100, 2, 2, 2, 4, 2}, {44100, 1, 2, 2, 3, 2},
                                               {22050, 2, 1, 2, 2, 3}, {11025, 1, 1, 2, 2, 3},
                                               {48000, 2, 0, 0, 0, 0}, {44100, 3, 0, 0, 0, 0}};
  for (const auto& [rate, channels, first, count, lastOut, lastIn] : cases) {
    SCOPED_TRACE(rate * 10 + channels);
    EXPECT_EQ(FindWaveOutDevice(devices, rate, channels), first);
    EXPECT_EQ(CountWaveOutDevices(devices, rate, channels), count);
    EXPECT_EQ(FindLastWaveOutDevice(devices, rate, channels), lastOut);
    EXPECT_EQ(FindLastWaveInDevice(devices, rate, channels), lastIn);
  }
  // The search goes on behind a device.
  for (const auto& [after, found] : {std::pair{-5, 2}, {0, 2}, {2, 4}, {3, 4}, {4, 0}, {99, 0}})
    EXPECT_EQ(FindWaveOutDevice(devices, 44100, 2, after), found) << after;
  EXPECT_EQ(FindLastWaveInDevice(FixedSoundDeviceList({}, {}), 44100, 2), 0);
}

}  // namespace
}  // namespace qm
