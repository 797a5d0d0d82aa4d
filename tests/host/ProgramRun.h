#pragma once
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "support/SoundFixtures.h"

namespace qm::test {

// A program run beside the test, in a folder of its own without settings or sound server.
class ProgramRun {
 public:
  ProgramRun(const TempFolder& folder, std::vector<std::string> words)
      : m_out(folder.File("stdout")), m_err(folder.File("stderr")) {
    LeakOptions();
    m_id = fork();
    if (m_id != 0) return;
    setenv("HOME", folder.Path().c_str(), 1);
    setenv("XDG_CONFIG_HOME", folder.Path().c_str(), 1);
    setenv("XDG_RUNTIME_DIR", folder.Path().c_str(), 1);
    setenv("JACK_NO_START_SERVER", "1", 1);
    unsetenv("PULSE_SERVER");
    setenv("LSAN_OPTIONS", LeakOptions().c_str(), 1);
    if (chdir(folder.Path().c_str()) != 0) _exit(126);
    dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
    dup2(open(m_out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
    dup2(open(m_err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
    signal(SIGINT, SIG_DFL);
    Execute(words);
  }
  ~ProgramRun() {
    if (m_id <= 0) return;
    kill(m_id, SIGKILL);
    waitpid(m_id, nullptr, 0);
  }
  ProgramRun(const ProgramRun&) = delete;
  ProgramRun& operator=(const ProgramRun&) = delete;

  void Signal(int number) { kill(m_id, number); }
  // Waits for its end: the exit status, or below 0 for the signal that killed it.
  int Status() {
    if (m_id <= 0) return m_status;
    int status = 0;
    waitpid(m_id, &status, 0);
    m_id = -1;
    m_status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return m_status;
  }
  std::string Out() const { return ReadBytes(m_out); }
  std::string Err() const { return ReadBytes(m_err); }

  [[noreturn]] static void Execute(std::vector<std::string>& words) {
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    execv(arguments[0], arguments.data());
    _exit(127);
  }

 private:
  // For a build with a leak checker: what the device library leaves behind is not ours to free.
  static const std::string& LeakOptions() {
    static const TempFolder folder;
    static const std::string options = [] {
      WriteBytes(folder.File("leaks"), "leak:libpulse.so\n");
      return "print_suppressions=0:suppressions=" + folder.File("leaks");
    }();
    return options;
  }

  const std::string m_out, m_err;
  pid_t m_id = -1;
  int m_status = 0;
};

inline std::vector<std::string> Quillmere(std::vector<std::string> words) {
  words.insert(words.begin(), QM_PROGRAM);
  return words;
}

inline std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    lines.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return lines;
}

// The sound of a WAV file as bytes; "" when there is none.
inline std::string SoundOf(const std::string& path) {
  const std::string bytes = ReadBytes(path);
  const std::size_t data = bytes.find("data");
  return data == bytes.npos ? std::string() : bytes.substr(data + 8);
}

}  // namespace qm::test
