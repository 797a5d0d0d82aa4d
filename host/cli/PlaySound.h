#pragma once
#include <functional>
#include <memory>

#include "kits/sound/SoundSystem.h"

namespace qm::cli {

// A sound system whose every player's errors are heard in one place, those of a list's inner players too,
// which no list passes on.
class PlaySound : public SoundSystem {
 public:
  explicit PlaySound(std::shared_ptr<SoundSystem> sound);

  // Error number and text; on the host thread, from within Pump or an opening.
  std::function<void(std::int32_t number, const std::string& text)> onError;

  std::vector<SoundDevice> Outputs() const override { return m_sound->Outputs(); }
  std::vector<SoundDevice> Inputs() const override { return m_sound->Inputs(); }
  std::unique_ptr<ctlVellanPlayer> CreatePlayer() override;
  std::shared_ptr<RecordingControl> CreateRecorder() override { return m_sound->CreateRecorder(); }
  bool Pump() override { return m_sound->Pump(); }
  int WaitDescriptor() const override { return m_sound->WaitDescriptor(); }
  StreamingSettings Streaming() const override { return m_sound->Streaming(); }

 private:
  const std::shared_ptr<SoundSystem> m_sound;
};

}  // namespace qm::cli
