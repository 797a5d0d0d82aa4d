#include "kits/sound/cAudioFile.h"

#include <gtest/gtest.h>

#include <random>

#include "support/SoundFixtures.h"

namespace qm {
namespace {

using test::Quoted;
using test::RunCommand;
using test::TempFolder;

struct Made {
  const char* name;
  const char* command;  // in the folder; the source is in.wav
};

std::vector<float> WholeDecode(const std::string& path, std::int64_t& stated, std::size_t& channels) {
  cAudioFile file;
  file.AllowCompressedOpen(true);
  std::vector<float> all;
  EXPECT_EQ(file.OpenForRead(path), 0) << file.ErrorText();
  stated = file.NumberSamples();
  channels = static_cast<std::size_t>(file.Channels());
  std::vector<float> part(1000 * channels);
  while (std::size_t got = file.ReadFrames(part.data(), 1000)) {
    all.insert(all.end(), part.begin(), part.begin() + static_cast<std::ptrdiff_t>(got * channels));
  }
  EXPECT_EQ(file.LastError(), 0) << file.ErrorText();
  return all;
}

// Seeks all over an open file and compares what is read there with the whole decode.
void ExpectSeeksExact(const std::string& path, const std::vector<float>& all, std::size_t channels) {
  cAudioFile file;
  file.AllowCompressedOpen(true);
  ASSERT_EQ(file.OpenForRead(path), 0) << file.ErrorText();
  const std::int64_t length = file.NumberSamples();
  std::vector<std::int64_t> places = {0,    1,    length - 1, length, length / 2, 1151,
                                      1152, 1153, 2047,       2048,   2049};
  std::mt19937 random(7);
  for (int i = 0; i < 40; ++i)
    places.push_back(static_cast<std::int64_t>(random() % static_cast<unsigned>(length)));
  std::vector<float> part(3000 * channels);
  for (std::int64_t place : places) {
    place = std::min(place, length);
    ASSERT_TRUE(file.Seek(place));
    const auto expected = static_cast<std::size_t>(std::min<std::int64_t>(3000, length - place));
    ASSERT_EQ(file.ReadFrames(part.data(), 3000), expected) << path << " at " << place;
    for (std::size_t i = 0; i < expected * channels; ++i)
      ASSERT_EQ(part[i], all[static_cast<std::size_t>(place) * channels + i])
          << path << " from frame " << place << ", sample " << i;
  }
}

class AudioFileTypes : public testing::TestWithParam<Made> {};

TEST_P(AudioFileTypes, StatesItsLengthAndSeeksToTheSample) {
  TempFolder folder;
  ASSERT_TRUE(RunCommand("cd " + Quoted(folder.Path()) +
                         " && sox -n -r 44100 -c 2 -b 16 in.wav synth 7.3 pinknoise && " +
                         GetParam().command + " && mv out.* out"));
  std::int64_t stated = 0;
  std::size_t channels = 0;
  const std::vector<float> all = WholeDecode(folder.File("out"), stated, channels);
  EXPECT_EQ(static_cast<std::int64_t>(all.size() / channels), stated);
  ASSERT_GT(stated, 0);
  ExpectSeeksExact(folder.File("out"), all, channels);
  ASSERT_TRUE(
      RunCommand("cd " + Quoted(folder.Path()) + " && ffmpeg -i out -c:a pcm_f32le -f f32le ref.raw"));
  const std::string reference = test::ReadBytes(folder.File("ref.raw"));
  EXPECT_EQ(reference.size(), all.size() * 4);
}

const Made everyType[] = {
    {"wav16", "cp in.wav out.wav"},
    {"wav24", "sox in.wav -b 24 out.wav"},
    {"mp3Constant", "lame -b 128 in.wav out.mp3"},
    {"mp3Variable", "lame -V2 in.wav out.mp3"},
    {"mp3WithoutHeader", "lame -t -b 128 in.wav out.mp3"},
    {"mp3Low", "lame -b 32 -m m in.wav out.mp3"},
    {"mp2", "twolame in.wav out.mp2"},
    {"ogg", "ffmpeg -i in.wav -c:a libvorbis out.ogg"},
    {"oggSox", "sox in.wav out.ogg"},
    {"wma", "ffmpeg -i in.wav -c:a wmav2 -b:a 128k out.wma"},
    {"wma1", "ffmpeg -i in.wav -c:a wmav1 -b:a 128k out.wma"},
};
INSTANTIATE_TEST_SUITE_P(Every, AudioFileTypes, testing::ValuesIn(everyType),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace qm
