#include "cli/PlayOutput.h"

#include "kits/common/Numbers.h"
#include "kits/common/Text.h"
#include "kits/sound/devices/ClockOutput.h"
#include "kits/sound/devices/LiveDevice.h"
#include "kits/sound/engine/AudioEngine.h"

namespace qm::cli {

namespace {
constexpr std::string_view kFilePrefix = "wav:";
constexpr char kClockName[] = "null";
}  // namespace

bool PlayOutput::Choose(const OutputChoice& choice, std::string& errorText) {
  m_engine = AudioEngine::Create();
  if (IsFile(choice.device)) {
    const std::string path = choice.device.substr(kFilePrefix.size());
    auto device =
        std::make_unique<OfflineDevice>(choice.device, WavSink(path, choice.samples), choice.format);
    m_offline = device.get();
    m_deviceNumber = m_engine->AddOutput(std::move(device));
  } else if (EqualIgnoringCase(choice.device, kClockName)) {
    m_deviceNumber = m_engine->AddOutput(MakeLiveDevice(kClockName, std::make_unique<ClockOutput>()));
  } else if (!choice.device.empty()) {
    return ChooseByName(choice.device, errorText);
  }
  return true;
}

bool PlayOutput::ChooseByName(const std::string& device, std::string& errorText) {
  const auto outputs = m_engine->Outputs();
  const bool isNumber = device.find_first_not_of("0123456789") == device.npos;
  for (std::int32_t number = 1; number <= std::ssize(outputs); ++number) {
    const std::string& name = outputs[static_cast<std::size_t>(number - 1)].name;
    if (!EqualIgnoringCase(name, device) && !(isNumber && ParseWhole(device) == number)) continue;
    m_deviceNumber = number;
    return true;
  }
  errorText = "there is no output '" + device + "' ('quillmere devices' lists them)";
  return false;
}

bool PlayOutput::Finish(std::string& errorText) {
  return !m_offline || m_offline->Finish(errorText);
}

}  // namespace qm::cli
