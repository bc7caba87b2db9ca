#include "agent/Signals.h"

#include <csignal>
#include <sys/signalfd.h>

namespace agent {

namespace {

int openSignals() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN); // a file that may not grow is an error of its writing
  sigset_t set;
  sigemptyset(&set);
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&set, number);
  sigprocmask(SIG_BLOCK, &set, nullptr);
  return signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
}

} // namespace

Signals::Signals() : file_(openSignals()) {}

int Signals::next() {
  signalfd_siginfo info{};
  return read(file_.number(), &info, sizeof info) == sizeof info ? static_cast<int>(info.ssi_signo)
                                                                 : 0;
}

} // namespace agent
