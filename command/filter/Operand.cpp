#include "command/filter/Operand.h"

#include "command/filter/ExpressionError.h"
#include "command/filter/Pattern.h"
#include "command/grammar/Line.h"

#include <charconv>
#include <limits>

namespace command::filter {

namespace {

constexpr std::uint32_t mostNumber = std::numeric_limits<std::uint32_t>::max();

struct OperatorRow {
  std::string_view sign;
  Operator op;
};
constexpr OperatorRow ofNumbers[] = {{"=", Operator::equal},   {"!=", Operator::unequal},
                                     {"<", Operator::less},    {"<=", Operator::lessOrEqual},
                                     {">", Operator::greater}, {">=", Operator::greaterOrEqual},
                                     {"in", Operator::in}};
constexpr OperatorRow ofPrefixes[] = {
    {"=", Operator::equal}, {"!=", Operator::unequal}, {"in", Operator::in}};
constexpr OperatorRow ofTexts[] = {
    {"=", Operator::equal}, {"!=", Operator::unequal}, {"in", Operator::in}, {"~", Operator::fits}};

std::span<const OperatorRow> operatorsOf(Type type) {
  switch (type) {
  case Type::number:
    return ofNumbers;
  case Type::prefix:
  case Type::address:
    return ofPrefixes;
  case Type::name:
  case Type::word:
    return ofTexts;
  case Type::flag:
    break;
  }
  return {};
}

std::string inQuotes(std::string_view text) { return "\"" + std::string(text) + "\" "; }

[[noreturn]] void failValue(const Field& field, Operator op, const Token& token) {
  const bool isEnd = token.kind == Token::Kind::end;
  throw ExpressionError(token.place, (isEnd ? "the expression is not complete: "
                                            : inQuotes(token.text) + "is no value of " +
                                                  std::string(field.name) + ": ") +
                                         "expected " + expectedValue(field, op));
}

std::optional<std::uint32_t> numberIn(std::string_view text) {
  std::uint32_t number = 0;
  const auto* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return {};
  return number;
}

/// "10..20".
Range readRange(const Field& field, const Token& token) {
  const std::string_view text = token.text;
  const auto dots = text.find("..");
  const auto first = numberIn(text.substr(0, dots));
  const auto last = dots == text.npos ? first : numberIn(text.substr(dots + 2));
  if (!first || !last) failValue(field, Operator::in, token);
  if (*first <= *last) return {*first, *last};
  throw ExpressionError(token.place, inQuotes(text) +
                                         "has its ends the wrong way round: expected " +
                                         std::to_string(*last) + ".." + std::to_string(*first));
}

Range readNumbers(const Field& field, Operator op, const Token& token) {
  if (op == Operator::in) return readRange(field, token);
  const auto number = numberIn(token.text);
  if (!number) failValue(field, op, token);
  const std::uint64_t value = *number;
  switch (op) {
  case Operator::less:
    return value == 0 ? Range{1, 0} : Range{0, value - 1};
  case Operator::lessOrEqual:
    return {0, value};
  case Operator::greater:
    return {value + 1, mostNumber};
  case Operator::greaterOrEqual:
    return {value, mostNumber};
  default:
    return {value, value};
  }
}

template <class Address>
std::optional<Kesh::IpGenPrefix> prefixIn(const Token& token) {
  const auto typed = Kesh::AddrWithMask<Address>::parse(token.text);
  if (!typed) return {};
  const auto prefix = typed->subnet();
  if (prefix.address() == typed->address()) return prefix;
  throw ExpressionError(token.place, inQuotes(token.text) + "has bits behind its mask: expected " +
                                         prefix.stringValue().str());
}

template <class Address>
std::optional<Kesh::IpGenPrefix> addressIn(const Token& token) {
  const auto address = Address::parse(token.text);
  if (!address) return {};
  return Kesh::BasicPrefix<Address>(*address, Address::bits);
}

/// A prefix can be what a route has, and what it lies inside of; an address is one value.
Element readPrefix(const Field& field, Operator op, const Token& token) {
  if (field.type == Type::address) {
    auto address = addressIn<Kesh::IpAddr>(token);
    if (!address) address = addressIn<Kesh::Ip6Addr>(token);
    if (address) return Same{*address};
  }
  if (field.type == Type::prefix || op == Operator::in) {
    auto prefix = prefixIn<Kesh::IpAddr>(token);
    if (!prefix) prefix = prefixIn<Kesh::Ip6Addr>(token);
    if (prefix && op == Operator::in) return Inside{*prefix};
    if (prefix) return Same{*prefix};
  }
  failValue(field, op, token);
}

/// The texts that routes have for a word, or for all that fit a pattern.
std::vector<Element> readWords(const Field& field, Operator op, const Token& token) {
  std::vector<Element> elements;
  for (const FieldWord& word : field.words()) {
    const bool isMeant =
        op == Operator::fits ? fits(word.word, token.text) : word.word == token.text;
    if (isMeant) elements.emplace_back(word.value);
  }
  if (elements.empty()) failValue(field, op, token);
  return elements;
}

std::string wordsOf(const Field& field) {
  std::vector<std::string> words;
  for (const FieldWord& word : field.words()) {
    const bool hasBlank = word.word.find(' ') != word.word.npos;
    words.push_back(hasBlank ? "\"" + word.word + "\"" : word.word);
  }
  return grammar::listOf(words);
}

} // namespace

Operator readOperator(const Field& field, const Token& token) {
  std::vector<std::string> signs;
  for (const OperatorRow& row : operatorsOf(field.type)) {
    if (token.isSign(row.sign) || token.isWord(row.sign)) return row.op;
    signs.emplace_back(row.sign);
  }
  const bool isEnd = token.kind == Token::Kind::end;
  throw ExpressionError(token.place, (isEnd ? "the expression is not complete: "
                                            : inQuotes(token.text) + "does not go with " +
                                                  std::string(field.name) + ": ") +
                                         "expected " + grammar::listOf(signs));
}

std::vector<Element> readOperand(const Field& field, Operator op, const Token& token) {
  const bool isValue = token.kind == Token::Kind::word || token.kind == Token::Kind::quoted;
  if (!isValue) failValue(field, op, token);
  switch (field.type) {
  case Type::prefix:
  case Type::address:
    return {readPrefix(field, op, token)};
  case Type::number:
    return {readNumbers(field, op, token)};
  case Type::word:
    return readWords(field, op, token);
  default:
    if (op == Operator::fits) return {Pattern{token.text}};
    return {token.text};
  }
}

std::string expectedValue(const Field& field, Operator op) {
  const bool isIn = op == Operator::in;
  switch (field.type) {
  case Type::prefix:
    return "a prefix, as in 10.0.0.0/8";
  case Type::address:
    return isIn ? "an address or a prefix, as in 192.0.2.0/24"
                : "an address, as in 192.0.2.1; a prefix stands behind in";
  case Type::number:
    return isIn ? "a number or a range, as in 10..20"
                : "a number, 0 to " + std::to_string(mostNumber);
  case Type::word:
    return op == Operator::fits ? "a pattern of " + wordsOf(field) : wordsOf(field);
  default:
    return op == Operator::fits ? "a pattern, as in \"Ethernet*\"" : "a name";
  }
}

} // namespace command::filter
