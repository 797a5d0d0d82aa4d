#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <cmath>
#include <filesystem>

#include "AudioFileChecks.h"
#include "kits/sound/AudioFileWriter.h"

namespace qm::test {
namespace {

constexpr std::int32_t kVariable = 190000;  // the bit rate of rows with a variable one

void SetAll(cAudioFile& file, std::int32_t rate, std::int32_t channels, std::int32_t bitRate) {
  file.SetWAVSettings(rate, channels, 16, wftPCM);
  file.SetMP3Settings({rate, bitRate, channels, bitRate == kVariable});
  file.SetOggSettings(rate, channels, bitRate);
  file.SetWMAProfile(std::to_string(rate) + ", " + std::to_string(channels) + ", " + std::to_string(bitRate));
  file.SetMP2Settings(rate, bitRate, channels);
}

std::size_t FilesIn(const std::string& folder) {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

TEST(AudioFileWriting, WavKeepsEverySample) {
  const std::vector<std::int16_t> noise = Noise16(5001 * 2);
  for (const auto& [bits, tag] :
       {std::pair{16, wftPCM}, {24, wftPCM}, {32, wftPCM}, {32, wftFloat}, {64, wftFloat}}) {
    SCOPED_TRACE(bits);
    Workshop folder;
    cAudioFile file;
    file.SetWAVSettings(44100, 2, bits, tag);
    ASSERT_EQ(file.CreateFile(folder.File("a.wav"), ecmWAV), 0) << file.ErrorText();
    ASSERT_EQ(file.WriteSamples(noise.data(), 5001), 0);
    EXPECT_EQ(file.NumberSamples(), 5001);
    ASSERT_EQ(file.Close(), 0) << file.ErrorText();
    ASSERT_EQ(file.OpenForRead(folder.File("a.wav")), 0) << file.ErrorText();
    EXPECT_EQ(file.Format().BitsPerSample(), bits);
    EXPECT_EQ(file.Format().WAVFormatTag(), tag);
    std::vector<std::int16_t> back;
    file.ReadSamples(6000, back);
    EXPECT_TRUE(back == noise);
    ASSERT_TRUE(folder.Make("sox a.wav -t raw -b 16 -e signed b"));
    EXPECT_EQ(folder.Bytes("b").size(), noise.size() * 2);
  }
}

TEST(AudioFileWriting, FloatsAreRoundedToEvenAndClipped) {
  const float step = 1.0f / 128;
  const std::vector<float> values = {0.5f * step, 1.5f * step, -2.5f * step, 2.0f, -2.0f, NAN, 100 * step};
  TempFolder folder;
  cAudioFile file;
  file.SetWAVSettings(8000, 1, 8, wftPCM);
  ASSERT_EQ(file.CreateFile(folder.File("a.wav"), ecmWAV), 0) << file.ErrorText();
  ASSERT_EQ(file.WriteFrames(values.data(), values.size()), 0);
  ASSERT_EQ(file.Close(), 0);
  EXPECT_EQ(DecodeFile(folder.File("a.wav")).samples,
            (std::vector<float>{0, 2 * step, -2 * step, 127 * step, -1, 0, 100 * step}));
}

// What comes back is what went in, at its own time: the encoder's and the decoder's delays are taken off.
TEST(AudioFileWriting, CompressedAudioComesBackInTime) {
  const struct {
    std::int32_t mode, type, rate, channels, bitRate;
    std::size_t delay = 0;  // frames that the type has no means to take off
    std::int64_t most = 0;  // frames of filling behind the audio
  } rows[] = {{ecmMP3, aftMP3, 44100, 2, 192000},
              {ecmMP3, aftMP3, 22050, 1, 64000},
              {ecmMP3, aftMP3, 44100, 1, kVariable},
              {ecmOgg, aftOgg, 48000, 2, 160000},
              {ecmOgg, aftOgg, 8000, 1, 24000},
              {ecmWMA, aftWMA, 44100, 2, 192000},
              {ecmWMA, aftWMA, 22050, 2, 64000},
              {ecmMP2, aftMP2, 48000, 2, 256000, 481, 2304},
              {ecmMP2, aftMP2, 32000, 1, 96000, 481, 2304}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << "mode " << row.mode << ", " << row.rate << " Hz");
    TempFolder folder;
    cAudioFile file;
    SetAll(file, row.rate, row.channels, row.bitRate);
    const std::size_t frames = 30001, channels = static_cast<std::size_t>(row.channels);
    const std::vector<float> tone = Sine(row.rate, frames, channels, 440);
    ASSERT_EQ(file.CreateFile(folder.File("a"), row.mode), 0) << file.ErrorText();
    for (std::size_t at = 0; at < frames; at += 997)
      ASSERT_EQ(file.WriteFrames(&tone[at * channels], std::min<std::size_t>(997, frames - at)), 0);
    ASSERT_EQ(file.Close(), 0) << file.ErrorText();
    const Decoded back = DecodeFile(folder.File("a"));
    ASSERT_EQ(back.error, "");
    EXPECT_EQ(back.format.FormatType(), row.type);
    EXPECT_EQ(ReadBytes(folder.File("a")).find("Xing") != std::string::npos, row.bitRate == kVariable);
    EXPECT_EQ(back.format.SampleRate(), row.rate);
    EXPECT_EQ(back.format.Channels(), row.channels);
    ASSERT_GE(back.stated, static_cast<std::int64_t>(frames));
    EXPECT_LE(back.stated, static_cast<std::int64_t>(frames) + row.most);
    for (std::size_t f = 0; f + row.delay < frames; ++f)
      ASSERT_NEAR(back.samples[(f + row.delay) * channels], tone[f * channels], 0.12) << "frame " << f;
  }
}

TEST(AudioFileWriting, AFileWithoutAudioCanBeOpened) {
  for (std::int32_t mode : {ecmWAV, ecmMP3, ecmOgg, ecmWMA, ecmMP2}) {
    SCOPED_TRACE(mode);
    TempFolder folder;
    cAudioFile file;
    file.AllowCompressedOpen(true);
    ASSERT_EQ(file.CreateFile(folder.File("a"), mode), 0) << file.ErrorText();
    ASSERT_EQ(file.Close(), 0) << file.ErrorText();
    ASSERT_EQ(file.OpenForRead(folder.File("a")), 0) << file.ErrorText();
    EXPECT_LE(file.NumberSamples(), mode == ecmWAV || mode == ecmWMA ? 0 : 1152);
    EXPECT_EQ(file.SampleRate(), 44100);
  }
}

TEST(AudioFileWriting, AWavThatOutgrowsItsSizesBecomesALongOne) {
  Workshop folder;
  AudioFileSettings settings;
  settings.channels = 1;
  settings.longFormBeyond = 1000;
  AudioFileError error;
  for (std::size_t frames : {300u, 600u}) {
    auto writer = CreateAudioFileWriter(folder.File("a.wav"), ecmWAV, settings, error);
    ASSERT_TRUE(writer) << error.text;
    const std::vector<float> tone = Sine(44100, frames);
    EXPECT_FALSE(writer->Write(tone.data(), frames));
    EXPECT_FALSE(writer->Finish());
    EXPECT_EQ(folder.Bytes("a.wav").substr(0, 4), frames == 300 ? "RIFF" : "RF64");
    EXPECT_EQ(folder.Decode("a.wav").stated, static_cast<std::int64_t>(frames));
    ASSERT_TRUE(folder.Make("ffmpeg -y -i a.wav -f s16le raw"));
    EXPECT_EQ(folder.Bytes("raw").size(), frames * 2);
  }
}

TEST(AudioFileWriting, SettingsThatATypeDoesNotHaveAreRefusedAtOnce) {
  const struct {
    std::int32_t mode, rate, channels, bitRate;
    const char* why;
  } rows[] = {{ecmMP3, 96000, 2, 128000, "MP3 has no sample rate of 96000 Hz"},
              {ecmMP3, 44100, 3, 128000, "MP3 has no 3 channels"},
              {ecmMP2, 8000, 1, 64000, "MP2 has no sample rate of 8000 Hz"},
              {ecmMP2, 44100, 2, 0, "no bit rate is set"},
              {ecmWMA, 96000, 2, 128000, "WMA cannot hold 96000 Hz, 2 channels at 128000 bits a second"},
              {ecmOgg, 44100, 0, 128000, "Ogg has no 0 channels"},
              {ecmOgg, 44100, 2, 9000000, "Ogg cannot hold 44100 Hz, 2 channels at 9000000 bits a second"},
              {ecmWAV, 0, 2, 0, "there is no WAV format with tag 1, 0 Hz, 2 channels and 16 bits"},
              {7, 44100, 2, 128000, "there is no creation mode 7"}};
  TempFolder folder;
  for (const auto& row : rows) {
    cAudioFile file;
    SetAll(file, row.rate, row.channels, row.bitRate);
    EXPECT_EQ(file.CreateFile(folder.File("a"), row.mode), afeBadSettings) << row.why;
    EXPECT_EQ(file.ErrorText(), "cannot create '" + folder.File("a") + "': " + row.why);
    EXPECT_FALSE(file.IsOpen());
  }
  EXPECT_EQ(FilesIn(folder.Path()), 0u);
}

TEST(AudioFileWriting, TheOldFileStandsUntilTheNewOneIsWhole) {
  TempFolder folder;
  const std::string path = folder.File("a.wav"), old = Wav16(Ramp16(10), 8000, 1);
  const std::vector<std::int16_t> ramp = Ramp16(100);
  WriteBytes(path, old);
  std::filesystem::create_symlink(path, folder.File("link.wav"));
  cAudioFile file;
  file.SetWAVSettings(8000, 1, 16, wftPCM);
  ASSERT_EQ(file.CreateFile(folder.File("link.wav"), ecmWAV), 0);
  ASSERT_EQ(file.WriteSamples(ramp.data(), ramp.size()), 0);
  EXPECT_EQ(ReadBytes(path), old);
  ASSERT_EQ(file.Close(), 0);
  EXPECT_EQ(DecodeFile(path).stated, 100);
  EXPECT_TRUE(std::filesystem::is_symlink(folder.File("link.wav")));
  EXPECT_EQ(FilesIn(folder.Path()), 2u);
}

TEST(AudioFileWriting, AFullDiskIsToldAndLeavesTheOldFile) {
  TempFolder folder;
  signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const std::vector<std::int16_t> noise = Noise16(400000);
  for (std::int32_t mode : {ecmWAV, ecmMP3, ecmOgg, ecmWMA, ecmMP2}) {
    SCOPED_TRACE(mode);
    WriteBytes(folder.File("a"), "old");
    rlimit small = before;
    small.rlim_cur = 10000;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    cAudioFile file;
    EXPECT_EQ(file.CreateFile(folder.File("a"), mode), 0) << file.ErrorText();
    std::int32_t written = file.WriteSamples(noise.data(), noise.size() / 2);
    std::int32_t closed = file.Close();
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_TRUE(written == afeCannotWrite || closed == afeCannotWrite);
    EXPECT_EQ(file.ErrorText(), "cannot write '" + folder.File("a") + "': File too large");
    EXPECT_EQ(ReadBytes(folder.File("a")), "old");
    EXPECT_EQ(FilesIn(folder.Path()), 1u);
  }
  cAudioFile file;
  EXPECT_EQ(file.CreateFile(folder.File("none/a"), ecmWAV), afeCannotWrite);
  EXPECT_EQ(file.ErrorText(), "cannot write '" + folder.File("none/a") + "': No such file or directory");
  EXPECT_EQ(file.CreateFile(folder.Path(), ecmWAV), afeCannotWrite);
}

TEST(AudioFileWriting, TheTemplateGivesTheFormat) {
  Workshop folder;
  ASSERT_TRUE(folder.Make("sox -n -r 22050 -c 1 -b 24 t.wav synth 0.1 sine"));
  cAudioFile file;
  ASSERT_EQ(file.SetTemplateWAV(folder.File("t.wav")), 0) << file.ErrorText();
  ASSERT_EQ(file.CreateFile(folder.File("a.wav"), ecmWAV), 0) << file.ErrorText();
  ASSERT_EQ(file.Close(), 0);
  EXPECT_EQ(folder.Decode("a.wav").format, folder.Decode("t.wav").format);
  WriteBytes(folder.File("b.wav"), "no WAV");
  EXPECT_EQ(file.SetTemplateWAV(folder.File("b.wav")), afeUnknownType);
  EXPECT_EQ(file.ErrorText(), "'" + folder.File("b.wav") + "' is not a WAV file");
}

}  // namespace
}  // namespace qm::test
