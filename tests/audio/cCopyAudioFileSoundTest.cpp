#include <gmock/gmock.h>

#include <algorithm>
#include <numbers>
#include <numeric>

#include "CopyFixture.h"

// What a copy does to the sound itself.
namespace qm::test {
namespace {

using cCopyAudioFileSoundTest = CopyFixture;

// Frames of any bytes in a WAV file of a format.
std::string WavOf(std::uint32_t tag, std::uint32_t bits, const std::string& data,
                  std::uint32_t validBits = 0) {
  const std::uint32_t align = 2 * bits / 8;
  std::string format = LittleEndian(validBits ? 0xFFFE : tag, 2) + LittleEndian(2, 2) +
                       LittleEndian(48000, 4) + LittleEndian(48000 * align, 4) + LittleEndian(align, 2) +
                       LittleEndian(bits, 2);
  if (validBits)
    format += LittleEndian(22, 2) + LittleEndian(validBits, 2) + LittleEndian(3, 4) + LittleEndian(tag, 2) +
              std::string("\0\0\0\0\x10\0\x80\0\0\xAA\0\x38\x9B\x71", 14);
  return Chunk("RIFF", "WAVE" + Chunk("fmt ", format) + Chunk("data", data));
}

std::string DataOf(const std::string& path) {
  const std::string bytes = ReadBytes(path);
  const std::size_t data = bytes.find("data");
  return data == bytes.npos ? "" : bytes.substr(data + 8);
}

TEST_F(cCopyAudioFileSoundTest, TheSameFormatKeepsEveryBit) {
  std::string noise, floats, doubles, wide, narrow;
  for (std::int16_t value : Noise16(48000 * 12)) noise += static_cast<char>(value >> 5);
  for (float value : Sine(48000, 48000, 2, 440, 3)) {
    floats += LittleEndian(std::bit_cast<std::uint32_t>(value), 4);
    doubles += LittleEndian(std::bit_cast<std::uint64_t>(value * 1.0000001), 8);
  }
  for (std::int16_t value : Noise16(48000)) {
    narrow += LittleEndian(static_cast<std::uint32_t>(value * 77), 3);
    wide += '\0' + narrow.substr(narrow.size() - 3);
  }
  const std::tuple<std::string, std::string> rows[] = {
      {WavOf(1, 8, noise), noise},     {WavOf(1, 16, noise), noise},   {WavOf(1, 24, noise), noise},
      {WavOf(1, 32, noise), noise},    {WavOf(3, 32, floats), floats}, {WavOf(3, 64, doubles), doubles},
      {WavOf(1, 32, wide, 24), narrow}};
  for (const auto& [source, data] : rows) {
    WriteBytes(m_temp.File("a.wav"), source);
    ASSERT_EQ(m_copier.CopyAudioFile(m_temp.File("a.wav"), m_out, nullptr), 0);
    EXPECT_TRUE(DataOf(m_out) == data) << &data - &std::get<1>(rows[0]);
  }
}

TEST_F(cCopyAudioFileSoundTest, WhatIsNoAudioDoesNoHarm) {
  std::vector<float> samples(9000, 0.25f);
  samples[100] = std::numeric_limits<float>::quiet_NaN();
  samples[200] = std::numeric_limits<float>::infinity();
  samples[300] = -std::numeric_limits<float>::infinity();
  samples[400] = 3e38f;
  std::string data;
  for (float value : samples) data += LittleEndian(std::bit_cast<std::uint32_t>(value), 4);
  WriteBytes(m_temp.File("a.wav"), WavOf(3, 32, data));
  const auto into = [&](std::int32_t rate, std::int32_t channels) {
    EXPECT_EQ(m_copier.CopyAudioFile(m_temp.File("a.wav"), m_out, WavFormat(rate, channels, wftFloat)), 0);
    return DecodeFile(m_out).samples;
  };
  auto expected = samples;
  expected[100] = 0;
  expected[200] = 1;
  expected[300] = -1;
  EXPECT_EQ(into(48000, 2), expected);
  const auto resampled = into(44100, 1);
  ASSERT_EQ(resampled.size(), 4134u);
  for (float value : resampled) ASSERT_TRUE(std::isfinite(value) && std::fabs(value) < 100000) << value;
  EXPECT_NEAR(resampled[3000], 0.25, 1e-3);
  m_copier.SetNormalise(true);
  EXPECT_EQ(PeakOf(into(48000, 2)), 1);
}

TEST_F(cCopyAudioFileSoundTest, ChannelsAreSpreadAndAveraged) {
  const double side = 1 / std::numbers::sqrt2, all = 1 + 2 * side;
  const std::tuple<std::vector<float>, std::int32_t, std::vector<double>> rows[] = {
      {{0.5f}, 2, {0.5, 0.5}},
      {{0.5f, -0.25f}, 1, {0.125}},
      {{0.25f, 0.5f, 0.125f, 1, -0.5f, 0.75f},
       2,
       {(0.25 + (0.125 - 0.5) * side) / all, (0.5 + (0.125 + 0.75) * side) / all}}};
  for (const auto& [frame, channels, expected] : rows) {
    WriteFloat("a.wav", frame, 8000, static_cast<std::int32_t>(frame.size()));
    ASSERT_EQ(m_copier.CopyAudioFile(m_temp.File("a.wav"), m_out, WavFormat(8000, channels, wftFloat)), 0);
    EXPECT_THAT(DecodeFile(m_out).samples, testing::Pointwise(testing::DoubleNear(1e-6), expected));
  }
}

TEST_F(cCopyAudioFileSoundTest, NormalisingReachesThePercentageAndNeverClips) {
  const auto quiet = Noise16(3 * 8000, 0.1);
  const std::string source = Write16("a.wav", quiet);
  const auto [least, most] = std::ranges::minmax(quiet);
  const int peak = std::max(-least, +most);
  m_copier.SetNormalise(true);
  for (const float percent : {0.5f, 50.0f, 500.0f, 100.0f}) {
    m_copier.SetNormalisePercentage(percent);
    ASSERT_EQ(m_copier.CopyAudioFile(source, m_out, nullptr), 0);
    const double gain = std::min(percent / 100 * 32768.0, percent > 100 ? 1e9 : 32767.0) / peak;
    const auto written = Read16(m_out);
    ASSERT_EQ(written.size(), quiet.size());
    for (std::size_t i = 0; i < quiet.size(); ++i)
      ASSERT_NEAR(written[i], std::clamp(quiet[i] * gain, -32768.0, 32767.0), 0.51) << percent << " " << i;
  }
  // What stands at full scale already is left alone.
  const std::string once = DataOf(m_out);
  ASSERT_EQ(m_copier.CopyAudioFile(m_out, m_out, nullptr), 0);
  EXPECT_TRUE(DataOf(m_out) == once);
  const std::vector<std::int16_t> silence(20000);
  ASSERT_EQ(m_copier.CopyAudioFile(Write16("b.wav", silence), m_out, WavFormat(8000, 1)), 0);
  EXPECT_EQ(Read16(m_out), silence);
}

// A full-scale tone whose crests lie between the samples at the old rate, and on them at the new one.
TEST_F(cCopyAudioFileSoundTest, NormalisingMeasuresWhatIsWritten) {
  std::vector<float> tone(48000);
  for (std::size_t i = 0; i < tone.size(); ++i)
    tone[i] = static_cast<float>(0.5 * std::sin(std::numbers::pi * (0.5 * static_cast<double>(i) + 0.25)));
  m_copier.SetNormalise(true);
  const std::string source = WriteFloat("a.wav", tone, 48000);
  ASSERT_EQ(m_copier.CopyAudioFile(source, m_out, WavFormat(96000, 1, wftFloat)), 0);
  EXPECT_NEAR(PeakOf(DecodeFile(m_out).samples), 1, 1e-6);
}

// Measured against the tone itself at the new rate, or against silence where it has no place there.
TEST_F(cCopyAudioFileSoundTest, ResamplingLeavesNoiseAndAliasBelowHearing) {
  const std::tuple<std::int32_t, std::int32_t, std::int32_t, double, double, double> rows[] = {
      {44100, 48000, wftFloat, 997, 0.9, 2e-6},   {44100, 48000, wftFloat, 19997, 0.9, 2e-6},
      {48000, 44100, wftFloat, 19000, 0.9, 2e-6}, {96000, 44100, wftFloat, 40000, 0, 2e-6},
      {48000, 44100, wftFloat, 23000, 0, 2e-6},   {44100, 8000, wftFloat, 6000, 0, 2e-6},
      {11025, 96000, wftFloat, 4999, 0.9, 2e-6},  {44100, 48000, wftPCM, 997, 0.9, 2e-5}};
  for (const auto& [from, to, tag, hertz, amplitude, most] : rows) {
    const std::string source = WriteFloat("a.wav", Sine(from, 60000, 1, hertz, 0.9), from);
    ASSERT_EQ(m_copier.CopyAudioFile(source, m_out, WavFormat(to, 1, tag)), 0);
    const auto samples = DecodeFile(m_out).samples;
    ASSERT_EQ(samples.size(), static_cast<std::size_t>(std::nearbyint(60000.0 * to / from)));
    const auto expected = Sine(to, samples.size(), 1, hertz, amplitude);
    // The filters may lower the tone by a trifle.
    const auto energy = [&](const auto& other) {
      return std::inner_product(expected.begin() + 2000, expected.end() - 2000, other.begin() + 2000, 0.0);
    };
    const double gain = amplitude == 0 ? 1 : energy(samples) / energy(expected);
    EXPECT_NEAR(gain, 1, 0.002);
    double worst = 0;
    for (std::size_t i = 2000; i + 2000 < samples.size(); ++i)
      worst = std::max(worst, std::fabs(samples[i] - gain * expected[i]));
    EXPECT_LT(worst, most) << from << " " << to << " " << hertz;
  }
}

TEST_F(cCopyAudioFileSoundTest, EveryTypeIsReadAndWritten) {
  const std::tuple<std::int32_t, std::int32_t, const char*, std::string> types[] = {
      {aftWAV, 1, "a.wav", "pcm_s16le"}, {aftMP3, 0, "a.mp3", "mp3"}, {aftOgg, 0, "a.ogg", "vorbis"},
      {aftWMA, 0, "a.wma", "wmav2"},     {aftMP2, 0, "a.mp2", "mp2"}, {aftWAV, 0x50, "b.wav", "mp2"},
      {aftWAV, 0x55, "c.wav", "mp3"}};
  std::string source = WriteFloat("source.wav", Sine(48000, 100000, 1, 997, 0.5), 48000);
  for (const auto& [type, tag, name, codec] : types) {
    auto format = WavFormat(44100, 2, tag);
    format->SetFormatType(type);
    format->SetBitRate(192000);
    const std::string path = m_temp.File(name);
    ASSERT_EQ(m_copier.CopyAudioFile(source, path, format), 0) << name << m_copier.LastErrorDetail();
    EXPECT_TRUE(
        RunCommand("test \"$(ffprobe -v error -show_entries stream=codec_name,sample_rate,channels "
                   "-of csv=p=0 " +
                   Quoted(path) + ")\" = " + codec + ",44100,2"))
        << name;
    const Decoded decoded = DecodeFile(path);
    EXPECT_GE(decoded.Frames(), 91875) << name;
    EXPECT_LE(decoded.Frames(), 91875 + (type == aftMP2 || tag > 1 ? 9216 : 0))
        << name;  // these may add frames
    EXPECT_NEAR(PeakOf({decoded.samples.begin() + 40000, decoded.samples.begin() + 80000}), 0.5, 0.03)
        << name;
    source = path;  // the next type is made of this one
  }
}

}  // namespace
}  // namespace qm::test
