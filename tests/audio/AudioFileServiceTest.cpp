#include "audio/AudioFileService.h"

#include <gmock/gmock.h>

#include "TraceFixture.h"
#include "kits/sound/cAudioFormat.h"

namespace qm::test {
namespace {

TEST(AudioFileTypes, NamesAndNumbersBelongTogether) {
  struct Row {
    const char* path;
    std::int32_t type;
    const char* extension;
  };
  const Row rows[] = {
      {"a.wav", 2, "wav"},    {"A.B.WAV", 2, "wav"}, {"c:\\x.y\\a.Mp3", 4, "mp3"},
      {"/x/a.ogg", 8, "ogg"}, {"a.wma", 16, "wma"},  {"a.MP2", 32, "mp2"},
      {"a", 1, ""},           {"", 1, ""},           {"folder.wav/a", 1, ""},
      {".wav", 1, ""},        {"a.wave", 1, ""},     {"a.", 1, ""},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(GetTypeForFile(row.path), row.type) << row.path;
    EXPECT_EQ(GetExtensionForType(row.type), row.extension) << row.type;
  }
  for (std::int32_t type : {-1, 0, 3, 64}) EXPECT_EQ(GetExtensionForType(type), "") << type;
}

std::shared_ptr<cAudioFormat> Format(const std::string& text) {
  auto format = std::make_shared<cAudioFormat>();
  format->SetSerialisedFormat(text);
  return format;
}

TEST(AudioFormats, AreEqualByWhatTheirTypeNeeds) {
  struct Row {
    const char *first, *second;
    bool equal;
  };
  const Row rows[] = {
      {"FormatType=\"WAV\" WAVFormatTag=\"1\" BitRate=\"1\"", "FormatType=\"WAV\" WAVFormatTag=\"1\"", true},
      {"FormatType=\"WAV\" WAVFormatTag=\"1\"", "FormatType=\"WAV\" WAVFormatTag=\"3\"", false},
      {"FormatType=\"WAV\" SampleRate=\"1\"", "FormatType=\"WAV\" SampleRate=\"2\"", false},
      {"FormatType=\"MP3\" BitRate=\"1\"", "FormatType=\"MP3\" BitRate=\"2\"", false},
      {"FormatType=\"MP3\" WAVFormatTag=\"1\"", "FormatType=\"MP3\"", true},
      {"FormatType=\"WMA\" BitRate=\"1000\"", "FormatType=\"WMA\" BitRate=\"2000\"", false},
      {"FormatType=\"WMA\" WMAProfile=\"a\"", "FormatType=\"WMA\" WMAProfile=\"A\"", false},
  };
  for (const Row& row : rows)
    EXPECT_EQ(AudioFormatsEqual(Format(row.first), Format(row.second)), row.equal) << row.first << row.second;
  EXPECT_FALSE(AudioFormatsEqual(nullptr, nullptr));
  EXPECT_FALSE(AudioFormatsEqual(Format(rows[0].first), nullptr));
}

using AudioFileServiceTest = TraceFixture;

TEST_F(AudioFileServiceTest, CreateAudioFileWritesAnEmptyWaveFile) {
  const std::string path = m_temp.File("a.wav");
  ASSERT_TRUE(CreateAudioFile(path, 48000, 2, 1));
  EXPECT_EQ(TakeTrace(), "Start CreateAudioFile|Finish CreateAudioFile|");
  const std::string format = LittleEndian(1, 2) + LittleEndian(2, 2) + LittleEndian(48000, 4) +
                             LittleEndian(192000, 4) + LittleEndian(4, 2) + LittleEndian(16, 2) +
                             LittleEndian(0, 2);
  EXPECT_EQ(ReadBytes(path), Chunk("RIFF", "WAVE" + Chunk("fmt ", format) + Chunk("data", "")));

  ASSERT_TRUE(CreateAudioFile(path, 22050, 1, 3));
  EXPECT_TRUE(
      RunCommand("test \"$(ffprobe -v error -show_entries stream=codec_name,sample_rate,channels -of "
                 "csv=p=0 " +
                 Quoted(path) + ")\" = pcm_f32le,22050,1"));
}

TEST_F(AudioFileServiceTest, CreateAudioFileRefusesWhatItCannotWrite) {
  struct Row {
    std::string path;
    std::int32_t rate, channels, tag;
    const char* trace;
  };
  const std::string path = m_temp.File("a.wav");
  const Row rows[] = {
      {"", 44100, 2, 1, "Exit CreateAudioFile (Filename = \"\")|"},
      {path, 0, 2, 1, "Exit CreateAudioFile (SampleRate = 0)|"},
      {path, -1, 2, 1, "Exit CreateAudioFile (acmFormatSuggestFailed. rc = 512|"},
      {path, 44100, 2, 85, "Exit CreateAudioFile (acmFormatTagDetails failed. rc = 512|"},
  };
  for (const Row& row : rows) {
    EXPECT_FALSE(CreateAudioFile(row.path, row.rate, row.channels, row.tag)) << row.trace;
    EXPECT_EQ(TakeTrace(), "Start CreateAudioFile|" + std::string(row.trace));
    EXPECT_FALSE(std::filesystem::exists(path));
  }
  EXPECT_FALSE(CreateAudioFile(m_temp.Path(), 44100, 2, 1));
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
  tyWaveFormat extended = pcm;
  extended.ExtraSize = 22;
  const std::string longFormat = format + LittleEndian(22, 2) + std::string(22, '\x7F');
  const std::string data = Chunk("data", std::string(44100, 'x'));
  struct Row {
    const char* what;
    std::string bytes;
    std::int32_t status;
    tyWaveFormat format;
    std::int64_t dataLength;
    float seconds;
  };
  const Row rows[] = {
      {"plain", Chunk("RIFF", "WAVE" + Chunk("fmt ", format) + data), 0, pcm, 44100, 0.25f},
      {"longer format", Chunk("RIFF", "WAVE" + Chunk("fmt ", longFormat) + data), 0, extended, 44100, 0.25f},
      {"data first", Chunk("RIFF", "WAVE" + Chunk("odd ", "x") + data + Chunk("fmt ", format)), 0, pcm, 44100,
       0.25f},
      {"data cut", Chunk("RIFF", "WAVE" + Chunk("fmt ", format) + data).substr(0, 44 + 8820), 0, pcm, 8820,
       0.05f},
      {"format cut", Chunk("RIFF", "WAVE" + Chunk("fmt ", format)).substr(0, 22), 0, {1}, 0, 0},
      {"no format", Chunk("RIFF", "WAVE" + data), 265, {}, 0, 0},
      {"chunk beyond the end", "RIFF\4\0\0\0WAVELIST\xFF\xFF\xFF\xFF", 265, {}, 0, 0},
      {"empty", "", -1, {}, 0, 0},
  };
  const TempFolder temp;
  for (const Row& row : rows) {
    WriteBytes(temp.File("a.wav"), row.bytes);
    tyWaveFormat read{9, 9, 9, 9, 9, 9, 9};
    std::int64_t dataLength = 9;
    EXPECT_EQ(ReadWaveFormat(temp.File("a.wav"), read, dataLength), row.status) << row.what;
    EXPECT_EQ(read, row.format) << row.what;
    EXPECT_EQ(dataLength, row.dataLength) << row.what;
    EXPECT_FLOAT_EQ(GetWaveFileLengthSeconds(temp.File("a.wav")), row.seconds) << row.what;
  }
}

}  // namespace
}  // namespace qm::test
