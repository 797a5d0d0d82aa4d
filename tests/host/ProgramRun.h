#pragma once
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utmp.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "support/SoundFixtures.h"

namespace qm::test {

// A program run beside the test, in a folder of its own without settings or sound server; on a terminal if
// given one.
class ProgramRun {
 public:
  ProgramRun(const TempFolder& folder, std::vector<std::string> words, int terminal = -1)
      : m_out(folder.File("stdout")), m_err(folder.File("stderr")) {
    // For a build with a leak checker: what the device library leaves behind is not ours to free.
    static const TempFolder leaks;
    WriteBytes(leaks.File("leaks"), "leak:libpulse.so\n");
    m_id = fork();
    if (m_id != 0) return;
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"})
      setenv(name, folder.Path().c_str(), 1);
    setenv("JACK_NO_START_SERVER", "1", 1);
    unsetenv("PULSE_SERVER");
    setenv("LSAN_OPTIONS", ("print_suppressions=0:suppressions=" + leaks.File("leaks")).c_str(), 1);
    if (chdir(folder.Path().c_str()) != 0 || (terminal >= 0 && login_tty(terminal) != 0)) _exit(126);
    if (terminal < 0) {
      dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
      dup2(open(m_out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
      dup2(open(m_err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
    }
    signal(SIGINT, SIG_DFL);
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    execv(arguments[0], arguments.data());
    _exit(127);
  }
  ~ProgramRun() {
    Signal(SIGKILL);
    Status();
  }
  ProgramRun(const ProgramRun&) = delete;
  ProgramRun& operator=(const ProgramRun&) = delete;

  void Signal(int number) {
    if (m_id > 0) kill(m_id, number);
  }
  // Waits for its end: the exit status, or below 0 for the signal that killed it.
  int Status() {
    int status = 0;
    if (m_id <= 0 || waitpid(std::exchange(m_id, -1), &status, 0) < 0) return m_status;
    return m_status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }
  std::string Out() const { return ReadBytes(m_out); }
  std::string Err() const { return ReadBytes(m_err); }

 private:
  const std::string m_out, m_err;
  pid_t m_id = -1;
  int m_status = 0;
};

inline std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find(separator, at), text.size());
    parts.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return parts;
}

inline std::vector<std::string> Lines(const std::string& text) {
  return Split(text, '\n');
}

// The program with the words of a line, and with those that hold blanks.
inline std::vector<std::string> Quillmere(const std::string& line,
                                          const std::vector<std::string>& more = {}) {
  std::vector<std::string> words = Split(line, ' ');
  words.insert(words.begin(), QM_PROGRAM);
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

// The sound of a WAV file as bytes; "" when there is none.
inline std::string SoundOf(const std::string& path) {
  const std::string bytes = ReadBytes(path);
  const std::size_t data = bytes.find("data");
  return data == bytes.npos ? std::string() : bytes.substr(data + 8);
}

inline std::vector<std::int16_t> SamplesOf(const std::string& path) {
  const std::string bytes = SoundOf(path);
  std::vector<std::int16_t> samples(bytes.size() / 2);
  for (std::size_t i = 0; i < samples.size(); ++i)
    samples[i] = static_cast<std::int16_t>(static_cast<std::uint8_t>(bytes[2 * i]) |
                                           static_cast<std::uint8_t>(bytes[2 * i + 1]) << 8);
  return samples;
}

// Hours of silence that take no room on the disk.
inline void WriteHours(const std::string& path) {
  WriteBytes(path, Wav16({}, 44100, 2).replace(40, 4, LittleEndian(0x7F000000, 4)));
  std::filesystem::resize_file(path, 0x7F000000);
}

}  // namespace qm::test
