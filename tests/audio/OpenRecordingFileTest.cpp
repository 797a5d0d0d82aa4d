#include <gmock/gmock.h>

#include "TraceFixture.h"
#include "audio/AudioFileService.h"
#include "kits/sound/Platform.h"
#include "kits/sound/cAudioFormat.h"

namespace qm::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::MatchesRegex;

class OpenRecordingFileTest : public TraceFixture {
 protected:
  bool Open(const std::string& formatText, bool silent = false) {
    auto format = std::make_shared<cAudioFormat>();
    format->SetSerialisedFormat(formatText);
    return OpenRecordingFile(m_path, format, silent, m_platform);
  }

  std::string m_path = m_temp.File("a.rec");
  Platform m_platform{m_clock, nullptr, m_box, nullptr};
};

TEST_F(OpenRecordingFileTest, MakesAnEmptyFileOfTheFormat) {
  const std::tuple<const char*, const char*, std::string> rows[] = {
      {"FormatType=WAV SampleRate=32000 Channels=1 WAVFormatTag=1", "1", "pcm_s16le,32000,1"},
      {"FormatType=Ogg SampleRate=48000 Channels=1 BitRate=96000", "4", "vorbis,48000,1"},
      {"FormatType=WMA WMAProfile=\"32000,1,48000\"", "11", "wmav2,32000,1"},
      {"FormatType=MP3 SampleRate=44100 Channels=2 BitRate=128000", "2", ""},
      {"FormatType=MP2 SampleRate=48000 Channels=2 BitRate=192000", "12", ""},
  };
  for (const auto& [format, mode, codec] : rows) {
    WriteBytes(m_path, "an old recording");
    ASSERT_TRUE(Open(format)) << format;
    EXPECT_THAT(TakeTrace(), EndsWith("    Opening Audio File - Format Number " + std::string(mode) +
                                      "|    Close the audio file|Finish CreateAudioFile|"));
    EXPECT_NE(ReadBytes(m_path), "an old recording");
    // Empty MPEG audio has no header to ask.
    EXPECT_TRUE(codec.empty() ||
                RunCommand("test \"$(ffprobe -v error -show_entries stream=codec_name,sample_rate,channels "
                           "-of csv=p=0 " +
                           Quoted(m_path) + ")\" = " + codec))
        << format;
  }
  EXPECT_THAT(m_box->shown, IsEmpty());
}

TEST_F(OpenRecordingFileTest, WithoutAFormatThereIsAMessageUnlessSilent) {
  for (const bool silent : {true, false}) {
    EXPECT_FALSE(OpenRecordingFile("x.wav", nullptr, silent, m_platform));
    EXPECT_EQ(m_box->shown.empty(), silent);
    EXPECT_THAT(TakeTrace(), EndsWith("|Exit as no AudioFormat set|"));
  }
  EXPECT_THAT(m_box->shown,
              ElementsAre("There was a problem creating the file 'x.wav' becuase no Audio Format "
                          "has been specified"));
}

TEST_F(OpenRecordingFileTest, WhatCannotBeWrittenIsFoundWhenItIsOpened) {
  WriteBytes(m_path, "old");
  EXPECT_TRUE(Open("FormatType=WAV SampleRate=44100 Channels=2 WAVFormatTag=85"));
  EXPECT_EQ(TakeTrace(),
            "Start OpenRecordingFile|    Start CreateAudioFile|"
            "    Exit CreateAudioFile (acmFormatTagDetails failed. rc = 512|"
            "    Opening Audio File - Format Number 0|Finish CreateAudioFile|");
  EXPECT_TRUE(Open("FormatType=Other"));
  EXPECT_FALSE(std::filesystem::exists(m_path));
}

TEST_F(OpenRecordingFileTest, AReadOnlyFileStaysAndARefusedFormatIsReportedWithItsReason) {
  EXPECT_FALSE(Open("FormatType=MP3 SampleRate=1 Channels=2 BitRate=128000", true));
  const std::string problem = "There was a problem ",
                    reason = " and the error's description was reported as : \"";
  EXPECT_THAT(TakeTrace(), MatchesRegex(".*" + problem + "creating the new audio file " + m_path + reason +
                                        "[^|\"]+\"\\|Exit with File Create error [^|]+\\|"));
  EXPECT_THAT(m_box->shown, IsEmpty());
  WriteBytes(m_path, "kept");
  std::filesystem::permissions(m_path, std::filesystem::perms::owner_read);
  EXPECT_FALSE(Open("FormatType=MP3 SampleRate=44100 Channels=2 BitRate=128000"));
  EXPECT_EQ(ReadBytes(m_path), "kept");
  const std::string message =
      problem + "deleting the old file to record over" + reason + "the file is read-only\"";
  EXPECT_THAT(m_box->shown, ElementsAre(message));
  EXPECT_EQ(TakeTrace(),
            "Start OpenRecordingFile|    " + message + "|Exit as couldn't delete old File " + m_path + "|");
}

}  // namespace
}  // namespace qm::test
