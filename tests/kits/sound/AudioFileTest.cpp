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
  const char* source;   // the format of in.wav
  const char* command;  // makes out.* of it
  std::int32_t type;
  const char* reference = "";  // decoder that ffmpeg is told to use
  std::size_t frames = 0;      // where ffmpeg gives the last block's filling as well
};

class AudioFileTypes : public testing::TestWithParam<Made> {};

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
  Workshop folder;
  ASSERT_TRUE(folder.MakeOut(made.source, "4.1", made.command));
  const Decoded decoded = folder.Decode("out");
  ASSERT_EQ(decoded.error, "");
  EXPECT_EQ(decoded.format.FormatType(), made.type);
  EXPECT_EQ(decoded.Frames(), decoded.stated);
  ASSERT_TRUE(folder.Make("ffmpeg " + std::string(made.reference) + " -i out -f f32le raw"));
  const std::string reference = folder.Bytes("raw");
  ASSERT_EQ(decoded.samples.size() * 4, made.frames ? made.frames * 8 : reference.size());
  ASSERT_GE(reference.size(), decoded.samples.size() * 4);
  EXPECT_EQ(std::memcmp(decoded.samples.data(), reference.data(), decoded.samples.size() * 4), 0);
  ExpectSeeksExact(folder.File("out"), decoded.samples);
}

const Made everyType[] = {
    {"wav16", kStereo, "cp in.wav out.wav", aftWAV},
    {"wav24", "-r 96000 -c 2 -b 24", "cp in.wav out.wav", aftWAV},
    {"wavFloat", "-r 48000 -c 2 -b 32 -e floating-point", "cp in.wav out.wav", aftWAV},
    {"wavALaw", "-r 8000 -c 1 -e a-law", "cp in.wav out.wav", aftWAV},
    {"wavMuLaw", "-r 8000 -c 2 -e mu-law", "cp in.wav out.wav", aftWAV},
    {"wavMsAdpcm", "-r 22050 -c 2 -b 16", "sox in.wav -e ms-adpcm out.wav", aftWAV, "", 90405},
    {"wavImaAdpcm", "-r 22050 -c 2 -b 16", "sox in.wav -e ima-adpcm out.wav", aftWAV, "", 90405},
    {"wavLong", kStereo, "ffmpeg -i in.wav -rf64 always out.wav", aftWAV},
    {"wavMP3", kStereo, "lame in.wav a.mp3 && ffmpeg -i a.mp3 -c:a copy out.wav", aftWAV},
    {"wavMP2", kStereo, "twolame in.wav a.mp2 && ffmpeg -i a.mp2 -c:a copy out.wav", aftWAV, "-c:a mp2float"},
    {"mp3Constant", kStereo, "lame -b 128 in.wav out.mp3", aftMP3},
    {"mp3Variable", kStereo, "lame -V2 in.wav out.mp3", aftMP3},
    {"mp3WithoutHeader", kStereo, "lame -t -b 128 in.wav out.mp3", aftMP3},
    {"mp3VariableWithoutHeader", kStereo, "lame -t -V7 in.wav out.mp3", aftMP3},
    {"mp3Low", kStereo, "lame -t -b 32 -m m --resample 44.1 in.wav out.mp3", aftMP3},
    {"mp3Lowest", kStereo, "lame -t -b 8 -m m --resample 24 in.wav out.mp3", aftMP3},
    {"mp3High", "-r 48000 -c 2 -b 16", "lame -b 320 in.wav out.mp3", aftMP3},
    {"mp3Version25", "-r 8000 -c 1 -b 16", "lame -b 24 in.wav out.mp3", aftMP3},
    {"mp2", kStereo, "twolame in.wav out.mp2", aftMP2, "-c:a mp2float"},
    {"mp2Half", "-r 24000 -c 1 -b 16", "twolame -b 48 in.wav out.mp2", aftMP2, "-c:a mp2float"},
    {"mp2Library", "-r 32000 -c 2 -b 16", "ffmpeg -i in.wav -c:a mp2 out.mp2", aftMP2, "-c:a mp2float"},
    {"oggFfmpeg", kStereo, "ffmpeg -i in.wav -c:a libvorbis out.ogg", aftOgg},
    {"oggSox", "-r 48000 -c 1 -b 16", "sox in.wav out.ogg", aftOgg},
    {"oggLow", "-r 8000 -c 1 -b 16", "sox in.wav -C -1 out.ogg", aftOgg},
    {"wma", kStereo, "ffmpeg -i in.wav -c:a wmav2 -b:a 128k out.wma", aftWMA},
    {"wmaMono", "-r 32000 -c 1 -b 16", "ffmpeg -i in.wav -c:a wmav2 -b:a 64k out.wma", aftWMA},
    {"wmaLow", "-r 16000 -c 1 -b 16", "ffmpeg -i in.wav -c:a wmav2 -b:a 32k out.wma", aftWMA},
    {"wma1", "-r 22050 -c 2 -b 16", "ffmpeg -i in.wav -c:a wmav1 -b:a 64k out.wma", aftWMA}};
