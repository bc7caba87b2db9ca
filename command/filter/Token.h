// The words and signs of an expression.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace command::filter {

struct Token {
  enum class Kind : unsigned char { word, quoted, sign, end };

  Kind kind = Kind::end;
  std::string text;      ///< without its quotes; empty at the end
  std::size_t place = 0; ///< of its first byte

  bool isSign(std::string_view sign) const { return kind == Kind::sign && text == sign; }
  /// Whether it is that word, which no quotes make a value.
  bool isWord(std::string_view word) const { return kind == Kind::word && text == word; }
};

/// The tokens in their order, the end last. Signs stand by themselves, whether or not blanks are
/// around them; quotes of either kind keep all else than themselves together. Raises
/// ExpressionError for quotes that do not end, and for a "!" without its "=".
std::vector<Token> tokensOf(std::string_view text);

} // namespace command::filter
