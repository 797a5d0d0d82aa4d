#pragma once
#include <RtAudio.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>

#include "kits/sound/devices/DeviceBench.h"
#include "kits/sound/devices/SoundServers.h"

// Sound servers that need no screen and no card, and recorders of what they play.
namespace qm::test {

// A program that runs beside the test and ends with it.
class ChildProcess {
 public:
  ChildProcess(std::vector<std::string> words, const std::string& outputPath = "/dev/null") {
    std::vector<char*> arguments;
    for (auto& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    m_id = fork();
    if (m_id != 0) return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    dup2(open(outputPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 1);
    dup2(open("/dev/null", O_RDWR), 2);
    execvp(arguments[0], arguments.data());
    _exit(127);
  }
  ~ChildProcess() { End(SIGTERM); }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  void End(int signalNumber) {
    if (m_id <= 0) return;
    Signal(signalNumber);
    waitpid(m_id, nullptr, 0);
    m_id = -1;
  }
  void Signal(int signalNumber) { kill(m_id, signalNumber); }

 private:
  pid_t m_id = -1;
};

// A sound server with one stereo output at 48000 Hz.
class SoundServer {
 public:
  virtual ~SoundServer() = default;
  virtual enSoundServer Kind() const = 0;
  virtual const char* Program() const = 0;
  virtual const char* OutputName() const = 0;
  bool Installed() const { return RunCommand(std::string("command -v ") + Program()); }
  virtual bool Start() = 0;
  void End(int signalNumber) { m_process->End(signalNumber); }
  void Signal(int signalNumber) { m_process->Signal(signalNumber); }
  // Begins anew to record what the output plays. It must be playing, silence at least.
  virtual bool Record() = 0;
  virtual std::vector<float> Recorded() = 0;

 protected:
  std::unique_ptr<ChildProcess> m_process;
};

class PulseServer : public SoundServer {
 public:
  PulseServer() {
    for (const char* name : {"PULSE_SERVER", "PULSE_RUNTIME_PATH", "PULSE_SINK", "DISPLAY"}) unsetenv(name);
    setenv("XDG_RUNTIME_DIR", m_folder.Path().c_str(), 1);
    setenv("HOME", m_folder.Path().c_str(), 1);
  }
  enSoundServer Kind() const override { return essPulseAudio; }
  const char* Program() const override { return "pulseaudio"; }
  const char* OutputName() const override { return "ProbeSink"; }
  bool Start() override {
    m_process = std::make_unique<ChildProcess>(std::vector<std::string>{
        "pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
        "--log-target=stderr", "-L", SinkModule("probe", "ProbeSink"), "-L", "module-native-protocol-unix"});
    return WaitFor([] { return RunCommand("pactl list short sinks | grep probe"); });
  }
  bool AddSink(const std::string& name, const std::string& description) {
    return RunCommand("pactl load-module " + SinkModule(name, description));
  }
  bool Record() override {
    m_recorder.reset();
    m_recorder = std::make_unique<ChildProcess>(
        std::vector<std::string>{"parec", "--device=probe.monitor", "--format=float32le", "--rate=48000",
                                 "--channels=2", "--latency-msec=20", "--raw"},
        m_folder.File("recorded"));
    return WaitFor([this] {
      return RunCommand("pactl list short source-outputs | grep .") &&
             !ReadBytes(m_folder.File("recorded")).empty();
    });
  }
  std::vector<float> Recorded() override {
    const std::string bytes = ReadBytes(m_folder.File("recorded"));
    std::vector<float> samples(bytes.size() / 8 * 2);
    std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(float));
    return samples;
  }

 private:
  static std::string SinkModule(const std::string& name, const std::string& description) {
    return "module-null-sink sink_name=" + name +
           " rate=48000 format=float32le channels=2 sink_properties=device.description=" + description;
  }

  TempFolder m_folder;
  std::unique_ptr<ChildProcess> m_recorder;
};

// Recorded through the device library's own input, from the ports of the player under test.
class JackServer : public SoundServer {
 public:
  JackServer() : m_name("qmtest" + std::to_string(getpid())), m_samples(2 * 48000 * 120) {
    setenv("JACK_DEFAULT_SERVER", m_name.c_str(), 1);
    setenv("JACK_NO_START_SERVER", "1", 1);
    setenv("JACK_NO_AUDIO_RESERVATION", "1", 1);
  }
  enSoundServer Kind() const override { return essJACK; }
  const char* Program() const override { return "jackd"; }
  const char* OutputName() const override { return "system"; }
  bool Start() override {
    m_process = std::make_unique<ChildProcess>(std::vector<std::string>{
        "jackd", "-n", m_name, "--no-realtime", "-d", "dummy", "-r", "48000", "-p", "512"});
    return WaitFor([] { return RunCommand("jack_lsp | grep playback"); });
  }
  bool Record() override {
    m_input = std::make_unique<RtAudio>(RtAudio::UNIX_JACK);
    m_input->showWarnings(false);
    m_recorded = 0;
    for (unsigned i = 0; i < m_input->getDeviceCount(); ++i) {
      if (!m_input->getDeviceInfo(i).name.starts_with("qmSoundCore")) continue;
      RtAudio::StreamParameters from;
      from.deviceId = i;
      from.nChannels = 2;
      unsigned frames = 512;
      m_input->openStream(nullptr, &from, RTAUDIO_FLOAT32, 48000, &frames, &JackServer::Keep, this);
      m_input->startStream();
      return WaitFor([this] { return m_recorded > 0; });
    }
    return false;
  }
  std::vector<float> Recorded() override {
    return {m_samples.begin(), m_samples.begin() + static_cast<std::ptrdiff_t>(m_recorded.load())};
  }

 private:
  static int Keep(void*, void* input, unsigned frames, double, RtAudioStreamStatus, void* user) {
    JackServer& server = *static_cast<JackServer*>(user);
    const std::size_t at = server.m_recorded,
                      count = std::min<std::size_t>(frames * 2, server.m_samples.size() - at);
    std::memcpy(server.m_samples.data() + at, input, count * sizeof(float));
    server.m_recorded = at + count;
    return 0;
  }

  const std::string m_name;
  std::vector<float> m_samples;
  std::atomic<std::size_t> m_recorded{0};
  std::unique_ptr<RtAudio> m_input;
};

}  // namespace qm::test
