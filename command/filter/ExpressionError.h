// The error of an expression that cannot be understood.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace command::filter {

/// `what()` says what is wrong, or what is expected, at `place`: a byte of the expression's text,
/// or where a word behind it would stand.
class ExpressionError : public std::runtime_error {
 public:
  ExpressionError(std::size_t place, const std::string& message)
      : std::runtime_error(message), place_(place) {}

  std::size_t place() const { return place_; }

 private:
  std::size_t place_;
};

} // namespace command::filter
