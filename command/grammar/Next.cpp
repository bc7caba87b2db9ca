#include "command/grammar/Next.h"

#include "command/grammar/Reader.h"

#include <utility>

namespace command::grammar {

namespace {

constexpr Choice pipe{"|", Kind::none, "another form of the output"};

void appendKind(Kind kind, std::string_view help, Choices& choices) {
  for (const Word& word : rowOf(kind).words) {
    if (word.refusal.empty()) choices.push_back({word.text, Kind::none, word.help});
  }
  if (!rowOf(kind).closed) choices.push_back({"", kind, help});
}

/// With the words that can be chosen in the place of arguments.
Choices withWords(const Choices& given) {
  Choices choices;
  for (const Choice& choice : given) {
    if (choice.word.empty()) {
      appendKind(choice.kind, choice.help, choices);
    } else {
      choices.push_back(choice);
    }
  }
  return choices;
}

/// Ahead of a command all the options that every command takes, and those that are one.
bool mayFollow(const Option& option, const Arguments& arguments, const Command* command) {
  if (arguments.find(option.name)) return false;
  if (command) return takesOption(*command, option);
  return option.scope == Scope::all || (option.scope == Scope::itself && arguments.words.empty());
}

/// Whether the words are a whole command and a "|".
bool endsInPipe(const Grammar& grammar, std::vector<std::string> words) {
  if (words.empty() || words.back() != pipe.word) return false;
  words.pop_back();
  return Reader(grammar, std::move(words)).mayEnd();
}

} // namespace

Choices pipedWords(const Grammar& grammar) {
  Choices choices;
  for (const Option& option : grammar.options) {
    if (option.piped) appendKind(option.kind, option.help, choices);
  }
  for (const Filter& filter : grammar.filters) {
    choices.push_back({filter.name, Kind::none, filter.help});
  }
  return choices;
}

Next next(const Grammar& grammar, std::span<const char* const> given) {
  return next(grammar, splitArguments(grammar, given));
}

Next next(const Grammar& grammar, const Arguments& arguments) {
  Next next;
  if (const Option* const option = arguments.open) {
    appendKind(option->kind, option->help, next.choices);
    return next;
  }
  if (endsInPipe(grammar, arguments.words)) return {pipedWords(grammar), false};
  const Reader reader(grammar, arguments.words);
  next.mayEnd = reader.mayEnd();
  if (!arguments.piped) next.choices = withWords(reader.choices());
  if (next.mayEnd && !arguments.piped) next.choices.push_back(pipe);
  for (const Option& option : grammar.options) {
    if (arguments.onlyWords || !mayFollow(option, arguments, reader.command())) continue;
    next.choices.push_back({option.name, Kind::none, option.help});
  }
  return next;
}

} // namespace command::grammar
