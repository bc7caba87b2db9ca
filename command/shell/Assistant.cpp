#include "command/shell/Assistant.h"

#include "command/grammar/Help.h"
#include "command/grammar/UsageError.h"
#include "command/shell/Child.h"
#include "command/shell/Pipeline.h"
#include "command/shell/Reported.h"
#include "scrivo/Shown.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace command::shell {

namespace {

/// A text apart from the word at its end.
struct Typed {
  std::vector<Token> before;
  std::string begun;
};

Typed typedIn(std::string_view text) {
  auto tokens = tokensOf(text);
  if (!tokens.endsInWord) return {std::move(tokens.all), {}};
  auto begun = std::move(tokens.all.back().text);
  tokens.all.pop_back();
  return {std::move(tokens.all), std::move(begun)};
}

/// The words that begin so, and the arguments.
grammar::Choices fitting(grammar::Choices choices, std::string_view begun) {
  std::erase_if(choices, [&](const grammar::Choice& choice) {
    return !choice.word.empty() && !choice.word.starts_with(begun);
  });
  return choices;
}

std::vector<std::string> linesOf(std::string_view text) {
  std::vector<std::string> lines;
  for (auto end = text.find('\n'); end != text.npos; end = text.find('\n')) {
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  return lines;
}

/// Who completes a word has not asked for messages.
void hush() {
  const int none = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (none >= 0) dup2(none, STDERR_FILENO);
}

} // namespace

std::string Assistant::prompt() const {
  const auto source = program_.source(session_.withOptions({}));
  const auto name = source.substr(source.rfind('/') + 1); // all of it without a "/"
  const auto vrf = session_.vrf().empty() ? "" : "(vrf " + session_.vrf() + ")";
  return scrivo::shown(name + vrf) + "> ";
}

/// In a process of their own: whatever is wrong with the state is no reason to leave the shell.
std::vector<std::string> Assistant::namesIn(const grammar::Choices& choices,
                                            const std::string& begun,
                                            const std::string& source) const {
  std::string output;
  const auto print = [&] {
    hush();
    for (const auto& word : program_.candidates(choices, begun, source)) std::puts(word.c_str());
    return success;
  };
  runApart([&] { return reported(print); }, [&](std::string_view more) { output += more; });
  return linesOf(output);
}

Assistant::Candidates Assistant::candidates(std::string_view text) const {
  const auto [before, begun] = typedIn(text);
  try {
    const auto choices = nextIn(program_.grammar(), before).choices;
    const auto arguments = commandIn(program_.grammar(), before);
    const auto source = program_.source(session_.withOptions(arguments));
    return {begun, namesIn(choices, begun, source)};
  } catch (const UsageError&) {
    return {};
  }
}

std::string Assistant::help(std::string_view text) const {
  auto [before, begun] = typedIn(text);
  try {
    const auto next = nextIn(program_.grammar(), before);
    const auto choices = fitting(next.choices, begun);
    const bool mayEnd = next.mayEnd && begun.empty();
    if (!choices.empty() || mayEnd) return grammar::choicesText(choices, mayEnd);
    before.push_back({begun});
    nextIn(program_.grammar(), before); // raises what is wrong with the word
    return {};
  } catch (const UsageError& error) {
    return std::string(error.what()) + "\n";
  }
}

bool endsInQuotes(std::string_view text) { return tokensOf(text).openQuote != std::string::npos; }

} // namespace command::shell
