#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "AudioFileChecks.h"

// WAV headers as they are met with, and the values of samples.
namespace qm::test {
namespace {

struct FormatFields {
  std::uint32_t tag = 1, channels = 1, rate = 8000, bits = 16;
  std::uint32_t blockAlign = 0;  // 0: what fits
  std::string extra = {};        // from the size of the extension on
};

std::string Format(const FormatFields& fields) {
  const std::uint32_t block =
      fields.blockAlign ? fields.blockAlign : fields.channels * ((fields.bits + 7) / 8);
  return Chunk("fmt ", LittleEndian(fields.tag, 2) + LittleEndian(fields.channels, 2) +
                           LittleEndian(fields.rate, 4) + LittleEndian(fields.rate * block, 4) +
                           LittleEndian(block, 2) + LittleEndian(fields.bits, 2) + fields.extra);
}

std::string Extension(std::uint32_t validBits, std::uint32_t tag) {
  return LittleEndian(22, 2) + LittleEndian(validBits, 2) + LittleEndian(0, 4) + LittleEndian(tag, 2) +
         std::string("\0\0\0\0\x10\0\x80\0\0\xAA\0\x38\x9B\x71", 14);
}

std::string Form(const std::string& chunks) {
  return Chunk("RIFF", "WAVE" + chunks);
}

// A data chunk whose header states another size than it has.
std::string StatedData(std::uint32_t stated, const std::string& body) {
  return "data" + LittleEndian(stated, 4) + body;
}

template <class T>
std::string Bytes(T value) {
  char raw[sizeof value];
  std::memcpy(raw, &value, sizeof value);
  return {raw, sizeof value};
}

Decoded DecodeBytes(const std::string& bytes) {
  TempFolder folder;
  WriteBytes(folder.File("a.wav"), bytes);
  return DecodeFile(folder.File("a.wav"));
}

TEST(AudioFileWave, GivesTheValuesThatAreStored) {
  const float nan = std::numeric_limits<float>::quiet_NaN(),
              infinite = std::numeric_limits<float>::infinity();
  struct Row {
    const char* what;
    FormatFields format;
    std::string data;
    std::vector<float> values;
  };
  const Row rows[] = {
      {"8 bits have no sign",
       {.bits = 8},
       std::string("\x00\x80\xFF\x81", 4),
       {-1, 0, 127 / 128.0f, 1 / 128.0f}},
      {"16 bits", {}, std::string("\x00\x80\xFF\x7F\x01\x00", 6), {-1, 32767 / 32768.0f, 1 / 32768.0f}},
      {"24 bits",
       {.bits = 24},
       std::string("\x00\x00\x80\xFF\xFF\x7F\xFF\xFF\xFF", 9),
       {-1, 8388607 / 8388608.0f, -1 / 8388608.0f}},
      {"20 bits stand at the upper end of 24",
       {.bits = 20},
       std::string("\x00\x00\x40\xF0\xFF\x7F", 6),
       {0.5f, 524287 / 524288.0f}},
      {"32 bits", {.bits = 32}, std::string("\x00\x00\x00\x80\x00\x01\x00\x00", 8), {-1, 1 / 8388608.0f}},
      {"24 of 32 bits",
       {.tag = 0xFFFE, .bits = 32, .extra = Extension(24, 1)},
       std::string("\x00\xFF\xFF\x7F\x00\x01\x00\x00", 8),
       {8388607 / 8388608.0f, 1 / 8388608.0f}},
      {"float beyond full scale", {.tag = 3, .bits = 32}, Bytes(1.5f) + Bytes(-0.1f), {1.5f, -0.1f}},
      {"float that is no number",
       {.tag = 3, .bits = 32},
       Bytes(nan) + Bytes(infinite) + Bytes(-infinite),
       {0, 1, -1}},
      {"float in an extensible header",
       {.tag = 0xFFFE, .bits = 32, .extra = Extension(32, 3)},
       Bytes(0.25f),
       {0.25f}},
      {"double", {.tag = 3, .bits = 64}, Bytes(0.1) + Bytes(-2.0), {0.1f, -2.0f}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    const Decoded decoded = DecodeBytes(Form(Format(row.format) + Chunk("data", row.data)));
    EXPECT_EQ(decoded.error, "");
    EXPECT_EQ(decoded.samples, row.values);
  }
}

TEST(AudioFileWave, FindsTheDataWhateverTheHeaderSays) {
  const std::string format = Format({}), body = "abcdefgh";
  const std::string list = Chunk("LIST", "INFOINAM\4\0\0\0abc");
  const std::string longSizes = "ds64" + LittleEndian(28, 4) + LittleEndian(100, 8) + LittleEndian(8, 8) +
                                LittleEndian(4, 8) + LittleEndian(0, 4);
  struct Row {
    const char* what;
    std::string bytes;
    std::int64_t frames;
  };
  const Row rows[] = {
      {"plain", Form(format + Chunk("data", body)), 4},
      {"size of a pipe, 0", Form(format + StatedData(0, body)), 4},
      {"size of a pipe, the largest", Form(format + StatedData(0xFFFFFFFF, body)), 4},
      {"size of a pipe, some guess", Form(format + StatedData(0x7FFFF000, body)), 4},
      {"form size 0", "RIFF" + LittleEndian(0, 4) + "WAVE" + format + StatedData(0, body), 4},
      {"cut in the middle of a frame",
       "RIFF" + LittleEndian(200, 4) + "WAVE" + format + StatedData(100, body + "i"), 4},
      {"no audio, and more chunks", Form(format + Chunk("data", "") + list), 0},
      {"no audio", Form(format + Chunk("data", "")), 0},
      {"chunks on both sides", Form(list + format + list + Chunk("data", body) + list), 4},
      {"odd chunk, filled up", Form(Chunk("note", "abc") + format + Chunk("data", body)), 4},
      {"odd chunk, not filled up", Form("note" + LittleEndian(3, 4) + "abc" + format + Chunk("data", body)),
       4},
      {"data before the format", Form(Chunk("data", body) + format), 4},
      {"RF64",
       "RF64" + LittleEndian(0xFFFFFFFF, 4) + "WAVE" + longSizes + format +
           StatedData(0xFFFFFFFF, body + "tail"),
       4},
      {"block size 0", Form(Format({.blockAlign = 99}) + Chunk("data", body)), 4},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    const Decoded decoded = DecodeBytes(row.bytes);
    EXPECT_EQ(decoded.error, "");
    EXPECT_EQ(decoded.stated, row.frames);
    EXPECT_EQ(decoded.Frames(), row.frames);
    if (row.frames > 0 && !decoded.samples.empty()) {
      EXPECT_EQ(decoded.samples[0], 0x6261 / 32768.0f);
    }
  }
}

TEST(AudioFileWave, ReadsBeyondFourGigabytes) {
  TempFolder folder;
  const std::string path = folder.File("long.wav");
  const std::int64_t frames = 5'000'000'000 / 2;
  const std::string head = "RF64" + LittleEndian(0xFFFFFFFF, 4) + "WAVEds64" + LittleEndian(28, 4) +
                           LittleEndian(5'000'000'072, 8) + LittleEndian(5'000'000'000, 8) +
                           LittleEndian(static_cast<std::uint64_t>(frames), 8) + LittleEndian(0, 4) +
                           Format({}) + StatedData(0xFFFFFFFF, "");
  WriteBytes(path, head);
  const auto length = static_cast<off_t>(head.size()) + frames * 2;
  ASSERT_EQ(truncate(path.c_str(), length - 2), 0);  // a hole, which takes no room
  std::ofstream(path, std::ios::binary | std::ios::app).write("\1\0", 2);
  cAudioFile file;
  ASSERT_EQ(file.OpenForRead(path), 0) << file.ErrorText();
  EXPECT_EQ(file.NumberSamples(), frames);
  EXPECT_EQ(file.LengthMilliseconds(), static_cast<double>(frames) / 8);
  ASSERT_TRUE(file.Seek(frames - 2));
  std::vector<std::int16_t> samples;
  file.ReadSamples(100, samples);
  EXPECT_EQ(samples, (std::vector<std::int16_t>{0, 1}));
}

TEST(AudioFileWave, ReadsWhatASpeechProgramWritesIntoAPipe) {
  TempFolder folder;
  ASSERT_TRUE(RunCommand("espeak-ng --stdout 'one two three' > " + Quoted(folder.File("speech.wav"))));
  const Decoded decoded = DecodeFile(folder.File("speech.wav"));
  EXPECT_EQ(decoded.error, "");
  const auto bytes = static_cast<std::int64_t>(ReadBytes(folder.File("speech.wav")).size());
  EXPECT_EQ(decoded.stated, (bytes - 44) / 2);
  EXPECT_EQ(decoded.Frames(), decoded.stated);
}

TEST(AudioFileWave, SixteenBitReadingRoundsToEvenAndClips) {
  const float step = 1.0f / 32768;
  std::string data;
  for (float value :
       {0.5f * step, 1.5f * step, -2.5f * step, 0.51f * step, 1.0f, -1.0f, 7.0f, -7.0f, 1 - step / 4})
    data += Bytes(value);
  TempFolder folder;
  WriteBytes(folder.File("a.wav"), Form(Format({.tag = 3, .bits = 32}) + Chunk("data", data)));
  cAudioFile file;
  ASSERT_EQ(file.OpenForRead(folder.File("a.wav")), 0) << file.ErrorText();
  std::vector<std::int16_t> samples;
  file.ReadSamples(1000, samples);
  EXPECT_EQ(samples, (std::vector<std::int16_t>{0, 2, -2, 1, 32767, -32768, 32767, -32768, 32767}));
  file.ReadSamples(1000, samples);
  EXPECT_TRUE(samples.empty());
  EXPECT_EQ(file.LastError(), 0);
}

TEST(AudioFileWave, AdaptiveCodingsSeekToTheSample) {
  for (const char* coding : {"ms-adpcm", "ima-adpcm"}) {
    SCOPED_TRACE(coding);
    TempFolder folder;
    ASSERT_TRUE(RunCommand("cd " + Quoted(folder.Path()) +
                           " && sox -n -r 22050 -c 2 -b 16 in.wav synth 3.3 pinknoise && "
                           "sox in.wav -e " +
                           coding + " out.wav && ffmpeg -i out.wav -f f32le ref.raw"));
    const Decoded decoded = DecodeFile(folder.File("out.wav"));
    ASSERT_EQ(decoded.error, "");
    EXPECT_EQ(decoded.stated, 72765);
    const std::string reference = ReadBytes(folder.File("ref.raw"));
    ASSERT_GE(reference.size(), decoded.samples.size() * 4);  // it gives the last block's filling as well
    EXPECT_EQ(std::memcmp(reference.data(), decoded.samples.data(), decoded.samples.size() * 4), 0);
    cAudioFile file;
    file.AllowCompressedOpen(true);
    ASSERT_EQ(file.OpenForRead(folder.File("out.wav")), 0);
    float frame[2];
    for (std::int64_t place : {72764, 0, 1, 1011, 1012, 1013, 40000}) {
      ASSERT_TRUE(file.Seek(place));
      ASSERT_EQ(file.ReadFrames(frame, 1), 1u);
      EXPECT_EQ(frame[0], decoded.samples[static_cast<std::size_t>(place) * 2]) << place;
    }
  }
}

}  // namespace
}  // namespace qm::test