INSTANTIATE_TEST_SUITE_P(Every, AudioFileTypes, testing::ValuesIn(everyType),
                         [](const auto& row) { return std::string(row.param.name); });

// Containers that the independent reader takes less exactly than the encoder meant: here the source is known.
TEST(AudioFileOgg, KeepsTheTimeOfShortAndOfJoinedFiles) {
  Workshop folder;
  ASSERT_TRUE(
      folder.Make("sox -n -r 48000 -c 1 -b 16 a.wav synth 0.9 sine 300-3000 && sox a.wav -C 8 a.ogg && "
                  "sox -n -r 48000 -c 1 -b 16 b.wav synth 2.1 sine 3000-300 && sox b.wav -C 3 b.ogg && "
                  "cat a.ogg b.ogg a.ogg > joined.ogg"));
  const Decoded a = folder.Decode("a.ogg"), source = folder.Decode("a.wav");
  ASSERT_EQ(a.stated, 43200);
  for (std::size_t i = 0; i < a.samples.size(); ++i) ASSERT_NEAR(a.samples[i], source.samples[i], 0.1) << i;
  const Decoded b = folder.Decode("b.ogg"), joined = folder.Decode("joined.ogg");
  std::vector<float> expected;
  for (const Decoded& part : {a, b, a})
    expected.insert(expected.end(), part.samples.begin(), part.samples.end());
  EXPECT_EQ(joined.error, "");
  EXPECT_TRUE(joined.samples == expected);
  ExpectSeeksExact(folder.File("joined.ogg"), joined.samples);
}

TEST(AudioFileOgg, CutOutOfARunningStreamBeginsAtItsFirstFrame) {
  Workshop folder;
  ASSERT_TRUE(folder.MakeOut(kStereo, "8", "sox in.wav out.ogg"));
  const std::string whole = folder.Bytes("out");
  // The headers end with the second page; the stream goes on with a later one.
  std::vector<std::size_t> pages;
  for (std::size_t at = whole.find("OggS"); at != whole.npos; at = whole.find("OggS", at + 4))
    pages.push_back(at);
  ASSERT_GT(pages.size(), 12u);
  WriteBytes(folder.File("cut"), whole.substr(0, pages[2]) + whole.substr(pages[8]));
  const Decoded all = folder.Decode("out"), cut = folder.Decode("cut");
  ASSERT_EQ(cut.error, "");
  ASSERT_EQ(cut.Frames(), cut.stated);
  ASSERT_LT(cut.stated, all.stated);
  const auto tail = std::min<std::ptrdiff_t>(200000, static_cast<std::ptrdiff_t>(cut.samples.size()) / 2);
  EXPECT_TRUE(std::equal(cut.samples.end() - tail, cut.samples.end(), all.samples.end() - tail));
  ExpectSeeksExact(folder.File("cut"), cut.samples);
}

