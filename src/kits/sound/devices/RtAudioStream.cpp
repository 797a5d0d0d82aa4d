#include "kits/sound/devices/RtAudioStream.h"

#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <thread>

#include "kits/sound/devices/PullGate.h"
#include "kits/sound/devices/PushGate.h"
#include "kits/sound/devices/RtAudioAccess.h"
#include "kits/sound/devices/RunWithin.h"
#include "kits/sound/devices/ThreadPriority.h"

namespace qm {
namespace {

using namespace std::chrono_literals;

// Four periods of 512 frames: measured under PulseAudio, it asks for one period at a time in even steps and
// holds some 32 ms; with its own choice it holds 127 ms and asks for 100 ms at once.
constexpr unsigned kDeviceBuffers = 4;

// The library's texts begin with the name of one of its functions.
std::string PlainText(const std::string& text) {
  const std::size_t colon = text.find(": ");
  return text.starts_with("RtApi") && colon != std::string::npos ? text.substr(colon + 2) : text;
}

}  // namespace

struct RtAudioStream::State {
  const enStreamDirection direction;
  enSoundServer server;
  std::unique_ptr<RtAudio> audio;
  OutputShape shape;
  std::string error;  // of the control thread
  PullGate pull;      // for an output
  PushGate push;      // for an input
  std::atomic<bool> failed{false};
  char failure[160] = "";  // written once, before `failed`
  std::atomic<bool> calledBack{false};
  pthread_t callbackThread{};  // written once, before `calledBack`
  bool raised = false;

  // The library's error callback does not say whose error it tells. Static storage: nothing is allocated on a
  // callback's first use of it.
  static thread_local State* t_current __attribute__((tls_model("initial-exec")));

