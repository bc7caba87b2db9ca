// The rova command: options, signals, the command, and errors as one message with an exit status.
#include "command/Commands.h"
#include "command/Signals.h"
#include "lumo/ActivityLock.h"
#include "lumo/System.h"
#include "rova/Version.h"
#include "scrivo/Exception.h"
#include "scrivo/Interrupt.h"
#include "scrivo/Printer.h"
#include "scrivo/Shown.h"

#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <span>
#include <unistd.h>
#include <vector>

namespace {

using namespace command;

/// Gives each of the standard descriptors that the caller has closed to a file that refuses what it
/// is for: else the next one that the program opens would be taken for it.
void closeStandardGaps() {
  for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(fd, F_GETFD) < 0) open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

/// Writes what the program says of itself; a refused write is an error as it is for a listing.
ExitStatus print(const std::string& words) {
  scrivo::Printer printer(STDOUT_FILENO, text, false, false, true, 0);
  printer.addFrills("%s", words);
  printer.close();
  return success;
}

ExitStatus run(std::span<const char* const> arguments) {
  const double startTime = Lumo::System::currentTime();
  std::vector<const char*> commandWords;
  Options options = parseOptions(arguments, commandWords);
  options.startTime = startTime;
  if (options.help) return print(helpText());
  if (options.version) return print("rova " ROVA_VERSION "\n");
  Words words(commandWords);
  if (words.dropTrailingPipe("json")) options.format = json;
  const Lumo::ActivityLockHold lock;
  return runCommand(words, options);
}

} // namespace

int main(int count, char** arguments) {
  closeStandardGaps();
  installSignals();
  try {
    return run(std::span(arguments, static_cast<std::size_t>(count)).subspan(1));
  } catch (const UsageError& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return usage;
  } catch (const scrivo::sigintException&) {
    return scrivo::interruptRequested() ? interrupted : success;
  } catch (const std::exception& error) {
    const auto message = scrivo::shown(error.what(), scrivo::LineEnds::kept);
    std::fprintf(stderr, "rova: %s\n", message.c_str());
    return failure;
  }
}
