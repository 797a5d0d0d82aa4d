#include "kits/sound/engine/OfflineDevice.h"

#include <algorithm>

#include "kits/sound/cAudioFile.h"

namespace qm {

namespace {

constexpr std::size_t kBlock = 4096;     // frames rendered at a time
constexpr int kBlocksPerPump = 16;       // so that a host with nothing to hear still gets its turn
constexpr std::int32_t kSinkFault = 20;  // error number of a sink that cannot be written

class WavFileSink : public FrameSink {
 public:
  WavFileSink(std::string path, enSampleKind kind) : m_path(std::move(path)), m_kind(kind) {}

  bool Open(const OutputFormat& format, std::string& errorText) override {
    const bool isFloat = m_kind == eskFloat;
    m_file.SetWAVSettings(format.sampleRate, format.channels, isFloat ? 32 : 16, isFloat ? wftFloat : wftPCM);
    return Told(m_file.CreateFile(m_path, ecmWAV), errorText);
  }

  bool Write(const float* interleaved, std::size_t frames, std::string& errorText) override {
    return Told(m_file.WriteFrames(interleaved, frames), errorText);
  }

  bool Close(std::string& errorText) override { return Told(m_file.Close(), errorText); }

 private:
  bool Told(std::int32_t error, std::string& errorText) {
    if (error != 0) errorText = m_file.ErrorText();
    return error == 0;
  }

  const std::string m_path;
  const enSampleKind m_kind;
  cAudioFile m_file;
};

}  // namespace

std::unique_ptr<FrameSink> WavSink(std::string path, enSampleKind kind) {
  return std::make_unique<WavFileSink>(std::move(path), kind);
}

OfflineDevice::OfflineDevice(std::string name, std::unique_ptr<FrameSink> sink, OutputFormat wanted)
    : m_name(std::move(name)), m_sink(std::move(sink)), m_wanted(wanted) {}

OfflineDevice::~OfflineDevice() {
  std::string ignored;
  Finish(ignored);
}

bool OfflineDevice::Start(std::int32_t sampleRate, std::string& errorText) {
  if (m_mixer) return true;
  OutputFormat format;
  format.sampleRate = m_wanted.sampleRate > 0 ? m_wanted.sampleRate : std::max(1, sampleRate);
  format.channels = m_wanted.channels > 0 ? m_wanted.channels : 2;
  if (!m_sink->Open(format, errorText)) return false;
  m_block.resize(kBlock * static_cast<std::size_t>(format.channels));
  m_mixer = std::make_unique<Mixer>(format);
  m_mixer->onPending = onPending;
  return true;
}

bool OfflineDevice::Pump() {
  if (!m_mixer) return false;
  if (m_mixer->DeliverPending()) return true;
  return m_mixer->Active() && RenderOn();
}

// Renders to the next notification, and no further than a little way when there is none.
bool OfflineDevice::RenderOn() {
  for (int block = 0; block < kBlocksPerPump && m_mixer->Active(); ++block) {
    const std::size_t frames = m_mixer->Render(m_block.data(), kBlock, erpFetch);
    const std::size_t samples = frames * static_cast<std::size_t>(m_mixer->Format().channels);
    for (std::size_t i = 0; i < samples; ++i) m_block[i] = std::clamp(m_block[i], -1.f, 1.f);
    std::string errorText;
    if (!m_broken && !m_finished && !m_sink->Write(m_block.data(), frames, errorText)) {
      m_broken = true;
      m_mixer->ReportFault(kSinkFault, errorText);
    }
    if (m_mixer->HasPending()) return true;
    if (frames == 0) return false;
  }
  return true;
}

bool OfflineDevice::Finish(std::string& errorText) {
  if (!m_mixer || m_finished) return true;
  m_finished = true;
  return m_sink->Close(errorText) && !m_broken;
}

}  // namespace qm
