#include <gtest/gtest.h>

#include <filesystem>

#include "AudioFileChecks.h"

// What is refused, and in which words; what is opened although its name says otherwise.
namespace qm::test {
namespace {

class AudioFileErrors : public testing::Test {
 protected:
  // The text with the folder taken out of it.
  std::string ErrorFor(const std::string& name, bool allowCompressed, std::int32_t& number) {
    cAudioFile file;
    file.AllowCompressedOpen(allowCompressed);
    number = file.OpenForRead(m_folder.File(name));
    EXPECT_EQ(number, file.LastError());
    EXPECT_EQ(file.IsOpen(), number == 0);
    std::string text = file.ErrorText();
    const std::size_t at = text.find(m_folder.Path() + "/");
    return at == std::string::npos ? text : text.erase(at, m_folder.Path().size() + 1);
  }

  Workshop m_folder;
};

TEST_F(AudioFileErrors, NameTheFileAndTheCause) {
  ASSERT_TRUE(m_folder.Make(
      "mkdir folder && sox -n -r 8000 -c 1 -b 16 in.wav synth 1 sine && sox in.wav -e ms-adpcm adpcm.wav && "
      "ffmpeg -i in.wav -c:a wmav2 a.wma && ffmpeg -i in.wav -ar 48000 -c:a libopus opus.ogg && "
      "ffmpeg -i in.wav -c:a g726 g726.wav && touch empty && mkfifo pipe"));
  const std::string wav = m_folder.Bytes("in.wav");
  WriteBytes(m_folder.File("text.mp3"), "This is a letter, and no music at all.\n");
  WriteBytes(m_folder.File("noise.ogg"),
             std::string(reinterpret_cast<const char*>(Noise16(50000).data()), 100000));
  WriteBytes(m_folder.File("headless.wav"), wav.substr(0, 12) + wav.substr(36));
  WriteBytes(m_folder.File("dataless.wav"), wav.substr(0, 36));
  const struct {
    const char* name;
    bool allowCompressed;
    std::int32_t number;
    const char* text;
  } rows[] = {{"absent.wav", true, afeCannotOpen, "cannot open 'absent.wav': No such file or directory"},
              {"in.wav/x", true, afeCannotOpen, "cannot open 'in.wav/x': Not a directory"},
              {"folder", true, afeNotAFile, "'folder' is a folder"},
              {"pipe", true, afeNotAFile, "'pipe' is not a file"},
              {"empty", true, afeEmpty, "'empty' is empty"},
              {"text.mp3", true, afeUnknownType, "'text.mp3' is not an audio file of a known type"},
              {"noise.ogg", true, afeUnknownType, "'noise.ogg' is not an audio file of a known type"},
              {"headless.wav", true, afeUnsupported, "'headless.wav' is a WAV file without a format"},
              {"dataless.wav", true, afeUnsupported, "'dataless.wav' is a WAV file without audio data"},
              {"opus.ogg", true, afeUnsupported, "'opus.ogg' is an Ogg file that holds no Vorbis audio"},
              {"g726.wav", true, afeUnsupported, "'g726.wav' is a WAV file of an unknown coding (tag 69)"},
              {"a.wma", false, afeCompressed,
               "'a.wma' is a Windows Media file, and compressed files are not allowed here"},
              {"adpcm.wav", false, afeCompressed, "'adpcm.wav' is a WAV file that holds compressed audio"},
              {"a.wma", true, afeNone, ""},
              {"adpcm.wav", true, afeNone, ""},
              {"in.wav", false, afeNone, ""}};
  for (const auto& row : rows) {
    std::int32_t number = -1;
    EXPECT_EQ(ErrorFor(row.name, row.allowCompressed, number), row.text);
    EXPECT_EQ(number, row.number) << row.name;
  }
}

TEST_F(AudioFileErrors, TheContentsTellTheTypeAndNotTheName) {
  ASSERT_TRUE(m_folder.Make(
      "sox -n -r 44100 -c 2 -b 16 in.wav synth 1 sine && lame in.wav a.mp3 && sox in.wav a.ogg && "
      "twolame in.wav a.mp2 && ffmpeg -i in.wav -c:a wmav2 a.wma && cp in.wav a.wav"));
  const std::pair<const char*, std::int32_t> rows[] = {
      {"a.wav", aftWAV}, {"a.mp3", aftMP3}, {"a.mp2", aftMP2}, {"a.ogg", aftOgg}, {"a.wma", aftWMA}};
  for (const auto& [made, type] : rows)
    for (const char* name : {"x.wav", "x.mp3", "x", "http://x.ogg", "pipe:0", "concat:a|b", "file:x",
                             "x?y=z#\"'\n\xFF.mp3", "data:audio/wav;base64,UklGRg==", "back\\slash.wav"}) {
      const std::string path = m_folder.File(name);
      std::filesystem::create_directories(std::filesystem::path(path).parent_path());
      WriteBytes(path, m_folder.Bytes(made));
      const Decoded decoded = DecodeFile(path);
      EXPECT_EQ(decoded.error, "") << name;
      EXPECT_EQ(decoded.format.FormatType(), type) << name << " holding " << made;
      EXPECT_EQ(decoded.Frames(), decoded.stated) << name << " holding " << made;
    }
}

TEST_F(AudioFileErrors, NamesLikeAddressesAreOpenedWhereTheProgramStands) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(m_folder.Path());
  for (const char* name : {"http:x", "pipe:0", "concat:a", "file:x", "-"}) {
    WriteBytes(name, Wav16(Ramp16(100), 8000, 1));
    EXPECT_EQ(DecodeFile(name).stated, 100) << name;
  }
  std::filesystem::current_path(before);
}

TEST_F(AudioFileErrors, OperationsOnAFileThatIsNotOpenAreAnswered) {
  cAudioFile file;
  float frame[2];
  std::vector<std::int16_t> samples = {1, 2};
  EXPECT_EQ(file.ReadFrames(frame, 1), 0u);
  EXPECT_EQ(file.LastError(), afeNotOpen);
  file.ReadSamples(10, samples);
  EXPECT_TRUE(samples.empty());
  EXPECT_EQ(file.WriteFrames(frame, 1), afeNotOpen);
  EXPECT_EQ(file.WriteSamples(samples.data(), 0), afeNotOpen);
  EXPECT_FALSE(file.Seek(0) || file.Close() || file.NumberSamples() || file.LengthMilliseconds() > 0);
}

// The bytes go away under the reader: what was decoded stays good, then the error is told.
TEST_F(AudioFileErrors, AFileThatShrinksWhileItPlays) {
  ASSERT_TRUE(m_folder.Make(
      "sox -n -r 44100 -c 2 -b 16 a.wav synth 20 pinknoise && lame a.wav a.mp3 && sox a.wav a.ogg && "
      "ffmpeg -i a.wav -c:a wmav2 a.wma"));
  for (const char* name : {"a.wav", "a.mp3", "a.ogg", "a.wma"}) {
    SCOPED_TRACE(name);
    cAudioFile file;
    file.AllowCompressedOpen(true);
    ASSERT_EQ(file.OpenForRead(m_folder.File(name)), 0);
    std::vector<float> part(1000 * 2);
    ASSERT_EQ(file.ReadFrames(part.data(), 1000), 1000u);
    std::filesystem::resize_file(m_folder.File(name), 1000);
    std::int64_t read = 1000;
    while (std::size_t got = file.ReadFrames(part.data(), 1000)) read += static_cast<std::int64_t>(got);
    EXPECT_LT(read, file.NumberSamples());
    EXPECT_EQ(file.LastError(), afeDamaged);
    EXPECT_EQ(file.ErrorText(), "'" + m_folder.File(name) + "' cannot be read further");
  }
}

}  // namespace
}  // namespace qm::test
