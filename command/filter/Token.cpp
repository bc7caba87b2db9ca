#include "command/filter/Token.h"

#include "command/filter/ExpressionError.h"

#include <algorithm>

namespace command::filter {

namespace {

constexpr std::string_view blanks = " \t\n\v\f\r", quotes = "\"'",
                           enders = " \t\n\v\f\r\"'=!<>~(){},";
/// A longer one ahead of its beginning.
constexpr std::string_view signs[] = {"!=", "<=", ">=", "=", "<", ">",
                                      "~",  "(",  ")",  "{", "}", ","};

bool isIn(char byte, std::string_view bytes) { return bytes.find(byte) != bytes.npos; }

/// The sign that the text begins with; empty for none.
std::string_view signAt(std::string_view text) {
  for (const auto sign : signs) {
    if (text.starts_with(sign)) return sign;
  }
  return {};
}

/// The text of the quotes that open at `at`.
std::string_view quotedAt(std::string_view text, std::size_t at) {
  const auto end = text.find(text[at], at + 1);
  if (end == text.npos) throw ExpressionError(at, "these quotes do not end");
  return text.substr(at + 1, end - at - 1);
}

} // namespace

std::vector<Token> tokensOf(std::string_view text) {
  constexpr std::size_t quoteCount = 2;
  std::vector<Token> tokens;
  for (std::size_t at = 0;;) {
    at = std::min(text.find_first_not_of(blanks, at), text.size());
    if (at == text.size()) break;
    if (isIn(text[at], quotes)) {
      tokens.push_back({Token::Kind::quoted, std::string(quotedAt(text, at)), at});
      at += tokens.back().text.size() + quoteCount;
    } else if (const auto sign = signAt(text.substr(at)); !sign.empty()) {
      tokens.push_back({Token::Kind::sign, std::string(sign), at});
      at += sign.size();
    } else if (isIn(text[at], enders)) {
      throw ExpressionError(at, "\"!\" is not understood: expected !=, or not");
    } else {
      const auto end = std::min(text.find_first_of(enders, at), text.size());
      tokens.push_back({Token::Kind::word, std::string(text.substr(at, end - at)), at});
      at = end;
    }
  }
  // Where the next word would stand.
  tokens.push_back({Token::Kind::end, {}, text.empty() ? 0 : text.size() + 1});
  return tokens;
}

} // namespace command::filter
