#pragma once
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "kits/sound/engine/Device.h"
#include "kits/sound/engine/Mixer.h"

namespace qm {

// Where an offline device's sound goes: interleaved float frames, clipped to full scale.
class FrameSink {
 public:
  virtual ~FrameSink() = default;
  // Each answers false with one line in errorText on failure.
  virtual bool Open(const OutputFormat& format, std::string& errorText) = 0;
  virtual bool Write(const float* interleaved, std::size_t frames, std::string& errorText) = 0;
  virtual bool Close(std::string& errorText) = 0;
};

// A device without threads whose time moves only when it is pumped, as fast as the processor allows, and only
// while something sounds. Its first frame is the engine's frame 0.
class OfflineDevice : public Device {
 public:
  // A rate or a number of channels of 0 is left to the first file played, and to stereo.
  OfflineDevice(std::string name, std::unique_ptr<FrameSink> sink, OutputFormat wanted = {0, 0});
  ~OfflineDevice() override;

  const std::string& Name() const override { return m_name; }
  bool Start(std::int32_t sampleRate, std::string& errorText) override;
  Mixer* GetMixer() override { return m_mixer.get(); }
  bool Pump() override;
  bool Offline() const override { return true; }

  // Finishes the sink; nothing sounds afterwards. Also done by the destructor, which has nobody to tell of
  // errors.
  bool Finish(std::string& errorText);

 private:
  bool RenderOn();

  const std::string m_name;
  const std::unique_ptr<FrameSink> m_sink;
  const OutputFormat m_wanted;
  std::unique_ptr<Mixer> m_mixer;
  std::vector<float> m_block;
  bool m_broken = false;  // the sink has failed: time goes on without it
  bool m_finished = false;
};

enum enSampleKind : std::int32_t { eskPCM16, eskFloat };

// A WAV file, which takes its name's place when it is finished.
std::unique_ptr<FrameSink> WavSink(std::string path, enSampleKind kind);

}  // namespace qm
