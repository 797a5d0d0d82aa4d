#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "kits/sound/engine/OfflineDevice.h"

namespace qm {
class AudioEngine;
}

namespace qm::cli {

// What was asked for.
struct OutputChoice {
  std::string
      device;  // a name or number of the list of outputs, "null", "wav:PATH"; "" for the settings' own
  OutputFormat format{0, 0};        // of wav:PATH; 0 leaves it to the first item
  enSampleKind samples = eskPCM16;  // likewise
};

// An engine and the output that playing goes to.
class PlayOutput {
 public:
  static bool IsFile(const std::string& device) { return device.starts_with("wav:"); }

  // False, with one line in errorText, when there is no such device. No device is opened, and only a name has
  // the devices listed.
  bool Choose(const OutputChoice& choice, std::string& errorText);

  const std::shared_ptr<AudioEngine>& Engine() const { return m_engine; }
  // As settings count devices; below 0 when the settings decide.
  std::int32_t DeviceNumber() const { return m_deviceNumber; }
  bool Offline() const { return m_offline != nullptr; }

  // Completes the file. False, with one line in errorText, when it could not be written.
  bool Finish(std::string& errorText);

 private:
  bool ChooseByName(const std::string& device, std::string& errorText);

  std::shared_ptr<AudioEngine> m_engine;
  OfflineDevice* m_offline = nullptr;  // the engine's
  std::int32_t m_deviceNumber = -1;
};

}  // namespace qm::cli
