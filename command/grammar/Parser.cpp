#include "command/grammar/Parser.h"

#include "command/grammar/Reader.h"

namespace command::grammar {

namespace {

std::string takersOf(const Grammar& grammar, const Option& option) {
  if (option.scope == Scope::itself) return "goes without a command";
  std::vector<std::string> paths;
  for (const Command& command : grammar.commands) {
    if (takesOption(command, option)) paths.emplace_back(command.path);
  }
  return "goes with " + listOf(paths, " and ");
}

void requireUse(const Grammar& grammar, const Command& command, const Option& option) {
  if (takesOption(command, option)) return;
  const bool isRefused = option.name == command.refused;
  failOption(option.name,
             "is of no use to " + std::string(command.path) + ": " +
                 (isRefused ? std::string(command.why) : "it " + takersOf(grammar, option)));
}

} // namespace

Parsed parse(const Grammar& grammar, const Arguments& arguments) {
  if (arguments.open) failOption(arguments.open->name, "needs a value");
  const Reader reader(grammar, arguments.words);
  Parsed parsed = reader.whole();
  for (const GivenOption& given : arguments.options) {
    requireUse(grammar, parsed.command(), *given.option);
  }
  return parsed;
}

} // namespace command::grammar
