#include "cli/Terminal.h"

#include <signal.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cstdlib>

#include "kits/common/Text.h"

namespace qm::cli {

namespace {

constexpr char kHideCursor[] = "\x1b[?25l";
constexpr char kShowCursor[] = "\x1b[?25h";
constexpr char kOwnScreen[] = "\x1b[?1049h\x1b[2J";
constexpr char kFormerScreen[] = "\x1b[m\x1b[?1049l";
constexpr int kCrashes[] = {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT};

termios formerMode;
volatile sig_atomic_t changed = 0;
volatile sig_atomic_t ownScreen = 0;

void WriteNow(const char* text, std::size_t size) {
  [[maybe_unused]] const auto written = write(STDOUT_FILENO, text, size);
}

// Calls only what a signal handler may.
void Restore() {
  if (!changed) return;
  changed = 0;
  tcsetattr(STDIN_FILENO, TCSADRAIN, &formerMode);
  if (ownScreen) WriteNow(kFormerScreen, sizeof kFormerScreen - 1);
  ownScreen = 0;
  WriteNow(kShowCursor, sizeof kShowCursor - 1);
}

void RestoreAndCrash(int number) {
  Restore();
  raise(number);
}

}  // namespace

bool Terminal::Usable() {
  return isatty(STDIN_FILENO) && isatty(STDOUT_FILENO) && tcgetpgrp(STDIN_FILENO) == getpgrp();
}

// The first of these that is set decides.
bool Terminal::TakesUnicode() {
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* value = std::getenv(name);
    if (value && *value) return ContainsIgnoringCase(value, "utf-8") || ContainsIgnoringCase(value, "utf8");
  }
  return false;
}

Terminal::Terminal(enTerminalUse use) : m_use(use) {
  for (int number : kCrashes) {
    struct sigaction action {};
    action.sa_handler = RestoreAndCrash;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(number, &action, nullptr);
  }
  Enter();
}

Terminal::~Terminal() {
  Restore();
  for (int number : kCrashes) signal(number, SIG_DFL);
}

void Terminal::Enter() {
  if (tcgetattr(STDIN_FILENO, &formerMode) != 0) return;
  changed = 1;
  termios mode = formerMode;
  mode.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
  mode.c_iflag &= ~static_cast<tcflag_t>(IXON);  // Ctrl-S must not hold up the players
  mode.c_cc[VMIN] = 0;
  mode.c_cc[VTIME] = 0;
  tcsetattr(STDIN_FILENO, TCSADRAIN, &mode);
  ownScreen = m_use == etuWholeScreen;
  Write(ownScreen ? std::string(kOwnScreen) + kHideCursor : kHideCursor);
}

std::string Terminal::ReadKeys() const {
  std::string keys;
  char bytes[64];
  ssize_t got = 0;
  while ((got = read(STDIN_FILENO, bytes, sizeof bytes)) > 0)
    keys.append(bytes, static_cast<std::size_t>(got));
  return keys;
}

std::size_t Terminal::Width() const {
  winsize size{};
  return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

std::size_t Terminal::Height() const {
  winsize size{};
  return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_row > 0 ? size.ws_row : 24;
}

void Terminal::Write(const std::string& text) const {
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t written = write(STDOUT_FILENO, text.data() + done, text.size() - done);
    if (written <= 0) return;
    done += static_cast<std::size_t>(written);
  }
}

void Terminal::Suspend() {
  Restore();
  raise(SIGSTOP);
  Enter();
}

}  // namespace qm::cli
