#pragma once
#include <RtAudio.h>

#include <chrono>
#include <memory>
#include <mutex>
#include <vector>

#include "kits/sound/devices/SoundServers.h"

namespace qm {

// The servers to look at, in order: the wanted one, or all. PulseAudio is left out unless it answers on its
// socket: its library would start one by itself. The others start nothing.
std::vector<enSoundServer> RunningServers(enSoundServer wanted);

// May throw what the library throws.
std::unique_ptr<RtAudio> MakeRtAudio(enSoundServer server);

// The right to list or open devices: the library keeps what it learns about PulseAudio in one place for the
// whole process. For as long as it lasts, ALSA's remarks on what it does not find are not printed from this
// thread.
class RtAudioAccess {
 public:
  explicit RtAudioAccess(std::chrono::milliseconds limit = std::chrono::seconds(2));
  ~RtAudioAccess();
  RtAudioAccess(const RtAudioAccess&) = delete;
  RtAudioAccess& operator=(const RtAudioAccess&) = delete;

  // False when somebody else has kept the right for longer than the limit: a server is stuck.
  explicit operator bool() const { return m_lock.owns_lock(); }

 private:
  std::unique_lock<std::timed_mutex> m_lock;
  void* m_formerHandler = nullptr;
};

// What players are called in a server's own lists.
inline constexpr const char* kClientName = "qmSoundCore";

// The devices of one server, listed through `audio`; empty when the server is not running.
std::vector<ServerDevice> DevicesOf(RtAudio& audio);

}  // namespace qm
