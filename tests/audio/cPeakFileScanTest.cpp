#include <gmock/gmock.h>

#include <array>

#include "PeakFileFixture.h"
#include "kits/sound/cAudioFile.h"

namespace qm::test {
namespace {

using testing::ElementsAre;

using PeakFileScanTest = PeakFileFixture;

TEST_F(PeakFileScanTest, WritesEveryByteOfTheFile) {
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

TEST_F(PeakFileScanTest, PointsPerLengthAndChannels) {
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
TEST_F(PeakFileScanTest, PointsAreTheFirstFramesOfBlocksInEveryType) {
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

TEST_F(PeakFileScanTest, ProgressComesWithEachWholePercentOfAScanThatIsNeeded) {
  const std::string audio = MakeAudio(Ramp16(200 * 500), 1);
  std::string expected = "start ";
  for (int percent = 1; percent <= 100; ++percent) expected += std::to_string(percent) + " ";
  expected += "100 end0 ";
  ASSERT_EQ(cPeakFile(m_clock).ScanAudioFile(audio), pfeOK);
  EXPECT_EQ(m_peaks.ScanAudioFile(audio), pfeOK);
  EXPECT_EQ(m_events, "");
  EXPECT_TRUE(AllPoints().empty()) << "a valid file is neither scanned nor loaded";
  EXPECT_EQ(m_peaks.ScanAudioFile(audio, "", true), pfeOK);
  EXPECT_EQ(m_events, expected);
}

TEST_F(PeakFileScanTest, CancelledFromAnyEventItLeavesNoFile) {
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

TEST_F(PeakFileScanTest, AudioThatBreaksOffGivesThePointsSoFar) {
  const std::string audio = MakeAudio(Ramp16(2000), 1);
  m_peaks.events.ScanAudioStart.connect([&] { std::filesystem::resize_file(audio, 44 + 2 * 700); });
  EXPECT_EQ(m_peaks.ScanAudioFile(audio), pfeOK);
  EXPECT_THAT(AllPoints(), ElementsAre(0, 500));
}

TEST_F(PeakFileScanTest, RefusalsRaiseNoEventsAndLeaveNothing) {
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

}  // namespace
}  // namespace qm::test
