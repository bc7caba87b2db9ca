// The operators of the types of fields, and the values behind them.
#pragma once

#include "command/filter/Comparison.h"
#include "command/filter/Token.h"

namespace command::filter {

enum class Operator : unsigned char {
  equal,
  unequal,
  less,
  lessOrEqual,
  greater,
  greaterOrEqual,
  fits,
  in
};

/// The operator that stands there. Raises ExpressionError where there is none, or none for the
/// field.
Operator readOperator(const Field& field, const Token& token);

/// The elements that a value behind the operator says. Raises ExpressionError for a token that is
/// no value of the field.
std::vector<Element> readOperand(const Field& field, Operator op, const Token& token);

/// "a number, 0 to 4294967295": what can stand behind an operator of the field.
std::string expectedValue(const Field& field, Operator op);

} // namespace command::filter
