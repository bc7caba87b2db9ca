#include "command/shell/Tokens.h"

#include <algorithm>

namespace command::shell {

namespace {

constexpr std::string_view blanks = " \t\n\v\f\r", quotes = "\"'", enders = " \t\n\v\f\r|";

/// Reads a word from its first byte on; gives the place behind it.
std::size_t takeWord(std::string_view line, std::size_t at, Tokens& tokens) {
  auto& word = tokens.all.emplace_back().text;
  while (at < line.size() && enders.find(line[at]) == enders.npos) {
    if (quotes.find(line[at]) == quotes.npos) {
      word += line[at++];
      continue;
    }
    const auto end = line.find(line[at], at + 1);
    if (end == line.npos) tokens.openQuote = at;
    word += line.substr(at + 1, end == line.npos ? end : end - at - 1);
    at = end == line.npos ? line.size() : end + 1;
  }
  return at;
}

} // namespace

Tokens tokensOf(std::string_view line) {
  Tokens tokens;
  std::size_t at = 0;
  for (;;) {
    at = std::min(line.find_first_not_of(blanks, at), line.size());
    if (at == line.size() || line[at] == '#') return tokens;
    if (line[at] == '|') {
      tokens.all.push_back({"|", true});
      ++at;
      continue;
    }
    at = takeWord(line, at, tokens);
    tokens.endsInWord = at == line.size();
  }
}

std::vector<std::string> textsOf(const std::vector<Token>& tokens) {
  std::vector<std::string> texts;
  for (const Token& token : tokens) texts.push_back(token.text);
  return texts;
}

} // namespace command::shell
