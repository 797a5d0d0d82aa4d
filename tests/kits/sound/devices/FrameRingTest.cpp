#include "kits/sound/engine/FrameRing.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace qm {
namespace {

// Every sample is its own position, so a frame that is lost, doubled, torn or out of order is seen at once.
TEST(FrameRing, KeepsEveryFrameInOrderBetweenTwoThreads) {
  constexpr std::size_t channels = 2, total = 400000, mask = 0xFFFFF;  // whole numbers that a float holds
  FrameRing ring(1000, channels);
  ASSERT_EQ(ring.Capacity(), 1024u);
  std::thread producer([&] {
    std::vector<float> block;
    for (std::size_t written = 0, length = 1; written < total; length = length * 7 % 613 + 1) {
      block.clear();
      for (std::size_t i = 0; i < std::min(length, total - written) * channels; ++i)
        block.push_back(static_cast<float>((written * channels + i) & mask));
      const std::size_t taken = ring.Write(block.data(), block.size() / channels);
      written += taken;
      if (taken == 0) std::this_thread::yield();
    }
  });
  std::vector<float> block(700 * channels);
  std::size_t read = 0, wrong = 0;
  for (std::size_t length = 1; read < total; length = length * 11 % 691 + 1) {
    const std::size_t got = ring.Read(block.data(), length);
    for (std::size_t i = 0; i < got * channels; ++i)
      wrong += block[i] != static_cast<float>((read * channels + i) & mask);
    read += got;
    if (got == 0) std::this_thread::yield();
  }
  producer.join();
  EXPECT_EQ(wrong, 0u);
  EXPECT_EQ(read, total);
  EXPECT_EQ(ring.Fill(), 0u);
}

TEST(FrameRing, WritesNoMoreThanFitsAndPeeksWithoutTaking) {
  FrameRing ring(4, 1);
  const float frames[] = {1, 2, 3, 4, 5, 6};
  float out[4] = {};
  ASSERT_EQ(ring.Write(frames, 3), 3u);
  ASSERT_EQ(ring.Read(out, 2), 2u);
  EXPECT_EQ(ring.Write(frames + 3, 3), 3u) << "over the edge";
  EXPECT_EQ(ring.Write(frames, 1), 0u) << "full";
  EXPECT_EQ(ring.Peek(out, 4, 1), 3u);
  EXPECT_EQ(std::vector<float>(out, out + 3), (std::vector<float>{4, 5, 6}));
  std::size_t front = 4;
  EXPECT_EQ(*ring.Front(front), 3);
  EXPECT_EQ(front, 2u) << "up to the edge";
  EXPECT_EQ(ring.Peek(out, 1, 4), 0u);
  EXPECT_EQ(ring.Fill(), 4u);
}

}  // namespace
}  // namespace qm
