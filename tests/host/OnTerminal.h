#pragma once
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <termios.h>

#include <memory>

#include "ProgramRun.h"

namespace qm::test {

// The program on a terminal of its own.
class OnTerminal : public testing::Test {
 protected:
  void Start(const std::string& line) {
    Close();
    WriteBytes(m_folder.File("a.wav"), Wav16(Noise16(44100 * 60, 0.1), 44100, 1));
    winsize size{24, 100, 0, 0};
    ASSERT_EQ(openpty(&m_terminal, &m_slave, nullptr, nullptr, &size), 0);
    ASSERT_EQ(tcgetattr(m_slave, &m_former), 0);
    fcntl(m_terminal, F_SETFD, FD_CLOEXEC);  // the program ends with the test
    m_run = std::make_unique<ProgramRun>(m_folder, Quillmere(line), m_slave);
  }
  ~OnTerminal() override { Close(); }

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
  // Presses keys and sees what comes of each.
  void Work(const std::vector<std::pair<std::string, std::string>>& steps) {
    for (const auto& [keys, text] : steps) {
      ASSERT_EQ(write(m_terminal, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
      ASSERT_TRUE(See(text)) << text;
    }
  }
  // The terminal is as it was before, with its cursor shown, and the program has ended so.
  void ExpectEnd(int status) {
    EXPECT_TRUE(See("\x1b[?25h"));
    termios now{};
    ASSERT_EQ(tcgetattr(m_slave, &now), 0);
    EXPECT_EQ(now.c_lflag, m_former.c_lflag);
    EXPECT_EQ(now.c_cc[VMIN], m_former.c_cc[VMIN]);
    EXPECT_EQ(m_run->Status(), status);
  }

  TempFolder m_folder;
  std::unique_ptr<ProgramRun> m_run;
  int m_terminal = -1;

 private:
  void Close() {
    m_run.reset();
    for (int* file : {&m_slave, &m_terminal}) close(std::exchange(*file, -1));
    m_seen.clear();
  }

  int m_slave = -1;
  termios m_former{};
  std::string m_seen;
};

}  // namespace qm::test
