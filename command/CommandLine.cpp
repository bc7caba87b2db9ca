#include "command/CommandLine.h"

#include "command/Commands.h"
#include "lumo/ActivityLock.h"
#include "lumo/System.h"
#include "rova/Version.h"
#include "scrivo/Printer.h"

#include <unistd.h>
#include <vector>

namespace command {

namespace {

/// Writes what the program says of itself; a refused write is an error as it is for a listing.
ExitStatus print(const std::string& words) {
  scrivo::Printer printer(STDOUT_FILENO, text);
  printer.addFrills("%s", words);
  printer.close();
  return success;
}

} // namespace

ExitStatus runCommandLine(std::span<const char* const> arguments) {
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

} // namespace command
