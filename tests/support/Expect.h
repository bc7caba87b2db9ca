// Failures with their exact texts.
#pragma once

#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace support {

/// The message of the exception of that type that `act` raises, or "none".
template <class Exception, class Act>
std::string messageOf(Act&& act) {
  try {
    act();
  } catch (const Exception& error) {
    return error.what();
  }
  return "none";
}

/// The pattern for EXPECT_DEATH that is met by the assertion with exactly that text.
inline std::string assertion(std::string_view text) {
  std::string pattern = "Assertion failed: ";
  for (const char c : text) {
    if (std::string_view("()[]{}.*+?|^$\\").find(c) != std::string_view::npos) pattern += '\\';
    pattern += c;
  }
  return pattern + "\n";
}

} // namespace support
