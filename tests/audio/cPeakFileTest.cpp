#include "audio/cPeakFile.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <bit>
#include <limits>

#include "TraceFixture.h"
#include "kits/sound/cAudioFile.h"

namespace qm::test {
namespace {

using testing::ElementsAre;

// A peak file object whose events are kept as text, and audio files written at 12:00 on the day of the clock.
class PeakFileScan : public TraceFixture {
 protected:
  PeakFileScan() {
    m_peaks.events.ScanAudioStart.connect([this] { m_events += "start "; });
    m_peaks.events.ScanAudioProgress.connect(
        [this](int percent) { m_events += std::to_string(percent) + " "; });
    m_peaks.events.ScanAudioEnd.connect(
        [this] { m_events += "end" + std::to_string(m_peaks.LastErrorCode()) + " "; });
  }

  std::string MakeAudio(const std::vector<std::int16_t>& samples, std::uint32_t channels,
                        const char* name = "a.wav") {
    WriteBytes(m_temp.File(name), Wav16(samples, 44100, channels));
    Touch(m_temp.File(name), -6 * 3600);
    return m_temp.File(name);
  }

  // Sets when a file was written, in seconds from the clock's time.
  void Touch(const std::string& path, int seconds) const {
    std::filesystem::last_write_time(
        path, std::chrono::file_clock::from_sys(m_clock->Now() + std::chrono::seconds(seconds)));
  }

  std::string PeakPath(const char* name = "a") const {
    return m_temp.File("Peakfiles/" + std::string(name) + ".ppk");
  }

  std::vector<std::int16_t> AllPoints() const {
    std::vector<std::int16_t> points;
    m_peaks.GetSamples(1, INT32_MAX, points);
    return points;
  }

