#include "kits/sound/devices/DeviceCatalogue.h"
#include "kits/sound/devices/Input.h"
#include "kits/sound/devices/LiveDevice.h"
#include "kits/sound/engine/AudioEngine.h"

namespace qm {

SoundHardware MachineSound() {
  auto catalogue = std::make_shared<DeviceCatalogue>();
  return {catalogue,
          [catalogue](std::int32_t number, double advanceSeconds,
                      std::string& errorText) -> std::unique_ptr<Device> {
            std::unique_ptr<Output> output = catalogue->MakeOutput(number, errorText);
            if (!output) return nullptr;
            std::string name = output->Name();
            return MakeLiveDevice(std::move(name), std::move(output), advanceSeconds);
          },
          [catalogue](std::int32_t number, std::string& errorText) {
            return catalogue->MakeInput(number, errorText);
          }};
}

}  // namespace qm
