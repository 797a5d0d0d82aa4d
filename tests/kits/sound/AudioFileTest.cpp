#include "kits/sound/cAudioFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "AudioFileChecks.h"

// Reading of every type, against the codec library's own program as the independent reader.
namespace qm::test {
namespace {

struct Made {
  const char* name;
  const char* source;   // what sox makes in.wav with
  const char* command;  // makes out.* of it
  std::int32_t type;
  const char* reference = "";  // decoder that ffmpeg is told to use
};

class AudioFileTypes : public testing::TestWithParam<Made> {};

// What ffmpeg decodes, as float.
std::vector<float> Reference(const std::string& path, const Made& made) {
  const std::string raw = path + ".raw";
  EXPECT_TRUE(RunCommand("ffmpeg " + std::string(made.reference) + " -i " + Quoted(path) + " -f f32le " +
                         Quoted(raw)));
  const std::string bytes = ReadBytes(raw);
  std::vector<float> samples(bytes.size() / 4);
  std::memcpy(samples.data(), bytes.data(), samples.size() * 4);
  return samples;
}

// Seeks all over a file and compares what is read there with the whole decode.
void ExpectSeeksExact(const std::string& path, const std::vector<float>& all) {
  cAudioFile file;
  file.AllowCompressedOpen(true);
  ASSERT_EQ(file.OpenForRead(path), 0) << file.ErrorText();
  const std::int64_t length = file.NumberSamples();
  std::vector<std::int64_t> places = {length - 1, 0,    length, 1,    length / 2, 575,
                                      1151,       1152, 1153,   2047, 2048,       2049};
  std::mt19937 random(7);
  for (int i = 0; i < 50; ++i)
    places.push_back(static_cast<std::int64_t>(random() % static_cast<unsigned>(length)));
  constexpr std::size_t most = 3000;
  const auto channels = static_cast<std::size_t>(file.Channels());
  std::vector<float> part(most * channels);
  for (std::int64_t place : places) {
    place = std::min(place, length);
    ASSERT_TRUE(file.Seek(place));
    const std::size_t expected = std::min(most, static_cast<std::size_t>(length - place));
    ASSERT_EQ(file.ReadFrames(part.data(), most), expected) << "from frame " << place;
    const auto begin = all.begin() + static_cast<std::ptrdiff_t>(static_cast<std::size_t>(place) * channels);
    const auto end = begin + static_cast<std::ptrdiff_t>(expected * channels);
    ASSERT_TRUE(std::equal(begin, end, part.begin())) << "from frame " << place;
  }
}

TEST_P(AudioFileTypes, IsDecodedAndSoughtToTheSample) {
  const Made& made = GetParam();
  TempFolder folder;
  ASSERT_TRUE(RunCommand("cd " + Quoted(folder.Path()) + " && sox -n " + made.source +
                         " synth 4.1 pinknoise && " + made.command + " && mv out.* out"));
  const Decoded decoded = DecodeFile(folder.File("out"));
  ASSERT_EQ(decoded.error, "");
  EXPECT_EQ(decoded.format.FormatType(), made.type);
  EXPECT_EQ(decoded.Frames(), decoded.stated);
  const std::vector<float> reference = Reference(folder.File("out"), made);
  ASSERT_EQ(decoded.samples.size(), reference.size());
  EXPECT_TRUE(decoded.samples == reference);
  ExpectSeeksExact(folder.File("out"), decoded.samples);
}

const char stereo[] = "-r 44100 -c 2 -b 16 in.wav";

const Made everyType[] = {
    {"wav16", stereo, "cp in.wav out.wav", aftWAV},
    {"wav24", "-r 96000 -c 2 -b 24 in.wav", "cp in.wav out.wav", aftWAV},
    {"wav32", "-r 8000 -c 1 -b 32 in.wav", "cp in.wav out.wav", aftWAV},
    {"wav8", "-r 11025 -c 1 -b 8 -e unsigned in.wav", "cp in.wav out.wav", aftWAV},
    {"wavFloat", "-r 48000 -c 2 -b 32 -e floating-point in.wav", "cp in.wav out.wav", aftWAV},
    {"wavDouble", "-r 48000 -c 2 -b 64 -e floating-point in.wav", "cp in.wav out.wav", aftWAV},
    {"wavALaw", "-r 8000 -c 1 -e a-law in.wav", "cp in.wav out.wav", aftWAV},
    {"wavMuLaw", "-r 8000 -c 2 -e mu-law in.wav", "cp in.wav out.wav", aftWAV},
    {"wavLong", stereo, "ffmpeg -i in.wav -rf64 always out.wav", aftWAV},
    {"wavMP3", stereo, "lame in.wav a.mp3 && ffmpeg -i a.mp3 -c:a copy out.wav", aftWAV},
    {"wavMP2", stereo, "twolame in.wav a.mp2 && ffmpeg -i a.mp2 -c:a copy out.wav", aftWAV, "-c:a mp2float"},
    {"mp3Constant", stereo, "lame -b 128 in.wav out.mp3", aftMP3},
    {"mp3Variable", stereo, "lame -V2 in.wav out.mp3", aftMP3},
    {"mp3WithoutHeader", stereo, "lame -t -b 128 in.wav out.mp3", aftMP3},
    {"mp3VariableWithoutHeader", stereo, "lame -t -V7 in.wav out.mp3", aftMP3},
    {"mp3Low", stereo, "lame -t -b 32 -m m --resample 44.1 in.wav out.mp3", aftMP3},
    {"mp3Lowest", stereo, "lame -t -b 8 -m m --resample 24 in.wav out.mp3", aftMP3},
    {"mp3High", "-r 48000 -c 2 -b 16 in.wav", "lame -b 320 in.wav out.mp3", aftMP3},
    {"mp3Version25", "-r 8000 -c 1 -b 16 in.wav", "lame -b 24 in.wav out.mp3", aftMP3},
    {"mp3WithTags", stereo,
     "lame --id3v2-only --tt T in.wav a.mp3 && lame --id3v1-only --tt T in.wav b.mp3 && "
     "tail -c 128 b.mp3 >> a.mp3 && mv a.mp3 out.mp3",
     aftMP3},
    {"mp2", stereo, "twolame in.wav out.mp2", aftMP2, "-c:a mp2float"},
    {"mp2Half", "-r 24000 -c 1 -b 16 in.wav", "twolame -b 48 in.wav out.mp2", aftMP2, "-c:a mp2float"},
    {"mp2Library", "-r 32000 -c 2 -b 16 in.wav", "ffmpeg -i in.wav -c:a mp2 out.mp2", aftMP2,
     "-c:a mp2float"},
    {"oggFfmpeg", stereo, "ffmpeg -i in.wav -c:a libvorbis out.ogg", aftOgg},
    {"oggSox", "-r 48000 -c 1 -b 16 in.wav", "sox in.wav out.ogg", aftOgg},
    {"oggLow", "-r 8000 -c 1 -b 16 in.wav", "sox in.wav -C -1 out.ogg", aftOgg},
    {"wma", stereo, "ffmpeg -i in.wav -c:a wmav2 -b:a 128k out.wma", aftWMA},
    {"wmaMono", "-r 32000 -c 1 -b 16 in.wav", "ffmpeg -i in.wav -c:a wmav2 -b:a 64k out.wma", aftWMA},
    {"wmaLow", "-r 16000 -c 1 -b 16 in.wav", "ffmpeg -i in.wav -c:a wmav2 -b:a 32k out.wma", aftWMA},
    {"wma1", "-r 22050 -c 2 -b 16 in.wav", "ffmpeg -i in.wav -c:a wmav1 -b:a 64k out.wma", aftWMA},
};
INSTANTIATE_TEST_SUITE_P(Every, AudioFileTypes, testing::ValuesIn(everyType),
                         [](const auto& row) { return std::string(row.param.name); });

// Containers that the independent reader takes less exactly than the encoder meant: here the source itself is
// known.
TEST(AudioFileOgg, KeepsTheTimeOfShortAndOfJoinedFiles) {
  TempFolder folder;
  const std::string in = "cd " + Quoted(folder.Path()) + " && ";
  ASSERT_TRUE(
      RunCommand(in + "sox -n -r 48000 -c 1 -b 16 a.wav synth 0.9 sine 300-3000 && sox a.wav -C 8 a.ogg && "
                      "sox -n -r 48000 -c 1 -b 16 b.wav synth 2.1 sine 3000-300 && sox b.wav -C 3 b.ogg && "
                      "cat a.ogg b.ogg a.ogg > joined.ogg"));
  const Decoded a = DecodeFile(folder.File("a.ogg")), source = DecodeFile(folder.File("a.wav"));
  ASSERT_EQ(a.stated, 43200);
  for (std::size_t i = 0; i < a.samples.size(); ++i) ASSERT_NEAR(a.samples[i], source.samples[i], 0.1) << i;
  const Decoded b = DecodeFile(folder.File("b.ogg")), joined = DecodeFile(folder.File("joined.ogg"));
  std::vector<float> expected = a.samples;
  expected.insert(expected.end(), b.samples.begin(), b.samples.end());
  expected.insert(expected.end(), a.samples.begin(), a.samples.end());
  EXPECT_EQ(joined.error, "");
  EXPECT_TRUE(joined.samples == expected);
  ExpectSeeksExact(folder.File("joined.ogg"), joined.samples);
}

TEST(AudioFileOgg, CutOutOfARunningStreamBeginsAtItsFirstFrame) {
  TempFolder folder;
  ASSERT_TRUE(RunCommand("cd " + Quoted(folder.Path()) +
                         " && sox -n -r 44100 -c 2 -b 16 in.wav synth 8 pinknoise && "
                         "sox in.wav whole.ogg"));
  const std::string whole = ReadBytes(folder.File("whole.ogg"));
  // The headers end with the second page; the stream goes on with a later one.
  std::vector<std::size_t> pages;
  for (std::size_t at = whole.find("OggS"); at != std::string::npos; at = whole.find("OggS", at + 4))
    pages.push_back(at);
  ASSERT_GT(pages.size(), 12u);
  WriteBytes(folder.File("cut.ogg"), whole.substr(0, pages[2]) + whole.substr(pages[8]));
  const Decoded all = DecodeFile(folder.File("whole.ogg")), cut = DecodeFile(folder.File("cut.ogg"));
  ASSERT_EQ(cut.error, "");
  ASSERT_EQ(cut.Frames(), cut.stated);
  ASSERT_LT(cut.stated, all.stated);
  const std::ptrdiff_t tail =
      std::min<std::ptrdiff_t>(200000, static_cast<std::ptrdiff_t>(cut.samples.size()) / 2);
  EXPECT_TRUE(std::equal(cut.samples.end() - tail, cut.samples.end(), all.samples.end() - tail));
  ExpectSeeksExact(folder.File("cut.ogg"), cut.samples);
}

// Whatever stands around or ahead of the frames is not audio.
TEST(AudioFileMpeg, WhatIsNotAudioIsPassedOver) {
  TempFolder folder;
  ASSERT_TRUE(RunCommand("cd " + Quoted(folder.Path()) +
                         " && sox -n -r 44100 -c 2 -b 16 in.wav synth 2 pinknoise && "
                         "lame -t -b 128 in.wav a.mp3"));
  const std::string plain = ReadBytes(folder.File("a.mp3"));
  const Decoded expected = DecodeFile(folder.File("a.mp3"));
  ASSERT_GT(expected.stated, 80000);
  const std::string picture(70000, '\xFF');
  const std::string id3 =
      "ID3" + std::string("\4\0\0\0\4\x22\x70", 7) + picture;  // 70000 in four times seven bits
  const std::string lastTag = "TAG" + std::string(125, ' ');
  const std::string ape = "APETAGEX" + LittleEndian(2000, 4) + LittleEndian(32 + 50, 4) + LittleEndian(0, 4);
  const std::string apeTag = ape + LittleEndian(0xA0000000, 4) + std::string(8, '\0') +
                             std::string(50, '\xFB') + ape + LittleEndian(0x80000000, 4) +
                             std::string(8, '\0');
  std::string bitRates = plain.substr(0, 417);
  std::fill(bitRates.begin() + 4, bitRates.end(), '\0');
  bitRates.replace(36, 4, "VBRI");
  bitRates[2] = static_cast<char>(bitRates[2] & ~2);  // a frame that is not filled up has 417 bytes
  const std::pair<const char*, std::string> rows[] = {
      {"ID3v2 with a picture", id3 + plain},
      {"two of them", id3 + id3 + plain},
      {"ID3v1", plain + lastTag},
      {"APE and ID3v1", plain + apeTag + lastTag},
      {"a VBRI frame", bitRates + plain},
      {"ID3v2 and a VBRI frame", id3 + bitRates + plain},
      {"bytes of something else", std::string(5000, '\x7E') + plain},
      {"half a frame at the end", plain + plain.substr(0, 200)},
  };
  for (const auto& [what, bytes] : rows) {
    WriteBytes(folder.File("b"), bytes);
    const Decoded decoded = DecodeFile(folder.File("b"));
    EXPECT_EQ(decoded.error, "") << what;
    EXPECT_EQ(decoded.stated, expected.stated) << what;
    EXPECT_TRUE(decoded.samples == expected.samples) << what;
  }
}

// At low bit rates the decoder adds noise that runs on from where it began; a seek must meet it all the same.
TEST(AudioFileWma, SeeksToTheSampleWhereTheDecoderAddsNoise) {
  for (const char* command : {"sox -n -r 11025 -c 1 -b 16 in.wav synth 31 pinknoise && ffmpeg -i in.wav -c:a "
                              "wmav2 -b:a 24k out.wma",
                              "sox -n -r 48000 -c 2 -b 16 in.wav synth 31 pinknoise && ffmpeg -i in.wav -c:a "
                              "wmav1 -b:a 48k out.wma"}) {
    SCOPED_TRACE(command);
    TempFolder folder;
    ASSERT_TRUE(RunCommand("cd " + Quoted(folder.Path()) + " && " + command));
    const Decoded decoded = DecodeFile(folder.File("out.wma"));
    ASSERT_EQ(decoded.Frames(), decoded.stated);
    ExpectSeeksExact(folder.File("out.wma"), decoded.samples);
  }
}

// A stream that is damaged keeps its time: what lies behind the damage stands where it stood.
TEST(AudioFileDamage, LeavesLaterAudioInItsPlace) {
  const Made rows[] = {
      {"mp3", stereo, "lame -b 128 in.wav out.mp3", aftMP3},
      {"mp2", stereo, "twolame -b 128 in.wav out.mp2", aftMP2},
      {"ogg", stereo, "sox in.wav out.ogg", aftOgg},
      {"wma", stereo, "ffmpeg -i in.wav -c:a wmav2 -b:a 128k out.wma", aftWMA},
  };
  for (const Made& made : rows) {
    SCOPED_TRACE(made.name);
    TempFolder folder;
    ASSERT_TRUE(RunCommand("cd " + Quoted(folder.Path()) + " && sox -n " + made.source +
                           " synth 6 pinknoise && " + made.command + " && mv out.* out"));
    const Decoded good = DecodeFile(folder.File("out"));
    std::string bytes = ReadBytes(folder.File("out"));
    const std::size_t middle = bytes.size() / 2;
    for (std::size_t i = 0; i < 5000; ++i) bytes[middle + i] = static_cast<char>(i * 37);
    WriteBytes(folder.File("bad"), bytes);
    const Decoded bad = DecodeFile(folder.File("bad"));
    EXPECT_EQ(bad.error, "");
    EXPECT_EQ(bad.stated, good.stated);
    ASSERT_EQ(bad.samples.size(), good.samples.size());
    const auto third = static_cast<std::ptrdiff_t>(good.samples.size() / 3);
    EXPECT_TRUE(std::equal(good.samples.begin(), good.samples.begin() + third, bad.samples.begin()));
    EXPECT_TRUE(std::equal(good.samples.end() - third, good.samples.end(), bad.samples.end() - third));
    ExpectSeeksExact(folder.File("bad"), bad.samples);
  }
}

TEST(AudioFileDamage, CutShortEndsWhereTheBytesEnd) {
  for (const char* command : {"lame -b 128 in.wav out.mp3", "twolame in.wav out.mp2", "sox in.wav out.ogg",
                              "cp in.wav out.wav", "ffmpeg -i in.wav -c:a wmav2 -b:a 128k out.wma"}) {
    SCOPED_TRACE(command);
    TempFolder folder;
    ASSERT_TRUE(RunCommand("cd " + Quoted(folder.Path()) + " && sox -n " + std::string(stereo) +
                           " synth 6 pinknoise && " + command + " && mv out.* out"));
    const Decoded whole = DecodeFile(folder.File("out"));
    const std::string bytes = ReadBytes(folder.File("out"));
    WriteBytes(folder.File("cut"), bytes.substr(0, bytes.size() * 2 / 3));
    const Decoded cut = DecodeFile(folder.File("cut"));
    EXPECT_EQ(cut.error, "");
    EXPECT_EQ(cut.Frames(), cut.stated);
    EXPECT_NEAR(static_cast<double>(cut.stated), static_cast<double>(whole.stated) * 2 / 3, 30000);
    const auto half = static_cast<std::ptrdiff_t>(cut.samples.size() / 2);
    EXPECT_TRUE(std::equal(cut.samples.begin(), cut.samples.begin() + half, whole.samples.begin()));
  }
}

}  // namespace
}  // namespace qm::test
