#include "command/shell/Pipeline.h"

#include "command/grammar/Parser.h"

#include <algorithm>

namespace command::shell {

namespace {

using grammar::Choice;
using grammar::Choices;
using grammar::Filter;
using grammar::FilterAction;
using grammar::Grammar;
using grammar::Kind;
using grammar::Line;

constexpr Choice pipe{"|", Kind::none, "another form of the output"};

const Filter* findFilter(const Grammar& grammar, std::string_view name) {
  for (const Filter& filter : grammar.filters) {
    if (filter.name == name) return &filter;
  }
  return nullptr;
}

/// The word that the one behind a "|" is, or is short for.
std::string_view pipedWord(const Grammar& grammar, const Line& line, std::size_t at) {
  const Choices choices = pipedWords(grammar);
  if (at == line.size()) line.failExpecting(at, choices);
  std::vector<std::string_view> words;
  for (const Choice& choice : choices) words.push_back(choice.word);
  const int found = line.findKeyword(at, words);
  if (found < 0) line.failExpecting(at, choices);
  return words[static_cast<std::size_t>(found)];
}

/// A word of a piped option, such as json.
void give(const Grammar& grammar, std::string_view word, grammar::Arguments& arguments) {
  for (const auto& option : grammar.options) {
    if (!option.piped || !grammar::read(option.kind, word).value) continue;
    arguments.options.push_back({&option, std::string(word)});
    arguments.piped = true;
  }
}

/// The filter whose word stands at `at`, with its text up to `end`.
void takeFilter(const Filter& filter, const Line& line, std::size_t at, std::size_t end,
                Pipeline& pipeline) {
  std::string text;
  const bool takesText = filter.kind != Kind::none;
  if (takesText && end == at + 1) line.failExpecting(end, {Choice{"", filter.kind, filter.help}});
  if (!takesText && end > at + 1) line.failExpecting(at + 1, {pipe});
  for (std::size_t i = at + 1; i < end; ++i) text += (text.empty() ? "" : " ") + line[i];
  if (filter.action == FilterAction::none) {
    pipeline.mayPage = false;
  } else {
    pipeline.filters.push_back({filter.action, text});
  }
}

std::size_t nextPipe(const std::vector<Token>& tokens, std::size_t at) {
  while (at < tokens.size() && !tokens[at].isPipe) ++at;
  return at;
}

/// What stands between one "|" and the next.
void takeStage(const Grammar& grammar, const Line& line, std::size_t at, std::size_t end,
               Pipeline& pipeline) {
  const auto word = pipedWord(grammar, line, at);
  if (const Filter* const filter = findFilter(grammar, word)) {
    return takeFilter(*filter, line, at, end, pipeline);
  }
  if (end > at + 1) line.failExpecting(at + 1, {pipe});
  give(grammar, word, pipeline.arguments);
}

} // namespace

grammar::Arguments commandIn(const Grammar& grammar, const std::vector<Token>& tokens) {
  const auto end = tokens.begin() + static_cast<std::ptrdiff_t>(nextPipe(tokens, 0));
  return grammar::sortWords(grammar, textsOf({tokens.begin(), end}));
}

Pipeline pipelineOf(const Grammar& grammar, const std::vector<Token>& tokens) {
  const Line line(textsOf(tokens));
  Pipeline pipeline{.arguments = commandIn(grammar, tokens), .filters = {}};
  for (auto end = nextPipe(tokens, 0); end < tokens.size();) {
    const auto at = end + 1;
    end = nextPipe(tokens, at);
    takeStage(grammar, line, at, end, pipeline);
  }
  return pipeline;
}

grammar::Next nextIn(const Grammar& grammar, const std::vector<Token>& tokens) {
  const auto isPipe = [](const Token& token) { return token.isPipe; };
  const auto last = std::find_if(tokens.rbegin(), tokens.rend(), isPipe);
  if (last == tokens.rend()) {
    return grammar::next(grammar, commandIn(grammar, tokens));
  }
  const std::vector<Token> before(tokens.begin(), last.base() - 1);
  grammar::parse(grammar, pipelineOf(grammar, before).arguments);
  if (last == tokens.rbegin()) return {pipedWords(grammar), false};
  const Line line(textsOf(tokens));
  const auto at = static_cast<std::size_t>(last.base() - tokens.begin());
  const Filter* const filter = findFilter(grammar, pipedWord(grammar, line, at));
  const bool lacksText = filter && filter->kind != Kind::none && at + 1 == tokens.size();
  if (lacksText) return {{Choice{"", filter->kind, filter->help}}, false};
  return {{pipe}, true};
}

} // namespace command::shell
