#include "command/ShellProgram.h"

#include "command/CommandLine.h"
#include "command/Commands.h"
#include "command/Completion.h"
#include "command/grammar/Reader.h"
#include "command/shell/Shell.h"

namespace command {

namespace {

/// Without the options that the session has chosen and the command has no use for.
grammar::Arguments withoutRefused(grammar::Arguments arguments) {
  const grammar::Reader reader(shellGrammar(), arguments.words);
  if (!reader.command()) return arguments;
  std::erase_if(arguments.options, [&](const grammar::GivenOption& given) {
    return given.option->name == reader.command()->refused;
  });
  return arguments;
}

class ShownProgram : public shell::Program {
 public:
  const grammar::Grammar& grammar() const override { return shellGrammar(); }
  ExitStatus run(const grammar::Arguments& arguments) const override {
    return runArguments(shellGrammar(), withoutRefused(arguments));
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
  return shell::runShell(ShownProgram(), arguments.options);
}

} // namespace command