  State(enStreamDirection givenDirection, enSoundServer givenServer)
      : direction(givenDirection), server(givenServer) {}
  static int Move(void* output, void* input, unsigned frames, double, RtAudioStreamStatus status, void* user);
  static void OnError(RtAudioError::Type type, const std::string& text);
  std::int32_t ChannelsOf(const ServerDevice& device) const {
    return direction == esdOutput ? device.outputChannels : device.inputChannels;
  }
  bool IsDefault(const ServerDevice& device) const {
    return direction == esdOutput ? device.defaultOutput : device.defaultInput;
  }
  bool Open(const std::string& deviceName, const OutputShape& wanted, enOutputMatch match,
            const std::string& shownName);
  bool OpenDevice(const ServerDevice& device, const OutputShape& wanted, enOutputMatch match);
  bool Start();
  void End();
  void Fail(const char* text) noexcept;
  void RaisePriority();
};

thread_local RtAudioStream::State* RtAudioStream::State::t_current = nullptr;

int RtAudioStream::State::Move(void* output, void* input, unsigned frames, double, RtAudioStreamStatus status,
                               void* user) {
  State& stream = *static_cast<State*>(user);
  if (!stream.calledBack.load(std::memory_order_relaxed)) {
    t_current = &stream;
    stream.callbackThread = pthread_self();
    stream.calledBack.store(true, std::memory_order_release);
  }
  if (stream.direction == esdOutput)
    stream.pull.Pull(static_cast<float*>(output), frames, stream.shape.format.channels);
  else
    stream.push.Push(static_cast<const float*>(input), frames,
                     status & RTAUDIO_INPUT_OVERFLOW ? eigOverflow : eigNone);
  // Without this, a lost PulseAudio would be called in a tight loop.
  return stream.failed.load(std::memory_order_relaxed) ? 1 : 0;
}

void RtAudioStream::State::OnError(RtAudioError::Type, const std::string& text) {
  if (t_current) t_current->Fail(text.c_str());
}

void RtAudioStream::State::Fail(const char* text) noexcept {
  if (failed.load(std::memory_order_relaxed)) return;
  std::strncpy(failure, text, sizeof failure - 1);
  failed.store(true, std::memory_order_release);
}

bool RtAudioStream::State::Open(const std::string& deviceName, const OutputShape& wanted, enOutputMatch match,
                                const std::string& shownName) {
  const RtAudioAccess access;
  error = shownName + ": the sound server does not answer";
  if (!access) return false;
  error = shownName + ": no such sound device";
  try {
    for (enSoundServer candidate : RunningServers(server)) {
      audio = MakeRtAudio(candidate);
      for (const ServerDevice& device : DevicesOf(*audio)) {
        if (ChannelsOf(device) < 1) continue;
        if (deviceName.empty() ? !IsDefault(device) : device.name != deviceName) continue;
        server = candidate;
        return OpenDevice(device, wanted, match);
      }
    }
  } catch (const std::exception& caught) {
    error = shownName + ": " + PlainText(caught.what());
  }
  return false;
}

bool RtAudioStream::State::OpenDevice(const ServerDevice& device, const OutputShape& wanted,
                                      enOutputMatch match) {
  shape = wanted;
  if (match == eomNearest) {
    if (device.sampleRate > 0) shape.format.sampleRate = device.sampleRate;
    shape.format.channels = std::min(wanted.format.channels, ChannelsOf(device));
  }
  RtAudio::StreamParameters parameters;
  parameters.deviceId = device.index;
  parameters.nChannels = static_cast<unsigned>(shape.format.channels);
  RtAudio::StreamOptions options;
  options.numberOfBuffers = kDeviceBuffers;
  options.streamName = kClientName;
  unsigned frames = static_cast<unsigned>(wanted.periodFrames);
  audio->openStream(direction == esdOutput ? &parameters : nullptr,
                    direction == esdInput ? &parameters : nullptr, RTAUDIO_FLOAT32,
                    static_cast<unsigned>(shape.format.sampleRate), &frames, &State::Move, this, &options,
                    &State::OnError);
  shape.periodFrames = frames;
  return true;
}

bool RtAudioStream::State::Start() {
  t_current = this;
  audio->startStream();
  t_current = nullptr;
  return !failed && audio->isStreamRunning();
}

// A lost JACK closes the stream on a thread of the library's own, which must not be met there.
void RtAudioStream::State::End() {
  const bool lost = failed || !audio->isStreamRunning();
  if (lost && server == essJACK) {
    for (int tries = 0; tries < 500 && audio->isStreamOpen(); ++tries) std::this_thread::sleep_for(10ms);
    std::this_thread::sleep_for(100ms);
  } else if (!lost) {
    t_current = this;
    // JACK holds nothing back that could be heard out, and the library's waiting for it may miss the end.
    server == essJACK ? audio->abortStream() : audio->stopStream();
    t_current = nullptr;
  }
  audio.reset();
}

// JACK has seen to that itself.
void RtAudioStream::State::RaisePriority() {
  if (raised || server == essJACK || !calledBack.load(std::memory_order_acquire)) return;
  raised = true;
  qm::RaisePriority(callbackThread, etpCallback);
}

RtAudioStream::RtAudioStream(enStreamDirection direction, enSoundServer server, std::string deviceName)
    : m_direction(direction),
      m_server(server),
      m_deviceName(std::move(deviceName)),
      m_name(m_deviceName.empty() ? "default" : m_deviceName) {}

RtAudioStream::~RtAudioStream() {
  Close(eocHearOut);
}

bool RtAudioStream::Open(const OutputShape& wanted, enOutputMatch match, std::string& errorText) {
  Close(eocDrop);
  auto stream = std::make_shared<State>(m_direction, m_server);
  auto opened = std::make_shared<std::atomic<bool>>(false);
  const bool ended = RunWithin(
      5s, [=, device = m_deviceName, name = m_name] { *opened = stream->Open(device, wanted, match, name); });
  if (!ended || !*opened) {
    errorText = ended ? stream->error : m_name + ": the sound server does not answer";
    return false;
  }
  m_shape = stream->shape;
  m_stream = std::move(stream);
  return true;
}

bool RtAudioStream::Start(FrameSource& source, std::string& errorText) {
  if (m_stream) m_stream->pull.Open(source);
  return Begin(errorText);
}

bool RtAudioStream::Start(FrameTaker& taker, std::string& errorText) {
  if (m_stream) m_stream->push.Open(taker);
  return Begin(errorText);
}

bool RtAudioStream::Begin(std::string& errorText) {
  if (!m_stream) return false;
  auto stream = m_stream;
  auto started = std::make_shared<std::atomic<bool>>(false);
  if (RunWithin(5s, [=] { *started = stream->Start(); }) && *started) return true;
  errorText =
      m_name + ": " + (stream->failed ? PlainText(stream->failure) : "the sound server does not answer");
  Close(eocDrop);
  return false;
}

void RtAudioStream::Close(enOutputClose how) {
  if (!m_stream) return;
  m_stream->pull.Shut();
  m_stream->push.Shut();
  const bool heardOut = how == eocHearOut && Alive();
  auto stream = std::move(m_stream);
  RunWithin(heardOut ? 3000ms : 200ms, [stream] { stream->End(); });
}

bool RtAudioStream::Alive() {
  if (!m_stream || m_stream->failed.load(std::memory_order_acquire) || !m_stream->audio->isStreamRunning())
    return false;
  m_stream->RaisePriority();
  return true;
}

std::string RtAudioStream::FaultText() const {
  if (!m_stream) return {};
  if (m_stream->failed.load(std::memory_order_acquire)) return m_name + ": " + PlainText(m_stream->failure);
  return m_stream->audio->isStreamRunning() ? std::string() : m_name + ": the sound device has gone";
}

}  // namespace qm
