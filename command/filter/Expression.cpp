#include "command/filter/Expression.h"

#include "command/filter/ExpressionError.h"
#include "command/filter/Operand.h"
#include "command/filter/Token.h"

namespace command::filter {

namespace {

constexpr std::size_t mostNesting = 64;

std::string quoted(const Token& token) { return "\"" + token.text + "\""; }

/// "expected ..." at a token that is none of it, or at the end.
[[noreturn]] void failExpecting(const Token& token, const std::string& expected) {
  const bool isEnd = token.kind == Token::Kind::end;
  throw ExpressionError(token.place, (isEnd ? "the expression is not complete: expected "
                                            : quoted(token) + " is not understood: expected ") +
                                         expected);
}

std::string fieldNames() {
  std::string names;
  for (const Field& field : fields()) names += (names.empty() ? "" : " ") + std::string(field.name);
  return names;
}

} // namespace

/// Reads tokens from the left to the right: "or" joins what "and" joins, and "not" what stands
/// behind it, a comparison or parentheses.
class Parser {
 public:
  explicit Parser(std::string_view text) : tokens_(tokensOf(text)) {}

  Expression read() {
    readEither();
    if (next().kind != Token::Kind::end) failExpecting(next(), "and, or, or the end");
    return std::move(expression_);
  }

 private:
  using Join = Expression::Join;

  const Token& next() const { return tokens_[at_]; }
  Token take() { return tokens_[at_++]; }
  bool takeWord(std::string_view word) { return next().isWord(word) && ++at_; }
  bool takeSign(std::string_view sign) { return next().isSign(sign) && ++at_; }
  std::size_t add(Join join, std::size_t first, std::size_t second = 0) {
    expression_.nodes_.push_back({join, first, second});
    return expression_.nodes_.size() - 1;
  }

  std::size_t readEither();
  std::size_t readBoth();
  std::size_t readOne();
  std::size_t readParentheses();
  std::size_t readComparison();
  std::size_t readFlag(const Field& field, std::size_t place);
  std::size_t addComparison(Comparison comparison, std::size_t place);
  std::vector<Element> readOperands(const Field& field, Operator op);

  std::vector<Token> tokens_;
  std::size_t at_ = 0;
  std::size_t nesting_ = 0;
  Expression expression_;
};

std::size_t Parser::readEither() {
  auto node = readBoth();
  while (takeWord("or")) {
    const auto other = readBoth();
    node = add(Join::either, node, other);
  }
  return node;
}

std::size_t Parser::readBoth() {
  auto node = readOne();
  while (takeWord("and")) {
    const auto other = readOne();
    node = add(Join::both, node, other);
  }
  return node;
}

/// Two "not" are none, so that they take no depth.
std::size_t Parser::readOne() {
  bool isNegated = false;
  while (takeWord("not")) isNegated = !isNegated;
  const auto node = next().isSign("(") ? readParentheses() : readComparison();
  return isNegated ? add(Join::negation, node) : node;
}

std::size_t Parser::readParentheses() {
  const auto open = take();
  if (++nesting_ > mostNesting) {
    throw ExpressionError(open.place, "parentheses stand inside of others more than " +
                                          std::to_string(mostNesting) + " deep: leave some out");
  }
  const auto node = readEither();
  if (!takeSign(")")) failExpecting(next(), "and, or, or )");
  --nesting_;
  return node;
}

std::size_t Parser::readComparison() {
  const auto name = next();
  const Field* const field = name.kind == Token::Kind::word ? findField(name.text) : nullptr;
  if (!field) failExpecting(name, "not, ( or a field (" + fieldNames() + ")");
  ++at_;
  if (field->type == Type::flag) return readFlag(*field, name.place);
  const auto op = readOperator(*field, next());
  ++at_;
  const auto node = addComparison({field, readOperands(*field, op)}, name.place);
  return op == Operator::unequal ? add(Join::negation, node) : node;
}

std::size_t Parser::readFlag(const Field& field, std::size_t place) {
  if (next().kind == Token::Kind::sign && !next().isSign(")")) {
    throw ExpressionError(next().place, std::string(field.name) +
                                            " stands by itself, or behind not: it has no values");
  }
  return addComparison({&field}, place);
}

std::size_t Parser::addComparison(Comparison comparison, std::size_t place) {
  auto& all = expression_.comparisons_;
  if (all.size() == Expression::mostComparisons) {
    throw ExpressionError(place, "these are more than " +
                                     std::to_string(Expression::mostComparisons) +
                                     " comparisons: a list, as in {bgp, static}, is one");
  }
  all.push_back(std::move(comparison));
  return add(Join::comparison, all.size() - 1);
}

/// The value behind an operator, or behind "in" a list of them in braces.
std::vector<Element> Parser::readOperands(const Field& field, Operator op) {
  if (op != Operator::in || !takeSign("{")) return readOperand(field, op, take());
  std::vector<Element> elements;
  do {
    for (auto& element : readOperand(field, op, next())) elements.push_back(std::move(element));
    ++at_;
  } while (takeSign(","));
  if (!takeSign("}")) failExpecting(next(), "a comma or }");
  return elements;
}

Expression readExpression(std::string_view text) { return Parser(text).read(); }

} // namespace command::filter
