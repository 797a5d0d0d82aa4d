#include "kits/sound/cAudioFormat.h"

#include <gtest/gtest.h>

namespace qm {
namespace {

cAudioFormat FormatOf(std::int32_t type, std::int32_t rate, std::int32_t channels, std::int32_t bits,
                      std::int32_t bitRate, std::int32_t tag) {
  cAudioFormat format;
  format.SetFormatType(type);
  format.SetSampleRate(rate);
  format.SetChannels(channels);
  format.SetBitsPerSample(bits);
  format.SetBitRate(bitRate);
  format.SetWAVFormatTag(tag);
  return format;
}

TEST(AudioFormat, TheSerialisedFormIsTheWholeState) {
  const std::string text = "FormatType=\"WAV\" SampleRate=\"44100\" Channels=\"2\" WAVFormatTag=\"1\"";
  cAudioFormat back;
  EXPECT_EQ(back.SerialisedFormat(), "");
  back.SetBitRate(5);
  back.SetSerialisedFormat(text);
  EXPECT_EQ(back, FormatOf(aftWAV, 44100, 2, 0, 0, wftPCM));
  EXPECT_EQ(back.SerialisedFormat(), text);
  for (std::int32_t type : {aftOther, aftWAV, aftMP3, aftOgg, aftWMA, aftMP2, enAudioFileType{64}}) {
    cAudioFormat format = FormatOf(type, 48000, 1, 24, 192000, wftExtensible);
    format.SetWMAProfile("\"44100\", 2=%22 \n");
    back.SetSerialisedFormat(format.SerialisedFormat());
    EXPECT_EQ(back, format) << format.SerialisedFormat();
  }
  back.SetSerialisedFormat("nothing of the kind");
  EXPECT_EQ(back, cAudioFormat());
}

TEST(AudioFormat, IsDescribedForPeople) {
  const std::pair<cAudioFormat, const char*> rows[] = {
      {FormatOf(aftWAV, 44100, 2, 16, 0, wftPCM), "WAV 44100 Hz stereo 16-bit"},
      {FormatOf(aftWAV, 44100, 6, 32, 0, wftFloat), "WAV 44100 Hz 6 channels 32-bit float"},
      {FormatOf(aftWMA, 32000, 1, 0, 64016, 0), "WMA 32000 Hz mono 64 kbit/s"}};
  for (const auto& [format, text] : rows) EXPECT_EQ(format.FormatDescription(), text);
}

}  // namespace
}  // namespace qm
