#pragma once
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <utmp.h>

#include "ProgramRun.h"

namespace qm::test {

// The program on a terminal of its own.
class OnTerminal : public testing::Test {
 protected:
  void Start(std::vector<std::string> words) {
    WriteBytes(m_folder.File("a.wav"), Wav16(Noise16(44100 * 60, 0.1), 44100, 1));
    int slave = -1;
    winsize size{24, 100, 0, 0};
    ASSERT_EQ(openpty(&m_terminal, &slave, nullptr, nullptr, &size), 0);
    ASSERT_EQ(tcgetattr(slave, &m_former), 0);
    fcntl(m_terminal, F_SETFD, FD_CLOEXEC);  // the program ends with the test
    m_slave = slave;
    m_id = fork();
    if (m_id != 0) return;
    setenv("XDG_CONFIG_HOME", m_folder.Path().c_str(), 1);
    if (chdir(m_folder.Path().c_str()) != 0 || login_tty(slave) != 0) _exit(126);
    ProgramRun::Execute(words);
  }
  ~OnTerminal() override {
    if (m_id > 0) {
      kill(m_id, SIGKILL);
      waitpid(m_id, nullptr, 0);
    }
    close(m_slave);
    close(m_terminal);
  }

  // Reads on until the text has come.
  bool See(const std::string& text) {
    char bytes[4096];
    while (m_seen.find(text) == std::string::npos) {
      const ssize_t got = read(m_terminal, bytes, sizeof bytes);
      if (got <= 0) return false;
      m_seen.append(bytes, static_cast<std::size_t>(got));
    }
    m_seen.erase(0, m_seen.find(text) + text.size());
    return true;
  }
  void Press(const std::string& keys) {
    ASSERT_EQ(write(m_terminal, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }
  int Status() {
    int status = 0;
    waitpid(m_id, &status, 0);
    m_id = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }
  // The terminal is as it was before, with its cursor shown.
  void ExpectRestored() {
    EXPECT_TRUE(See("\x1b[?25h"));
    termios now{};
    ASSERT_EQ(tcgetattr(m_slave, &now), 0);
    EXPECT_EQ(now.c_lflag, m_former.c_lflag);
    EXPECT_EQ(now.c_cc[VMIN], m_former.c_cc[VMIN]);
  }

  TempFolder m_folder;
  pid_t m_id = -1;
  int m_terminal = -1, m_slave = -1;
  termios m_former{};
  std::string m_seen;
};

}  // namespace qm::test
