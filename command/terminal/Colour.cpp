#include "command/terminal/Colour.h"

#include "scrivo/Colour.h"

#include <cstdlib>
#include <string>
#include <unistd.h>

namespace command::terminal {

namespace {

std::string chosen = "auto";

std::string_view variable(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : "";
}

bool suits(bool isSeen) {
  if (chosen != "auto") return chosen == "always";
  return isSeen && variable("NO_COLOR").empty() && variable("TERM") != "dumb";
}

} // namespace

void chooseColour(std::string_view choice, bool isSeen) {
  chosen = choice;
  scrivo::useColour(suits(isSeen));
}

bool coloursMessages() { return suits(isatty(STDERR_FILENO)); }

} // namespace command::terminal
