#include "cli/RecordRun.h"

#include "audio/cRecorder.h"
#include "cli/Failure.h"
#include "contract/IPlayerCallback.h"
#include "item/cHDItem.h"
#include "kits/common/Clock.h"
#include "kits/common/Files.h"
#include "kits/common/MessageBox.h"
#include "kits/common/Numbers.h"
#include "kits/common/Registry.h"
#include "kits/common/Text.h"
#include "kits/sound/engine/AudioEngine.h"
#include "kits/sound/record/RecordingControl.h"
#include "kits/sound/record/RecordingFile.h"
#include "settings/cAudioSettings.h"

namespace qm::cli {

namespace {
constexpr std::string_view kFilePrefix = "wav:";
}

// Hears the recorder for the run; errors are told at once.
class RecordOwner : public IPlayerCallback {
 public:
  void PlayerEvent(std::int16_t, std::int32_t, std::string&, float&, float&, std::string&,
                   std::string&) override {}
  void RecorderEvent(std::int32_t event, std::string&, float&, float&, std::string& text,
                     std::string&) override {
    ended = ended || event == reEndReached;
    if (event != reError) return;
    failed = true;
    TellFailure(text);
  }
  std::shared_ptr<cAudioSettings> AudioSettings() const override { return settings; }
  std::int16_t NumberPlayers() const override { return 0; }
  std::shared_ptr<cPlayer> Player(std::int16_t) const override { return nullptr; }

  std::shared_ptr<cAudioSettings> settings;
  bool ended = false, failed = false;
};

RecordRun::RecordRun(const RecordOptions& options)
    : m_options(options), m_engine(AudioEngine::Create()), m_owner(std::make_shared<RecordOwner>()) {}

RecordRun::~RecordRun() {
  if (m_recorder) m_recorder->Terminate();
}

bool RecordRun::ChooseDevice(std::string& errorText) {
  const std::string& device = m_options.device;
  m_offline = device.starts_with(kFilePrefix);
  if (m_offline) {
    m_deviceNumber = static_cast<std::int16_t>(m_engine->AddInputFile(device.substr(kFilePrefix.size())));
    return true;
  }
  if (device.empty()) return true;
  const auto inputs = m_engine->Inputs();
  const bool isNumber = device.find_first_not_of("0123456789") == device.npos;
  for (std::int32_t number = 1; number <= std::ssize(inputs); ++number) {
    const std::string& name = inputs[static_cast<std::size_t>(number - 1)].name;
    if (!EqualIgnoringCase(name, device) && !(isNumber && ParseWhole(device) == number)) continue;
    m_deviceNumber = static_cast<std::int16_t>(number);
    return true;
  }
  errorText = "there is no input '" + device + "' ('quillmere devices' lists them)";
  return false;
}

bool RecordRun::Start(std::string& errorText) {
  if (!ChooseDevice(errorText) || !RecordingPathUsable(m_options.path, errorText)) return false;
  const auto platform =
      std::make_shared<Platform>(Platform{SystemClock(), UserRegistry(), ConsoleMessageBox(), m_engine});
  m_recorder = std::make_shared<cRecorder>(platform);
  m_recorder->SetPlayerCallback(m_owner);
  if (!m_options.profile.empty()) {
    m_owner->settings = std::make_shared<cAudioSettings>(platform, m_engine);
    m_owner->settings->LoadProfile(m_options.profile);
  }
  m_recorder->InitRecorder(m_owner->settings);
  if (!m_options.device.empty()) m_recorder->SetWaveInDeviceNumber(m_deviceNumber);
  m_recorder->Control()->SetLimit(m_options.seconds);
  m_item = std::make_shared<cHDItem>();
  m_item->SetReference(FileNameOf(m_options.path));
  m_item->SetItemTitle(BaseNameOf(m_options.path));
  m_item->SetAudioFileName(m_options.path);
  if (m_recorder->RecordItem(m_item, std::make_shared<cAudioFormat>(m_options.format), m_options.triggerLevel,
                             m_options.triggerSeconds))
    return true;
  if (!m_owner->failed) errorText = "cannot record in the format " + m_options.format.FormatDescription();
  return false;
}

bool RecordRun::Ended() const {
  return m_owner->ended;
}
bool RecordRun::Failed() const {
  return m_owner->failed;
}

void RecordRun::Close(bool keep) {
  if (m_recorder->Status() == rsClosed) return;
  m_recorder->Control()->Stop();
  m_lost = m_recorder->Control()->FramesLost();
  if (!m_recorder->CloseItem(keep ? rcpSave : rcpDiscard)) m_owner->failed = true;
  m_kept = keep;
  m_seconds = static_cast<double>(m_recorder->PreviousSecondsRecorded());
}

}  // namespace qm::cli
