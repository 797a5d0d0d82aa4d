#pragma once
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "TraceFixture.h"
#include "audio/cCopyAudioFileNCT.h"
#include "kits/sound/AudioFileChecks.h"
#include "kits/sound/cAudioFormat.h"

namespace qm::test {

inline std::shared_ptr<cAudioFormat> WavFormat(std::int32_t rate, std::int32_t channels,
                                               std::int32_t tag = wftPCM) {
  auto format = std::make_shared<cAudioFormat>();
  format->SetFormatType(aftWAV);
  format->SetSampleRate(rate);
  format->SetChannels(channels);
  format->SetWAVFormatTag(tag);
  return format;
}

// A copier in a folder of its own, and what it hears from it as text: "S" started, numbers, "F" finished.
class CopyFixture : public TraceFixture {
 protected:
  CopyFixture() {
    m_copier.events.CopyStarted.connect([this](bool&) { m_heard += "S "; });
    m_copier.events.CopyProgress.connect(
        [this](std::int16_t percent, bool&) { m_heard += std::to_string(percent) + " "; });
    m_copier.events.CopyFinished.connect([this] { m_heard += "F "; });
  }

  std::string Write16(const std::string& name, const std::vector<std::int16_t>& samples,
                      std::uint32_t rate = 8000, std::uint32_t channels = 1) {
    WriteBytes(m_temp.File(name), Wav16(samples, rate, channels));
    return m_temp.File(name);
  }
  std::string WriteFloat(const std::string& name, const std::vector<float>& samples, std::int32_t rate = 8000,
                         std::int32_t channels = 1) {
    cAudioFile file;
    file.SetWAVSettings(rate, channels, 32, wftFloat);
    EXPECT_EQ(file.CreateFile(m_temp.File(name), ecmWAV), 0);
    file.WriteFrames(samples.data(), samples.size() / static_cast<std::size_t>(channels));
    EXPECT_EQ(file.Close(), 0);
    return m_temp.File(name);
  }
  std::vector<std::int16_t> Read16(const std::string& path) const {
    cAudioFile file;
    std::vector<std::int16_t> samples;
    if (file.OpenForRead(path) == 0)
      file.ReadSamples(static_cast<std::int32_t>(file.NumberSamples()), samples);
    return samples;
  }

  cCopyAudioFileNCT m_copier;
  std::string m_out = m_temp.File("out.wav");
  std::string m_heard;
};

inline float PeakOf(const std::vector<float>& samples) {
  float peak = 0;
  for (float value : samples) peak = std::max(peak, std::fabs(value));
  return peak;
}

}  // namespace qm::test
