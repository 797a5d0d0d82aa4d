#include "kits/sound/cAudioFormat.h"

#include <gtest/gtest.h>

namespace qm {
namespace {

TEST(AudioFormat, TheStoredDefaultReadsAndWritesItself) {
  const std::string text = "FormatType=\"WAV\" SampleRate=\"44100\" Channels=\"2\" WAVFormatTag=\"1\"";
  cAudioFormat format;
  format.SetBitRate(5);
  format.SetSerialisedFormat(text);
  EXPECT_EQ(format.FormatType(), aftWAV);
  EXPECT_EQ(format.SampleRate(), 44100);
  EXPECT_EQ(format.Channels(), 2);
  EXPECT_EQ(format.WAVFormatTag(), wftPCM);
  EXPECT_EQ(format.BitRate(), 0);
  EXPECT_EQ(format.SerialisedFormat(), text);
}

TEST(AudioFormat, TheSerialisedFormIsTheWholeState) {
  cAudioFormat format;
  EXPECT_EQ(format.SerialisedFormat(), "");
  for (std::int32_t type : {aftOther, aftWAV, aftMP3, aftOgg, aftWMA, aftMP2, enAudioFileType{64}}) {
    format.SetFormatType(type);
    format.SetSampleRate(48000);
    format.SetChannels(1);
    format.SetBitsPerSample(24);
    format.SetBitRate(192000);
    format.SetWAVFormatTag(wftExtensible);
    format.SetWMAProfile("\"44100\", 2=%22 \n");
    cAudioFormat back;
    back.SetSerialisedFormat(format.SerialisedFormat());
    EXPECT_EQ(back, format) << format.SerialisedFormat();
  }
  format.SetSerialisedFormat("nothing of the kind");
  EXPECT_EQ(format, cAudioFormat());
}

TEST(AudioFormat, IsDescribedForPeople) {
  cAudioFormat format;
  format.SetFormatType(aftWAV);
  format.SetSampleRate(44100);
  format.SetChannels(2);
  format.SetBitsPerSample(16);
  format.SetWAVFormatTag(wftPCM);
  EXPECT_EQ(format.FormatDescription(), "WAV 44100 Hz stereo 16-bit");
  format.SetBitsPerSample(32);
  format.SetWAVFormatTag(wftFloat);
  format.SetChannels(6);
  EXPECT_EQ(format.FormatDescription(), "WAV 44100 Hz 6 channels 32-bit float");
  format = {};
  format.SetFormatType(aftWMA);
  format.SetSampleRate(32000);
  format.SetChannels(1);
  format.SetBitRate(64016);
  EXPECT_EQ(format.FormatDescription(), "WMA 32000 Hz mono 64 kbit/s");
}

}  // namespace
}  // namespace qm
