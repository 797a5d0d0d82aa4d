#include "kits/sound/tags/SoundFacts.h"

#include <gtest/gtest.h>

#include "kits/sound/AudioFileBytes.h"
#include "kits/sound/AudioFileChecks.h"

namespace qm {
namespace {

using namespace test;

// A glance says what the walk over the whole file says, or nothing; `told` where it has to say it.
TEST(SoundFacts, AGlanceIsNeverWrong) {
  const struct {
    const char* make;
    bool told;
  } cases[] = {
      {"lame --quiet -b 128 in.wav x", true},
      {"lame --quiet -V 4 in.wav x --tt Title --add-id3v2", true},
      {"lame --quiet --abr 100 in.wav x", true},
      {"lame --quiet -t -b 128 in.wav x", true},
      {"lame --quiet -t -b 64 --resample 22.05 -m m in.wav x", true},
      {"lame --quiet -t -V 4 in.wav x", false},
      {"ffmpeg -v error -i in.wav -b:a 160k -f mp3 x", true},
      {"ffmpeg -v error -i in.wav -q:a 3 -f mp3 x", true},
      {"twolame --quiet -b 192 in.wav x", true},
      {"lame --quiet -b 128 in.wav y; head -c 200000 y > x", false},
      {"lame --quiet -t -b 128 in.wav y; (head -c 100000 y; head -c 777 /dev/zero; tail -c +100001 y) > x",
       false},
      {"lame --quiet -t -b 128 in.wav y; lame --quiet -t -b 96 in.wav z; cat y z > x", false},
      {"lame --quiet -t -b 128 in.wav y; head -c 100123 y > x", true},
  };
  Workshop folder;
  ASSERT_TRUE(folder.Make("sox -n -r 44100 -c 2 in.wav synth 20 pinknoise vol 0.5"));
  for (const auto& each : cases) {
    ASSERT_TRUE(folder.Make("rm -f x && { " + std::string(each.make) + "; }")) << each.make;
    AudioFileBytes bytes;
    ASSERT_FALSE(bytes.Open(folder.File("x")));
    const auto glance = GlanceAtMpeg(bytes);
    EXPECT_EQ(glance.has_value(), each.told) << each.make;
    const auto facts = ReadSoundFacts(bytes, folder.File("x"));
    cAudioFile file;
    ASSERT_EQ(file.OpenForRead(folder.File("x")), 0);
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->frames, file.NumberSamples()) << each.make;
    EXPECT_EQ(facts->format, file.Format()) << each.make;
  }
}

}  // namespace
}  // namespace qm
