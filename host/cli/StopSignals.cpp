#include "cli/StopSignals.h"

#include <sys/signalfd.h>
#include <unistd.h>

namespace qm::cli {

namespace {
constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP};
}

StopSignals::StopSignals() {
  sigset_t taken;
  sigemptyset(&taken);
  for (int number : kSignals) {
    struct sigaction action {};
    if (sigaction(number, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) sigaddset(&taken, number);
  }
  sigprocmask(SIG_BLOCK, &taken, &m_former);
  m_descriptor = signalfd(-1, &taken, SFD_CLOEXEC | SFD_NONBLOCK);
}

StopSignals::~StopSignals() {
  if (m_descriptor >= 0) close(m_descriptor);
  sigprocmask(SIG_SETMASK, &m_former, nullptr);
}

int StopSignals::Take() const {
  signalfd_siginfo info{};
  return read(m_descriptor, &info, sizeof info) == sizeof info ? static_cast<int>(info.ssi_signo) : 0;
}

}  // namespace qm::cli
