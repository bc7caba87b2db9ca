#include "command/CommandLine.h"

#include "command/Commands.h"
#include "command/Options.h"
#include "command/ShowHelp.h"
#include "command/grammar/Help.h"
#include "command/grammar/Parser.h"
#include "lumo/ActivityLock.h"
#include "lumo/System.h"
#include "rova/Version.h"
#include "sources/Source.h"

namespace command {

namespace {

Options optionsOf(const grammar::Arguments& arguments, double startTime) {
  Options options;
  if (const auto* const state = arguments.find("--state")) {
    options.state = *state;
    options.stateReason = "named by --state";
  } else {
    auto choice = sources::defaultSource();
    options.state = std::move(choice.source);
    options.stateReason = std::move(choice.reason);
  }
  if (const auto* const format = arguments.find("--format")) {
    options.format = *format == "json" ? json : text;
  }
  options.timing = arguments.find("--timing");
  options.olderNexthopGroups = arguments.find("--older-nexthop-groups");
  options.counters = arguments.find("--counters");
  if (const auto* const into = arguments.find("--into")) options.into = *into;
  options.dryRun = arguments.find("--dry-run");
  options.startTime = startTime;
  return options;
}

} // namespace

ExitStatus runCommandLine(std::span<const char* const> words) {
  const double startTime = Lumo::System::currentTime();
  const auto& table = commandGrammar();
  const auto arguments = grammar::splitArguments(table, words);
  if (arguments.find("--help")) return printOwnWords(grammar::helpText(table, arguments.words));
  if (arguments.words.empty() && arguments.find("--version")) {
    return printOwnWords("rova " ROVA_VERSION "\n");
  }
  const auto parsed = grammar::parse(table, arguments);
  const Lumo::ActivityLockHold lock;
  return parsed.command().run(parsed, optionsOf(arguments, startTime));
}

} // namespace command
