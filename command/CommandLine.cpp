#include "command/CommandLine.h"

#include "command/Commands.h"
#include "command/Completion.h"
#include "command/Options.h"
#include "command/ShellProgram.h"
#include "command/ShowHelp.h"
#include "command/grammar/Help.h"
#include "command/grammar/Parser.h"
#include "command/shell/Paging.h"
#include "command/shell/Reported.h"
#include "lumo/ActivityLock.h"
#include "lumo/System.h"
#include "rova/Version.h"
#include "sources/Source.h"

#include <algorithm>
#include <string_view>
#include <unistd.h>

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
  if (const auto* const from = arguments.find("--from")) options.from = *from;
  options.dryRun = arguments.find("--dry-run");
  if (const auto* const ignored = arguments.find("--ignore")) options.ignored = *ignored;
  options.counts = arguments.find("--stat");
  options.startTime = startTime;
  return options;
}

/// What a completion of a shell asks for; the table does not show it.
bool asksForCandidates(std::span<const char* const> words) {
  return words.size() > 1 && words[0] == std::string_view("complete") &&
         words[1] == std::string_view("--");
}

/// Without a command, and with options alone that go with every command.
bool asksForShell(const grammar::Arguments& arguments) {
  const auto isForAll = [](const grammar::GivenOption& given) {
    return given.option->scope == grammar::Scope::all && given.option->name != "--help";
  };
  return !arguments.named && !arguments.open &&
         std::all_of(arguments.options.begin(), arguments.options.end(), isForAll);
}

} // namespace

ExitStatus runCommandLine(std::span<const char* const> words) {
  if (asksForCandidates(words)) {
    printCandidates(words.subspan(2));
    return success;
  }
  const auto arguments = grammar::splitArguments(commandGrammar(), words);
  if (asksForShell(arguments)) return runShell(arguments);
  shell::chooseColour(arguments, isatty(STDOUT_FILENO));
  const auto run = [&] { return runArguments(commandGrammar(), arguments); };
  const auto paging = shell::pagingOf(commandGrammar(), arguments);
  if (!paging) return run();
  return static_cast<ExitStatus>(shell::runPaged(*paging, [&] { return shell::reported(run); }));
}

ExitStatus runArguments(const grammar::Grammar& table, const grammar::Arguments& arguments) {
  const double startTime = Lumo::System::currentTime();
  if (arguments.find("--help")) return printOwnWords(grammar::helpText(table, arguments.words));
  if (arguments.words.empty() && arguments.find("--version")) {
    return printOwnWords("rova " ROVA_VERSION "\n");
  }
  const auto parsed = grammar::parse(table, arguments);
  const Lumo::ActivityLockHold lock;
  return parsed.command().run(parsed, optionsOf(arguments, startTime));
}

} // namespace command
