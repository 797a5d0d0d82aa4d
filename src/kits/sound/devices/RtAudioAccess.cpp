#include "kits/sound/devices/RtAudioAccess.h"

#include <dlfcn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <string>

namespace qm {
namespace {

// Never destroyed: a call into a stuck server may outlive the end of main.
std::timed_mutex& AccessMutex() {
  static auto* mutex = new std::timed_mutex;
  return *mutex;
}

using LocalHandler = void (*)(const char*, int, const char*, int, const char*, va_list);

void Silent(const char*, int, const char*, int, const char*, va_list) {}

// ALSA's own library comes with the device library, which is all that this one is linked with.
LocalHandler SetLocalHandler(LocalHandler handler) {
  using Setter = LocalHandler (*)(LocalHandler);
  static const auto set = reinterpret_cast<Setter>(dlsym(RTLD_DEFAULT, "snd_lib_error_set_local"));
  return set ? set(handler) : nullptr;
}

bool Answers(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return false;
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  const int socketNumber = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (socketNumber < 0) return false;
  const bool connected = connect(socketNumber, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
  close(socketNumber);
  return connected;
}

bool PulseAudioAnswers() {
  if (std::getenv("PULSE_SERVER")) return true;
  if (const char* path = std::getenv("PULSE_RUNTIME_PATH")) return Answers(std::string(path) + "/native");
  if (const char* path = std::getenv("XDG_RUNTIME_DIR"))
    if (Answers(std::string(path) + "/pulse/native")) return true;
  return Answers("/run/pulse/native");
}

}  // namespace

std::vector<enSoundServer> RunningServers(enSoundServer wanted) {
  std::vector<enSoundServer> servers;
  for (enSoundServer server : {essJACK, essPulseAudio, essALSA})
    if ((wanted == essAny || wanted == server) && (server != essPulseAudio || PulseAudioAnswers()))
      servers.push_back(server);
  return servers;
}

std::unique_ptr<RtAudio> MakeRtAudio(enSoundServer server) {
  auto audio = std::make_unique<RtAudio>(server == essJACK         ? RtAudio::UNIX_JACK
                                         : server == essPulseAudio ? RtAudio::LINUX_PULSE
                                                                   : RtAudio::LINUX_ALSA);
  audio->showWarnings(false);
  return audio;
}

RtAudioAccess::RtAudioAccess(std::chrono::milliseconds limit)
    : m_lock(AccessMutex(), std::chrono::system_clock::now() + limit),
      m_formerHandler(reinterpret_cast<void*>(SetLocalHandler(Silent))) {}

RtAudioAccess::~RtAudioAccess() {
  SetLocalHandler(reinterpret_cast<LocalHandler>(m_formerHandler));
}

std::vector<ServerDevice> DevicesOf(RtAudio& audio) {
  std::vector<ServerDevice> devices;
  const unsigned count = audio.getDeviceCount();
  for (unsigned index = 0; index < count; ++index) {
    const RtAudio::DeviceInfo info = audio.getDeviceInfo(index);
    // The ports of this library's own players show as an input.
    if (info.name.empty() || info.name.starts_with(kClientName)) continue;
    devices.push_back({.name = info.name,
                       .index = index,
                       .outputChannels = static_cast<std::int32_t>(info.outputChannels),
                       .inputChannels = static_cast<std::int32_t>(info.inputChannels),
                       .sampleRate = static_cast<std::int32_t>(info.preferredSampleRate),
                       .defaultOutput = info.isDefaultOutput,
                       .defaultInput = info.isDefaultInput,
                       .probed = info.probed});
  }
  std::sort(devices.begin(), devices.end(),
            [](const ServerDevice& a, const ServerDevice& b) { return a.name < b.name; });
  return devices;
}

}  // namespace qm
