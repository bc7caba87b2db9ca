#include "command/ShellProgram.h"

#include "command/CommandLine.h"
#include "command/Commands.h"
#include "command/Completion.h"
#include "command/shell/Shell.h"

namespace command {

namespace {

class Rova : public shell::Program {
 public:
  const grammar::Grammar& grammar() const override { return shellGrammar(); }
  ExitStatus run(const grammar::Arguments& arguments) const override {
    return runArguments(shellGrammar(), arguments);
  }
  std::string source(const grammar::Arguments& arguments) const override {
    return sourceOf(arguments);
  }
  std::vector<std::string> candidates(const grammar::Choices& choices, std::string_view begun,
                                      const std::string& source) const override {
    return command::candidates(choices, begun, source);
  }
};

} // namespace

ExitStatus runShell(const grammar::Arguments& arguments) {
  const auto* const state = arguments.find("--state");
  if (state && *state == "-") {
    grammar::failOption("--state", "needs the name of a file or a kernel here: without a command, "
                                   "standard input has the commands");
  }
  return shell::runShell(Rova(), arguments.options);
}

} // namespace command
