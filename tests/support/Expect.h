// Failures with their exact texts.
#pragma once

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

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

/// Holds every pair of the items against their places: each is less than those behind it, and equal
/// to itself alone.
template <class Items>
void expectAscending(const Items& items) {
  for (std::size_t i = 0; i < std::size(items); ++i) {
    for (std::size_t j = 0; j < std::size(items); ++j) {
      EXPECT_EQ(items[i] < items[j], i < j) << i << " " << j;
      EXPECT_EQ(items[i] == items[j], i == j) << i << " " << j;
    }
  }
}

} // namespace support
