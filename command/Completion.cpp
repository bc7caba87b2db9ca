#include "command/Completion.h"

#include "command/Commands.h"
#include "command/InterfaceChoice.h"
#include "command/OpenState.h"
#include "command/ShowHelp.h"
#include "command/ShowNexthopGroup.h"
#include "command/diff/DiffFields.h"
#include "command/filter/Field.h"
#include "command/grammar/Next.h"
#include "lumo/ActivityLock.h"
#include "lumo/Type.h"
#include "scrivo/Shown.h"
#include "sources/Source.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <unistd.h>

namespace command {

namespace {

using grammar::Kind;
using Names = std::vector<std::string>;

/// Completion that takes longer helps nobody.
void limitTime() {
  constexpr unsigned mostSeconds = 2;
  std::signal(SIGALRM, [](int) { _exit(success); });
  alarm(mostSeconds);
}

Names vrfNames(const std::string& source) {
  Names names;
  for (const auto& vrf : sources::open(source, namesAlone()).device.vrfs) {
    names.push_back(vrf.name.stringValue().str());
  }
  return names;
}

Names interfaces(const std::string& source) {
  return interfaceNames(sources::open(source, namesAlone()).device);
}

Names groups(const std::string& source) {
  auto needs = namesAlone();
  needs.nexthopGroups = true;
  const auto names = nexthopGroupNames(sources::open(source, needs).device);
  return {names.begin(), names.end()};
}

Names typeNames() {
  Names names;
  for (const auto* type : Lumo::typeNodes()) names.emplace_back(Lumo::shortName(*type));
  return names;
}

/// What may be begun anywhere in an expression.
Names wordsOfExpressions() {
  Names names;
  for (const auto& field : filter::fields()) names.emplace_back(field.name);
  for (const char* const word : {"and", "in", "not", "or"}) names.emplace_back(word);
  return names;
}

/// The entries of the folder that a path is in, each with the folder ahead as it was typed; folders
/// end in a "/".
Names files(std::string_view begun) {
  const std::string folder(begun.substr(0, begun.rfind('/') + 1));
  Names names;
  for (const auto& entry : std::filesystem::directory_iterator(folder.empty() ? "." : folder)) {
    std::error_code ignored;
    const auto name = entry.path().filename().string();
    const bool isHidden = name.starts_with('.') && begun.size() == folder.size();
    if (!isHidden) names.push_back(folder + name + (entry.is_directory(ignored) ? "/" : ""));
  }
  std::sort(names.begin(), names.end());
  return names;
}

/// The kernel, network namespaces where `ip netns` keeps them, and files.
Names stateSources(std::string_view begun) {
  Names names{"kernel"};
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator("/run/netns", ignored)) {
    names.push_back("kernel:" + entry.path().filename().string());
  }
  for (auto& file : files(begun)) names.push_back(std::move(file));
  return names;
}

/// Each name that is not there yet, behind those that are.
Names fieldLists(std::string_view begun) {
  const std::string given(begun.substr(0, begun.rfind(',') + 1));
  Names lists;
  for (const auto& name : ignorableFields()) {
    if (("," + given).find("," + name + ",") == given.npos) lists.push_back(given + name);
  }
  return lists;
}

Names namesOf(Kind kind, std::string_view begun, const std::string& source) {
  switch (kind) {
  case Kind::vrf:
  case Kind::vrfOrAll:
    return vrfNames(source);
  case Kind::interface:
    return interfaces(source);
  case Kind::nexthopGroup:
    return groups(source);
  case Kind::type:
    return typeNames();
  case Kind::expression:
    return wordsOfExpressions();
  case Kind::inputFile:
  case Kind::outputFile:
  case Kind::file:
    return files(begun);
  case Kind::fields:
    return fieldLists(begun);
  case Kind::source:
    return stateSources(begun);
  default:
    return {};
  }
}

bool isTypable(std::string_view name) {
  return name.find_first_of(" \t\"'|") == name.npos && scrivo::findHidden(name) == name.npos;
}

/// A word that completion writes: no "|", and an option where one was begun.
bool isOffered(std::string_view word, std::string_view begun) {
  return word != "|" && word.starts_with(begun) && (!begun.empty() || !word.starts_with('-'));
}

} // namespace

std::vector<std::string> candidates(const grammar::Choices& choices, std::string_view begun,
                                    const std::string& source) {
  limitTime();
  const Lumo::ActivityLockHold lock;
  Names found;
  for (const auto& choice : choices) {
    if (!choice.word.empty() && isOffered(choice.word, begun)) found.emplace_back(choice.word);
  }
  for (const auto& choice : choices) {
    if (!choice.word.empty()) continue;
    for (auto& name : namesOf(choice.kind, begun, source)) {
      if (name.starts_with(begun) && isTypable(name)) found.push_back(std::move(name));
    }
  }
  return found;
}

std::string sourceOf(const grammar::Arguments& arguments) {
  const auto* const named = arguments.find("--state");
  return named ? *named : sources::defaultSource().source;
}

void printCandidates(std::span<const char* const> arguments) {
  if (arguments.empty()) return;
  try {
    const auto& table = commandGrammar();
    const auto before = grammar::splitArguments(table, arguments.first(arguments.size() - 1));
    std::string lines;
    for (const auto& candidate :
         candidates(grammar::next(table, before).choices, arguments.back(), sourceOf(before))) {
      lines += candidate + "\n";
    }
    printOwnWords(lines);
  } catch (const std::exception&) {
    // Who completes a word has not asked for a message.
  }
}

} // namespace command
