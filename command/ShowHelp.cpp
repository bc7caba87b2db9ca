#include "command/ShowHelp.h"

#include "command/Commands.h"
#include "command/grammar/Help.h"
#include "scrivo/Printer.h"

#include <unistd.h>

namespace command {

ExitStatus showHelp(const grammar::Parsed& parsed, const Options&) {
  return printOwnWords(grammar::helpText(commandGrammar(), parsed.subject()));
}

ExitStatus printOwnWords(const std::string& words) {
  scrivo::Printer printer(STDOUT_FILENO, text);
  printer.addFrills("%s", words);
  printer.close();
  return success;
}

} // namespace command
