#include "rova/core/Interrupted.h"

#include <cstdio>
#include <poll.h>
#include <unistd.h>

namespace Rova {

namespace {

/// Whether standard output takes something without waiting. One whose reader has stopped would keep
/// the process that the user wants to end.
bool takesWords() {
  pollfd output{STDOUT_FILENO, POLLOUT, 0};
  return poll(&output, 1, 0) == 1 && (output.revents & POLLOUT);
}

} // namespace

void reportInterrupt(const scrivo::sigintException& interrupt) {
  if (!takesWords()) return;
  std::printf("exiting %s\n", interrupt.what());
  std::fflush(stdout);
}

} // namespace Rova
