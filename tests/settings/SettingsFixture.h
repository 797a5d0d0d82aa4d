#pragma once
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "audio/TraceFixture.h"
#include "kits/common/Registry.h"
#include "kits/sound/Platform.h"
#include "kits/sound/SoundSystem.h"
#include "settings/cAudioSettings.h"

namespace qm::test {

inline constexpr std::uint32_t kStereo = 0x800;

// Settings over a registry in memory and devices that a test names.
class SettingsTest : public ::testing::Test {
 protected:
  // Outputs that all take 44100 Hz stereo, and inputs that do.
  std::shared_ptr<cAudioSettings> Settings(const std::vector<std::string>& outputs, int inputs = 0) const {
    std::vector<SoundDevice> out, in(static_cast<std::size_t>(inputs), SoundDevice{"input", kStereo});
    for (const std::string& name : outputs) out.push_back({name, kStereo});
    return std::make_shared<cAudioSettings>(m_platform, std::make_shared<FixedSoundDeviceList>(out, in));
  }

  static std::string Path(const std::string& subKey, const std::string& profile = ".default") {
    return "SOFTWARE\\Quillmere\\AudioSettings\\Profiles\\" + profile + "\\" + subKey;
  }
  void Store(const std::string& subKey, const std::string& key, const std::string& value) {
    registry->Write(Path(subKey), key, value);
  }

  const std::shared_ptr<Registry> registry = MemoryRegistry();
  const std::shared_ptr<RecordingBox> messages = std::make_shared<RecordingBox>();
  const std::shared_ptr<Platform> m_platform =
      std::make_shared<Platform>(Platform{nullptr, registry, messages, nullptr});
};

}  // namespace qm::test
