#include "kits/sound/Platform.h"

#include "kits/common/Clock.h"
#include "kits/common/MessageBox.h"
#include "kits/common/Registry.h"
#include "kits/sound/engine/AudioEngine.h"

namespace qm {

std::shared_ptr<const Platform> DefaultPlatform() {
  static const std::shared_ptr<const Platform> platform = std::make_shared<Platform>(
      Platform{SystemClock(), UserRegistry(), ConsoleMessageBox(), AudioEngine::Create()});
  return platform;
}

}  // namespace qm
