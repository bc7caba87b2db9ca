// The rova program: signals, the command line, and errors as one message with an exit status.
#include "command/CommandLine.h"
#include "command/Signals.h"
#include "command/shell/Reported.h"
#include "lumo/ActivityLock.h"

#include <fcntl.h>
#include <span>
#include <unistd.h>

namespace {

using namespace command;

/// Gives each of the standard descriptors that the caller has closed to a file that refuses what it
/// is for: else the next one that the program opens would be taken for it.
void closeStandardGaps() {
  for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(fd, F_GETFD) < 0) open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

} // namespace

int main(int count, char** arguments) {
  closeStandardGaps();
  installSignals();
  // One thread, one command: a yield has nobody to sleep for.
  Lumo::ActivityUnlockAnchor::lock().soleActivityIs(true);
  const std::span words(arguments, static_cast<std::size_t>(count));
  return shell::reported([&] { return runCommandLine(words.subspan(1)); });
}
