#include <gmock/gmock.h>

#include <limits>

#include "PeakFileFixture.h"

namespace qm::test {
namespace {

using testing::ElementsAre;

class PeakFileTest : public PeakFileFixture {
 protected:
  PeakFileTest() { m_scanned = m_peaks.ScanAudioFile(m_audio) == pfeOK; }
  void SetUp() override { ASSERT_TRUE(m_scanned); }

  std::string m_audio = MakeAudio(Ramp16(1200, 2), 2);
  bool m_scanned;
};

TEST_F(PeakFileTest, ValidityFailsByOneDefect) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const double noon = 46090.5, second = 1.0 / 86400;
  const std::tuple<const char*, std::size_t, std::string, bool> rows[] = {
      {"as written", 0, "", true},
      {"the version just below", 0, std::string("\x10\x00\x80\x3F", 4), false},
      {"version 1.000002", 0, FloatBytes(1.000002f), true},
      {"version no number", 0, FloatBytes(nan), false},
      {"one byte more", 12, LittleEndian(4843, 4), false},
      {"5 seconds later", 4, DoubleBytes(noon - 5 * second), true},
      {"6 seconds later", 4, DoubleBytes(noon - 6 * second), false},
      {"5 seconds earlier", 4, DoubleBytes(noon + 5 * second), true},
      {"6 seconds earlier", 4, DoubleBytes(noon + 6 * second), false},
      {"date no number", 4, DoubleBytes(static_cast<double>(nan)), false},
      {"date beyond all", 4, DoubleBytes(1e300), false},
  };
  const std::string whole = ReadBytes(PeakPath());
  for (const auto& [what, position, bytes, valid] : rows) {
    WriteBytes(PeakPath(), std::string(whole).replace(position, bytes.size(), bytes));
    std::string path;
    EXPECT_EQ(m_peaks.CheckPeakFileValid(m_audio, path), valid) << what;
    EXPECT_EQ(path, PeakPath());
  }
  // Rewritten audio is known by the peak file's own date.
  for (const int seconds : {30, 31}) {
    WriteBytes(PeakPath(), whole);
    Patch(PeakPath(), 248, DoubleBytes(noon - seconds * second));
    Patch(PeakPath(), 4, DoubleBytes(0));
    EXPECT_EQ(m_peaks.CheckPeakFileValid(m_audio), seconds == 30) << seconds;
  }
  for (const std::size_t length : {0, 8, 255}) {
    WriteBytes(PeakPath(), whole.substr(0, length));
    EXPECT_FALSE(m_peaks.CheckPeakFileValid(m_audio)) << length;
  }
  WriteBytes(PeakPath(), whole);
  EXPECT_TRUE(m_peaks.CheckPeakFileValid(m_audio, PeakPath()));
  EXPECT_FALSE(m_peaks.CheckPeakFileValid(m_audio, m_temp.File("none.ppk")));
  EXPECT_FALSE(m_peaks.CheckPeakFileValid("", PeakPath()));
  WriteBytes(m_audio, "");
  EXPECT_FALSE(m_peaks.CheckPeakFileValid(m_audio));
}

TEST_F(PeakFileTest, SamplesAreThePointsOfTheFramesAskedFor) {
  const std::tuple<std::int32_t, std::int32_t, std::vector<std::int16_t>> rows[] = {
      // none: refused
      {1, 1200, {0, 1000, 500, 1500}},  // 2.4 points
      {1, 1500, {0, 1000, 500, 1500, 1000, 2000}},
      {251, 500, {0, 1000}},     // half way: to the even point
      {751, 500, {1000, 2000}},  // 1.5
      {1, 250, {}},              // half a point is none
      {1, 750, {0, 1000, 500, 1500}},
      {1001, 5000, {1000, 2000}},  // overlaps the end
      {INT32_MAX, INT32_MAX, {}},
      {-1000, 5000, {}},
      {1, -500, {}},
  };
  for (const auto& [start, count, expected] : rows) {
    const std::vector<std::int16_t> before = {77};
    auto samples = before;
    EXPECT_EQ(m_peaks.GetSamples(start, count, samples), !expected.empty()) << start << " " << count;
    EXPECT_EQ(samples, expected.empty() ? before : expected) << start << " " << count;
  }
  m_peaks.Terminate();
  EXPECT_TRUE(AllPoints().empty());
}

TEST_F(PeakFileTest, DamagedFilesAreReadAsFarAsTheyGo) {
  const std::string whole = ReadBytes(PeakPath());
  const auto with = [&](std::size_t at, const std::string& bytes) {
    return std::string(whole).replace(at, bytes.size(), bytes);
  };
  const std::tuple<const char*, std::string, std::size_t> rows[] = {
      {"cut in the header", whole.substr(0, 20), 0},
      {"half a value", whole.substr(0, 257), 0},
      {"half a point and a byte", whole.substr(0, 261), 2},
      {"interval 0", with(38, LittleEndian(0, 4)), 0},
      {"no channels", with(28, LittleEndian(0, 2)), 0},
      {"many channels", with(28, LittleEndian(0x7FFF, 2)), 6},
  };
  for (const auto& [what, bytes, points] : rows) {
    WriteBytes(PeakPath(), bytes);
    EXPECT_EQ(m_peaks.ReadPeakFile(PeakPath()), pfeOK) << what;
    EXPECT_EQ(AllPoints().size(), points) << what;
    EXPECT_EQ(ReadBytes(PeakPath()), bytes) << what;
  }
  // A file that cannot be read at all is deleted and the points stay.
  WriteBytes(PeakPath(), "");
  for (const std::string& path : {PeakPath(), m_temp.File("none.ppk"), m_temp.File("Peakfiles")})
    EXPECT_EQ(m_peaks.ReadPeakFile(path), pfeOpenDestFileFail) << path;
  EXPECT_TRUE(std::filesystem::is_empty(m_temp.File("Peakfiles")));
  EXPECT_EQ(AllPoints().size(), 6u);
}

TEST_F(PeakFileTest, ReadAudioPeakFileScansWhenItMay) {
  cPeakFile fresh(m_clock);
  EXPECT_EQ(fresh.ReadAudioPeakFile(m_audio, false), pfeOK);
  EXPECT_EQ(fresh.Header().AudioNumberSamples, 1200);
  MakeAudio(Ramp16(700, 1), 1);
  EXPECT_EQ(m_peaks.ReadAudioPeakFile(m_audio, false), pfeInvalidPeakFile);
  EXPECT_EQ(AllPoints().size(), 6u);
  EXPECT_EQ(m_peaks.ReadAudioPeakFile(m_audio, true), pfeOK);
  EXPECT_THAT(AllPoints(), ElementsAre(0, 500));
  EXPECT_EQ(m_peaks.ReadAudioPeakFile(m_temp.File("none.wav"), true), pfeInvalidAudioFile);
}

TEST_F(PeakFileTest, UpdateTakesOverTheAudioFilesDateAndSize) {
  Patch(PeakPath(), 46, "spare bytes of a later version");
  std::string expected = ReadBytes(PeakPath());
  WriteBytes(m_audio, ReadBytes(m_audio) + "x");
  Touch(m_audio, -12 * 3600);
  m_clock->Advance(std::chrono::hours(6));
  EXPECT_EQ(m_peaks.UpdatePeakFileHeader(m_audio), pfeInvalidPeakFile);
  EXPECT_EQ(ReadBytes(PeakPath()), expected);

  std::string path;
  EXPECT_EQ(m_peaks.UpdatePeakFileHeader(m_audio, path, true), pfeOK);
  EXPECT_EQ(path, PeakPath());
  expected.replace(4, 8, DoubleBytes(46090.25)).replace(12, 4, LittleEndian(4845, 4));
  expected.replace(248, 8, DoubleBytes(46091));
  EXPECT_EQ(ReadBytes(PeakPath()), expected);
  EXPECT_TRUE(m_peaks.CheckPeakFileValid(m_audio));
  WriteBytes(m_temp.File("short.ppk"), std::string(255, '\0'));
  EXPECT_EQ(m_peaks.UpdatePeakFileHeader(m_audio, m_temp.File("short.ppk"), true), pfeInvalidPeakFile);
  EXPECT_EQ(m_peaks.UpdatePeakFileHeader("", PeakPath(), true), pfeInvalidAudioFile);
}

}  // namespace
}  // namespace qm::test
