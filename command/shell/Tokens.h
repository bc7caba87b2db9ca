// A line of the shell as words: quotes keep blanks, "|", "?" and "#" together, "#" begins a
// comment.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace command::shell {

struct Token {
  std::string text;    ///< without its quotes
  bool isPipe = false; ///< a "|" outside of quotes
};

struct Tokens {
  std::vector<Token> all;
  std::size_t openQuote = std::string::npos; ///< the place of one that is not closed
  bool endsInWord = false;                   ///< the last token is a word that could go on
};

Tokens tokensOf(std::string_view line);

/// The texts of tokens.
std::vector<std::string> textsOf(const std::vector<Token>& tokens);

} // namespace command::shell
