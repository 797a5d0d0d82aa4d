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
  const FormatFields eight{.bits = 8}, twenty{.bits = 20}, twentyFour{.bits = 24}, thirtyTwo{.bits = 32},
      real{.tag = 3, .bits = 32}, twice{.tag = 3, .bits = 64},
      padded{.tag = 0xFFFE, .bits = 32, .extra = Extension(24, 1)},
      extensible{.tag = 0xFFFE, .bits = 32, .extra = Extension(32, 3)};
  const struct {
    FormatFields format;
    std::string data;
    std::vector<float> values;
  } rows[] = {
      {eight, {"\x00\x80\xFF\x81", 4}, {-1, 0, 127 / 128.0f, 1 / 128.0f}},
      {{}, {"\x00\x80\xFF\x7F\x01\x00", 6}, {-1, 32767 / 32768.0f, 1 / 32768.0f}},
      {twentyFour, {"\x00\x00\x80\xFF\xFF\x7F\xFF\xFF\xFF", 9}, {-1, 8388607 / 8388608.0f, -1 / 8388608.0f}},
      {twenty, {"\x00\x00\x40\xF0\xFF\x7F", 6}, {0.5f, 524287 / 524288.0f}},  // at the upper end
      {thirtyTwo, {"\x00\x00\x00\x80\x00\x01\x00\x00", 8}, {-1, 1 / 8388608.0f}},
      {padded, {"\x00\xFF\xFF\x7F\x00\x01\x00\x00", 8}, {8388607 / 8388608.0f, 1 / 8388608.0f}},
      {real, Bytes(1.5f) + Bytes(-0.1f), {1.5f, -0.1f}},
      {real, Bytes(nan) + Bytes(infinite) + Bytes(-infinite), {0, 1, -1}},
      {extensible, Bytes(0.25f), {0.25f}},
      {twice, Bytes(0.1) + Bytes(-2.0), {0.1f, -2.0f}}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.format.bits << " bits, tag " << row.format.tag);
    const Decoded decoded = DecodeBytes(Form(Format(row.format) + Chunk("data", row.data)));
    EXPECT_EQ(decoded.error, "");
    EXPECT_EQ(decoded.samples, row.values);
  }
}

TEST(AudioFileWave, FindsTheDataWhateverTheHeaderSays) {
  const std::string format = Format({}), body = "abcdefgh", data = Chunk("data", body);
  const std::string list = Chunk("LIST", "INFOINAM\4\0\0\0abc");
  const std::string longSizes = "ds64" + LittleEndian(28, 4) + LittleEndian(100, 8) + LittleEndian(8, 8) +
                                LittleEndian(4, 8) + LittleEndian(0, 4);
  const struct {
    const char* what;
    std::string bytes;
    std::int64_t frames = 4;
  } rows[] = {
      {"size of a pipe, 0", Form(format + StatedData(0, body))},
      {"size of a pipe, the largest", Form(format + StatedData(0xFFFFFFFF, body))},
      {"size of a pipe, some guess", Form(format + StatedData(0x7FFFF000, body))},
      {"form size 0", "RIFF" + LittleEndian(0, 4) + "WAVE" + format + StatedData(0, body)},
      {"cut in a frame", "RIFF" + LittleEndian(200, 4) + "WAVE" + format + StatedData(100, body + "i")},
      {"no audio, and more chunks", Form(format + Chunk("data", "") + list), 0},
      {"no audio", Form(format + Chunk("data", "")), 0},
      {"chunks on both sides", Form(list + format + list + data + list)},
      {"odd chunk, filled up", Form(Chunk("note", "abc") + format + data)},
      {"odd chunk, not filled up", Form("note" + LittleEndian(3, 4) + "abc" + format + data)},
      {"data before the format", Form(data + format)},
      {"RF64", "RF64" + LittleEndian(0xFFFFFFFF, 4) + "WAVE" + longSizes + format +
                   StatedData(0xFFFFFFFF, body + "tail")},
      {"wrong block size", Form(Format({.blockAlign = 99}) + data)}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const Decoded decoded = DecodeBytes(row.bytes);
    EXPECT_EQ(decoded.error, "");
    EXPECT_EQ(decoded.stated, row.frames);
    ASSERT_EQ(decoded.Frames(), row.frames);
    EXPECT_TRUE(row.frames == 0 || decoded.samples[0] == 0x6261 / 32768.0f);
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

}  // namespace
}  // namespace qm::test