  std::string m_events;
  cPeakFile m_peaks{m_clock};
};

std::string FloatBytes(float value) {
  return LittleEndian(std::bit_cast<std::uint32_t>(value), 4);
}
std::string DoubleBytes(double value) {
  return LittleEndian(std::bit_cast<std::uint64_t>(value), 8);
}

TEST_F(PeakFileScan, WritesEveryByteOfTheFile) {
  auto samples = Ramp16(1200, 2);
  samples[500 * 2] = -32768;
  samples[999 * 2] = 32000;  // between two points
  const std::string audio = MakeAudio(samples, 2);
  std::string path;
  ASSERT_EQ(m_peaks.ScanAudioFile(audio, path), pfeOK);
  EXPECT_EQ(path, PeakPath());

  const std::string header(
      "\x11\x00\x80\x3F"                  // HeaderVersion
      "\x00\x00\x00\x00\x50\x81\xE6\x40"  // AudioLastModified: day 46090, noon
      "\xEC\x12\x00\x00"                  // AudioFileSize 4844
      "\x00\x00\x00\x00\x00\xC0\x92\x40"  // AudioNumberSamples 1200
      "\x44\xAC\x00\x00"                  // AudioSampleRate 44100
      "\x02\x00"                          // AudioChannels
      "\x00\x00\x00\x00\x00\x00\x08\x40"  // NumberPeakSamples 3
      "\xF4\x01\x00\x00"                  // SamplingInterval 500
      "\xFF\x7F"                          // MaxLeftLevel 32767
      "\xD0\x07",                         // MaxRightLevel 2000
      46);
  const std::string date("\x00\x00\x00\x00\x58\x81\xE6\x40", 8);  // PeakFileDate: day 46090, 18:00
  const std::string points("\x00\x00\xE8\x03\x00\x80\xDC\x05\xE8\x03\xD0\x07", 12);
  EXPECT_EQ(ReadBytes(path), header + std::string(202, '\0') + date + points);

  EXPECT_EQ(m_events, "start 42 83 100 end0 ");
  EXPECT_FALSE(m_peaks.Scanning());
  EXPECT_THAT(AllPoints(), ElementsAre(0, 1000, -32768, 1500, 1000, 2000));
}

TEST_F(PeakFileScan, PointsPerLengthAndChannels) {
  for (const auto& [frames, channels, points] :
       {std::array{1u, 1u, 1u}, {500, 2, 1}, {501, 1, 2}, {1001, 3, 3}}) {
    auto samples = Ramp16(frames, channels);
    for (auto& sample : samples) sample = static_cast<std::int16_t>(-sample);
    ASSERT_EQ(m_peaks.ScanAudioFile(MakeAudio(samples, channels), "", true), pfeOK);
    const qmPeakFileHeader header = m_peaks.Header();
    EXPECT_EQ(header.NumberPeakSamples, points) << frames;
    EXPECT_EQ(std::filesystem::file_size(PeakPath()), 256 + 2 * points * std::min(channels, 2u)) << frames;
    EXPECT_EQ(header.MaxLeftLevel, (points - 1) * 500) << frames;
    EXPECT_EQ(header.MaxRightLevel, channels == 1 ? 0 : (points - 1) * 500 + 1000) << frames;
  }
}

// The contract of a scan: what reading block by block gives.
TEST_F(PeakFileScan, PointsAreTheFirstFramesOfBlocksInEveryType) {
  for (const std::int32_t mode : {ecmWAV, ecmMP3, ecmOgg, ecmWMA}) {
    cAudioFile audio;
    audio.SetWAVSettings(44100, 2, 32, wftFloat);
    audio.SetWMAProfile("44100,2,128000");
    const std::string path = m_temp.File("audio");
    ASSERT_EQ(audio.CreateFile(path, mode), 0) << audio.ErrorText();
    ASSERT_EQ(audio.WriteSamples(Noise16(2 * 70001, 0.9).data(), 70001), 0);
    ASSERT_EQ(audio.Close(), 0);
    audio.AllowCompressedOpen(true);
    ASSERT_EQ(audio.OpenForRead(path), 0);
    std::vector<std::int16_t> expected, block;
    for (audio.ReadSamples(500, block); !block.empty(); audio.ReadSamples(500, block))
      expected.insert(expected.end(), block.begin(), block.begin() + 2);
    ASSERT_EQ(m_peaks.ScanAudioFile(path, "", true), pfeOK);
    EXPECT_EQ(AllPoints(), expected) << mode;
  }
}

TEST_F(PeakFileScan, ProgressComesWithEachWholePercentOfWhatIsNeededAndThere) {
  const std::string audio = MakeAudio(Ramp16(200 * 500), 1);
  ASSERT_EQ(cPeakFile(m_clock).ScanAudioFile(audio), pfeOK);
  EXPECT_EQ(m_peaks.ScanAudioFile(audio), pfeOK);
  EXPECT_EQ(m_events, "");
  EXPECT_TRUE(AllPoints().empty()) << "a valid file is neither scanned nor loaded";
  EXPECT_EQ(m_peaks.ScanAudioFile(audio, "", true), pfeOK);
  EXPECT_EQ(std::ranges::count(m_events, ' '), 103) << m_events;
  // Audio that breaks off gives the points so far.
  m_peaks.events.ScanAudioStart.connect([&] { std::filesystem::resize_file(audio, 44 + 2 * 700); });
  EXPECT_EQ(m_peaks.ScanAudioFile(audio, "", true), pfeOK);
  EXPECT_EQ(AllPoints().size(), 2u);
}

TEST_F(PeakFileScan, CancelledFromAnyEventItLeavesNoFile) {
  const std::string audio = MakeAudio(Ramp16(1200), 1), old = m_temp.File("old.ppk");
  int at = 0;  // per cent; -1 for the start
  const auto cancel = [&](int percent) {
    if (percent == at) m_peaks.CancelScanning();
  };
  m_peaks.events.ScanAudioStart.connect([&] { cancel(-1); });
  m_peaks.events.ScanAudioProgress.connect(cancel);
  for (const auto& [percent, events] :
       {std::pair{-1, "start end-255 "}, {42, "start 42 end-255 "}, {100, "start 42 83 100 end-255 "}}) {
    WriteBytes(old, "the one before");
    at = percent;
    m_events.clear();
    EXPECT_EQ(m_peaks.ScanAudioFile(audio, old, true), pfeCancelled);
    EXPECT_EQ(m_events, events);
    EXPECT_EQ(m_peaks.LastErrorDescription(), "The process was cancelled");
    EXPECT_FALSE(m_peaks.Scanning());
    EXPECT_FALSE(std::filesystem::exists(old));
  }
  // The next scan starts afresh; a request without a scan costs the file read next.
  at = 0;
  EXPECT_EQ(m_peaks.ScanAudioFile(audio), pfeOK);
  m_peaks.CancelScanning();
  EXPECT_EQ(m_peaks.ReadPeakFile(PeakPath()), pfeOK);
  EXPECT_THAT(AllPoints(), ElementsAre(0, 500, 1000));
  EXPECT_FALSE(std::filesystem::exists(PeakPath()));
}

TEST_F(PeakFileScan, RefusalsRaiseNoEventsAndLeaveNothing) {
  const std::string audio = MakeAudio(Ramp16(1200), 1);
  WriteBytes(m_temp.File("text.wav"), "no audio");
  std::filesystem::create_directories(m_temp.File("folder.ppk"));
  const struct {
    std::string audio, peaks;
    enPeakFileErr result;
    const char *brief, *user;
  } rows[] = {
      {"", "", pfeInvalidAudioFile, "The Audio file was invalid", "The audio file was not valid"},
      // Where the folder cannot be made, the last error stays.
      {audio, audio + "/x.ppk", pfeOpenDestFileFail, "The Audio file was invalid",
       "The audio file was not valid"},
      {m_temp.File("text.wav"), "", pfeOpenAudioFileFail, "The Audio file could not be opened",
       "The audio file could not be opened"},
      {audio, m_temp.File("folder.ppk"), pfeOpenDestFileFail, "The destination file could not be created",
       "The waveform peak file could not be opened"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(m_peaks.ScanAudioFile(row.audio, row.peaks, true), row.result) << row.audio << row.peaks;
    EXPECT_EQ(m_peaks.GetLastErrorDescription(), row.brief);
    EXPECT_EQ(m_peaks.LastErrorDescription(), row.user);
  }
  EXPECT_EQ(m_events, "");
  EXPECT_FALSE(m_peaks.Scanning());
  EXPECT_TRUE(std::filesystem::is_empty(m_temp.File("Peakfiles")));
}

class PeakFileTest : public PeakFileScan {
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
    WriteBytes(PeakPath(), std::string(whole)
                               .replace(4, 8, DoubleBytes(0))
                               .replace(248, 8, DoubleBytes(noon - seconds * second)));
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
  std::string expected = ReadBytes(PeakPath()).replace(46, 5, "spare");  // bytes of a later version
  WriteBytes(PeakPath(), expected);
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
