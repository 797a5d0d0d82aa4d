#include "audio/WaveDevices.h"

#include <gtest/gtest.h>

#include "kits/sound/SoundSystem.h"

namespace qm {
namespace {

TEST(WaveDevices, AreChosenByTheFormatTheyTake) {
  constexpr std::uint32_t kEverything = 0xFFFFF, kMono = 0x400, kSlow = 4 | 8 | 64 | 128;
  const FixedSoundDeviceList devices(
      {{"modem", kSlow}, {"one", kEverything}, {"mono", kMono}, {"two", 0x800}, {"none", 0}},
      {{"microphone", kMono}, {"line", kEverything}, {"modem", kSlow}});
  struct Case {
    std::int32_t rate, channels, first, count, lastOut, lastIn;
  };
  const Case cases[] = {
      {44100, 2, 2, 2, 4, 2}, {44100, 1, 2, 2, 3, 2}, {22050, 2, 1, 2, 2, 3},
      {11025, 1, 1, 2, 2, 3}, {48000, 2, 0, 0, 0, 0}, {44100, 3, 0, 0, 0, 0},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(FindWaveOutDevice(devices, c.rate, c.channels), c.first) << c.rate << "/" << c.channels;
    EXPECT_EQ(CountWaveOutDevices(devices, c.rate, c.channels), c.count) << c.rate << "/" << c.channels;
    EXPECT_EQ(FindLastWaveOutDevice(devices, c.rate, c.channels), c.lastOut) << c.rate << "/" << c.channels;
    EXPECT_EQ(FindLastWaveInDevice(devices, c.rate, c.channels), c.lastIn) << c.rate << "/" << c.channels;
  }
  // The search goes on behind a device.
  for (const auto& [after, found] : {std::pair{-5, 2}, {0, 2}, {2, 4}, {3, 4}, {4, 0}, {99, 0}})
    EXPECT_EQ(FindWaveOutDevice(devices, 44100, 2, after), found) << after;
  EXPECT_EQ(FindLastWaveInDevice(FixedSoundDeviceList({}, {}), 44100, 2), 0);
}

}  // namespace
}  // namespace qm
