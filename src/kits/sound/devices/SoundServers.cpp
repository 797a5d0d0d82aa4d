#include "kits/sound/devices/SoundServers.h"

#include <memory>

#include "kits/sound/devices/RtAudioAccess.h"
#include "kits/sound/devices/RunWithin.h"

namespace qm {
namespace {

ServerListing ListUnbounded(enSoundServer wanted) {
  for (enSoundServer server : RunningServers(wanted)) {
    std::vector<ServerDevice> devices = DevicesOf(*MakeRtAudio(server));
    if (!devices.empty()) return {server, std::move(devices)};
  }
  return {};
}

}  // namespace

bool ListSoundDevices(enSoundServer wanted, ServerListing& listing, std::chrono::milliseconds limit) {
  struct Answer {
    ServerListing listing;
    bool asked = false;
  };
  auto answer = std::make_shared<Answer>();
  const bool ended = RunWithin(limit, [answer, wanted] {
    const RtAudioAccess access;
    if (!access) return;
    answer->listing = ListUnbounded(wanted);
    answer->asked = true;
  });
  if (!ended || !answer->asked) return false;
  listing = std::move(answer->listing);
  return true;
}

}  // namespace qm
