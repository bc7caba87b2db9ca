// The shape of UTF-8: which bytes make a character.
#pragma once

#include <cstddef>
#include <string_view>

namespace scrivo {

/// How much of a sequence stands at a place, and whether it is a whole one. A broken sequence goes
/// as far as it could have become a whole one, at least one byte.
struct Utf8Sequence {
  std::size_t length;
  bool isWhole;
};

/// The sequence of several bytes that a text, not empty, begins with.
Utf8Sequence readUtf8(std::string_view text);

/// The character of a whole sequence of several bytes.
char32_t decodeUtf8(std::string_view sequence);

} // namespace scrivo