// Whatever stands around or ahead of the frames is not audio.
TEST(AudioFileMpeg, WhatIsNotAudioIsPassedOver) {
  Workshop folder;
  ASSERT_TRUE(folder.MakeOut(kStereo, "2", "lame -t -b 128 in.wav out.mp3"));
  const std::string plain = folder.Bytes("out");
  const Decoded expected = folder.Decode("out");
  ASSERT_GT(expected.stated, 80000);
  // 70000 in four times seven bits
  const std::string id3 = "ID3" + std::string("\4\0\0\0\4\x22\x70", 7) + std::string(70000, '\xFF');
  const std::string lastTag = "TAG" + std::string(125, ' '), zeros(8, '\0');
  const std::string ape = "APETAGEX" + LittleEndian(2000, 4) + LittleEndian(32 + 50, 4) + LittleEndian(0, 4);
  const std::string apeTag = ape + LittleEndian(0xA0000000, 4) + zeros + std::string(50, '\xFB') + ape +
                             LittleEndian(0x80000000, 4) + zeros;
  std::string bitRates = plain.substr(0, 417);
  std::fill(bitRates.begin() + 4, bitRates.end(), '\0');
  bitRates.replace(36, 4, "VBRI");
  bitRates[2] = static_cast<char>(bitRates[2] & ~2);  // a frame that is not filled up has 417 bytes
  const std::pair<const char*, std::string> rows[] = {
      {"two ID3v2 with pictures", id3 + id3 + plain},
      {"ID3v1", plain + lastTag},
      {"APE and ID3v1", plain + apeTag + lastTag},
      {"a VBRI frame", bitRates + plain},
      {"ID3v2 and a VBRI frame", id3 + bitRates + plain},
      {"bytes of something else", std::string(5000, '\x7E') + plain},
      {"half a frame at the end", plain + plain.substr(0, 200)}};
  for (const auto& [what, bytes] : rows) {
    WriteBytes(folder.File("b"), bytes);
    const Decoded decoded = folder.Decode("b");
    EXPECT_EQ(decoded.error, "") << what;
    EXPECT_EQ(decoded.stated, expected.stated) << what;
    EXPECT_TRUE(decoded.samples == expected.samples) << what;
  }
}

// At low bit rates the decoder adds noise that runs on from where it began; a seek must meet it all the same.
TEST(AudioFileWma, SeeksToTheSampleWhereTheDecoderAddsNoise) {
  for (const auto& [format, coding] :
       {std::pair{"-r 11025 -c 1 -b 16", "wmav2 -b:a 24k"}, {"-r 48000 -c 2 -b 16", "wmav1 -b:a 48k"}}) {
    SCOPED_TRACE(coding);
    Workshop folder;
    ASSERT_TRUE(folder.MakeOut(format, "31", "ffmpeg -i in.wav -c:a " + std::string(coding) + " out.wma"));
    const Decoded decoded = folder.Decode("out");
    ASSERT_EQ(decoded.Frames(), decoded.stated);
    ExpectSeeksExact(folder.File("out"), decoded.samples);
  }
}

// What lies behind the damage stands where it stood; what is cut short ends where the bytes end.
TEST(AudioFileDamage, KeepsItsTime) {
  for (const char* command :
       {"cp in.wav out.wav", "lame -b 128 in.wav out.mp3", "twolame -b 128 in.wav out.mp2",
        "sox in.wav out.ogg", "ffmpeg -i in.wav -c:a wmav2 -b:a 128k out.wma"}) {
    SCOPED_TRACE(command);
    Workshop folder;
    ASSERT_TRUE(folder.MakeOut(kStereo, "6", command));
    const Decoded good = folder.Decode("out");
    std::string bytes = folder.Bytes("out");
    WriteBytes(folder.File("cut"), bytes.substr(0, bytes.size() * 2 / 3));
    for (std::size_t i = 0; i < 5000; ++i) bytes[bytes.size() / 2 + i] = static_cast<char>(i * 37);
    WriteBytes(folder.File("bad"), bytes);
    const Decoded bad = folder.Decode("bad"), cut = folder.Decode("cut");
    EXPECT_EQ(bad.error + cut.error, "");
    EXPECT_EQ(bad.stated, good.stated);
    ASSERT_EQ(bad.samples.size(), good.samples.size());
    const auto third = static_cast<std::ptrdiff_t>(good.samples.size() / 3);
    EXPECT_TRUE(std::equal(good.samples.begin(), good.samples.begin() + third, bad.samples.begin()));
    EXPECT_TRUE(std::equal(good.samples.end() - third, good.samples.end(), bad.samples.end() - third));
    ExpectSeeksExact(folder.File("bad"), bad.samples);
    EXPECT_EQ(cut.Frames(), cut.stated);
    EXPECT_NEAR(static_cast<double>(cut.stated), static_cast<double>(good.stated) * 2 / 3, 30000);
    EXPECT_TRUE(std::equal(good.samples.begin(), good.samples.begin() + third, cut.samples.begin()));
  }
}

}  // namespace
}  // namespace qm::test
