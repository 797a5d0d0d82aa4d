#include "audio/AudioFileService.h"

#include <gmock/gmock.h>

#include "TraceFixture.h"
#include "kits/sound/Platform.h"
#include "kits/sound/cAudioFormat.h"

namespace qm::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::MatchesRegex;

TEST(AudioFileTypes, NamesAndNumbersBelongTogether) {
  const std::tuple<const char*, std::int32_t, const char*> rows[] = {{"A.B.WAV", 2, "wav"},
                                                                     {"c:\\x.y\\a.Mp3", 4, "mp3"},
                                                                     {"/x/a.ogg", 8, "ogg"},
                                                                     {"a.wma", 16, "wma"},
                                                                     {"a.MP2", 32, "mp2"},
                                                                     {"a", 1, ""},
                                                                     {"", 1, ""},
                                                                     {"folder.wav/a", 1, ""},
                                                                     {".wav", 1, ""},
                                                                     {"a.wave", 1, ""},
                                                                     {"a.", 1, ""}};
  for (const auto& [path, type, extension] : rows) {
    EXPECT_EQ(GetTypeForFile(path), type) << path;
    EXPECT_EQ(GetExtensionForType(type), extension) << type;
  }
  for (std::int32_t type : {-1, 0, 3, 64}) EXPECT_EQ(GetExtensionForType(type), "") << type;
}

TEST(AudioFormats, AreEqualByWhatTheirTypeNeeds) {
  const auto format = [](const std::string& text) {
    auto made = std::make_shared<cAudioFormat>();
    made->SetSerialisedFormat("FormatType=" + text);
    return made;
  };
  const std::tuple<const char*, const char*, bool> rows[] = {
      {"WAV WAVFormatTag=1 BitRate=1", "WAV WAVFormatTag=1", true},
      {"WAV WAVFormatTag=1", "WAV WAVFormatTag=3", false},
      {"WAV SampleRate=1", "WAV SampleRate=2", false},
      {"MP3 BitRate=1", "MP3 BitRate=2", false},
      {"MP3 WAVFormatTag=1", "MP3", true},
      {"WMA BitRate=1000", "WMA BitRate=2000", false},
      {"WMA WMAProfile=\"a\"", "WMA WMAProfile=\"A\"", false},
  };
  for (const auto& [first, second, equal] : rows)
    EXPECT_EQ(AudioFormatsEqual(format(first), format(second)), equal) << first << second;
  EXPECT_FALSE(AudioFormatsEqual(nullptr, nullptr));
  EXPECT_FALSE(AudioFormatsEqual(format("WAV"), nullptr));
}

using AudioFileServiceTest = TraceFixture;

TEST_F(AudioFileServiceTest, CreateAudioFileWritesAnEmptyWaveFileOrRefuses) {
  const std::string path = m_temp.File("a.wav");
  const std::tuple<std::string, std::int32_t, const char*> refused[] = {
      {"", 44100, "Exit CreateAudioFile (Filename = \"\")|"},
      {path, 0, "Exit CreateAudioFile (SampleRate = 0)|"},
      {path, -1, "Exit CreateAudioFile (acmFormatSuggestFailed. rc = 512|"},
  };
  for (const auto& [name, rate, trace] : refused) {
    EXPECT_FALSE(CreateAudioFile(name, rate, 2, 1)) << trace;
    EXPECT_EQ(TakeTrace(), "Start CreateAudioFile|" + std::string(trace));
    EXPECT_FALSE(std::filesystem::exists(path));
  }
  EXPECT_FALSE(CreateAudioFile(m_temp.Path(), 44100, 2, 1));
  TakeTrace();
  ASSERT_TRUE(CreateAudioFile(path, 48000, 2, 1));
  EXPECT_EQ(TakeTrace(), "Start CreateAudioFile|Finish CreateAudioFile|");
  const std::string format("\1\0\2\0\x80\xBB\0\0\0\xEE\2\0\4\0\x10\0\0\0", 18);
  EXPECT_EQ(ReadBytes(path), Chunk("RIFF", "WAVE" + Chunk("fmt ", format) + Chunk("data", "")));
}

TEST_F(AudioFileServiceTest, LengthIsThatOfTheAudio) {
  WriteBytes(m_temp.File("a.wav"), Wav16(Ramp16(11025, 2), 44100, 2));
  WriteBytes(m_temp.File("text.wav"), "no audio at all");
  for (const auto& [name, seconds] : {std::pair{"a.wav", 0.25}, {"text.wav", -1}, {"missing.wav", -1}})
    EXPECT_EQ(GetAudioFileLengthSeconds(m_temp.File(name)), seconds) << name;
}

TEST(WaveFormat, IsReadFromTheChunksAsTheyStand) {
  const std::string format("\1\0\2\0\x44\xAC\0\0\x10\xB1\2\0\4\0\x10\0", 16);
  const tyWaveFormat pcm{1, 2, 44100, 176400, 4, 16, 0};
  const tyWaveFormat extended{1, 2, 44100, 176400, 4, 16, 22};
  const std::string chunk = Chunk("fmt ", format), data = Chunk("data", std::string(44100, 'x'));
  const std::string longChunk = Chunk("fmt ", format + LittleEndian(22, 2) + std::string(22, '\x7F'));
  const struct {
    std::string form;
    std::int32_t status;
    tyWaveFormat format;
    std::int64_t dataLength;
  } rows[] = {
      {chunk + data, 0, pcm, 44100},
      {longChunk + data, 0, extended, 44100},
      {Chunk("odd ", "x") + data + chunk, 0, pcm, 44100},
      {(chunk + data).substr(0, 32 + 8820), 0, pcm, 8820},
      {chunk.substr(0, 10), 0, {1}, 0},
      {data, 265, {}, 0},
      {"LIST\xFF\xFF\xFF\xFF", 265, {}, 0},
      {"", -1, {}, 0},
  };
  const TempFolder temp;
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    WriteBytes(temp.File("a.wav"), row.form.empty() ? "" : Chunk("RIFF", "WAVE" + row.form));
    tyWaveFormat read{9, 9, 9, 9, 9, 9, 9};
    std::int64_t dataLength = 9;
    EXPECT_EQ(ReadWaveFormat(temp.File("a.wav"), read, dataLength), row.status);
    EXPECT_EQ(read, row.format);
    EXPECT_EQ(dataLength, row.dataLength);
    EXPECT_FLOAT_EQ(GetWaveFileLengthSeconds(temp.File("a.wav")), static_cast<float>(dataLength) / 176400);
  }
}

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
