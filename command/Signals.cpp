#include "command/Signals.h"

#include "command/terminal/ProgressLine.h"
#include "scrivo/Interrupt.h"
#include "sources/Unfinished.h"

#include <atomic>
#include <csignal>
#include <sys/time.h>
#include <unistd.h>

namespace command {

namespace {

constexpr int signalStatus = 128; // what a shell adds to the number of a signal

std::atomic<bool> rendering{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may not wait for a lock");

/// Has a signal come every 20 ms: a write that began just behind the first one would block for
/// ever. It does nothing but end the write.
void keepWaking() {
  constexpr suseconds_t microseconds = 20'000;
  const itimerval often{{0, microseconds}, {0, microseconds}};
  setitimer(ITIMER_REAL, &often, nullptr);
}

void onSignal(int number) {
  if (number == SIGINT && rendering && !scrivo::interruptRequested()) {
    scrivo::requestInterrupt();
    return keepWaking();
  }
  terminal::removeProgressLine();
  sources::removeUnfinished();
  _exit(signalStatus + number);
}

/// Without SA_RESTART, so that a blocking write returns.
void handle(int number, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  sigaction(number, &action, nullptr);
}

bool isIgnored(int number) {
  struct sigaction action {};
  sigaction(number, nullptr, &action);
  return action.sa_handler == SIG_IGN;
}

} // namespace

void installSignals() {
  handle(SIGINT, onSignal);
  handle(SIGTERM, onSignal);
  if (!isIgnored(SIGHUP)) handle(SIGHUP, onSignal);
  handle(SIGALRM, [](int) {});
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

void leaveInterrupted() {
  sources::removeUnfinished();
  _exit(signalStatus + SIGINT);
}

RenderScope::RenderScope() { rendering = true; }
RenderScope::~RenderScope() { rendering = false; }

} // namespace command
