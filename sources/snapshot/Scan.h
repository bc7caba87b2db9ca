// Where the tokens of a JSON text begin and end. All of it moves over bytes that have a NUL
// somewhere behind them, which is part of no token.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace sources::snapshot {

constexpr bool isBlank(char byte) {
  return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
}

/// Whether the byte parts tokens: a bracket, a comma or a colon.
constexpr bool isMark(char byte) {
  return byte == '{' || byte == '}' || byte == '[' || byte == ']' || byte == ',' || byte == ':';
}

inline const char* skipBlanks(const char* at) {
  while (isBlank(*at)) ++at;
  return at;
}

/// The first byte of eight that a JSON string cannot have as it is, or that needs a closer look: a
/// quote, a backslash, a control character, and all that is not ASCII. 8 when there is none.
inline std::size_t plainBytesOf(std::uint64_t bytes) {
  constexpr std::uint64_t ones = 0x0101010101010101, highBits = ones << 7;
  // Below 0x80, what is subtracted from a smaller byte leaves the high bit set. A byte that borrows
  // from the next one has a mark itself, and the first mark is the one that counts.
  const std::uint64_t marks = bytes | (bytes - ones * 0x20) | ((bytes ^ ones * '"') - ones) |
                              ((bytes ^ ones * '\\') - ones);
  return static_cast<std::size_t>(std::countr_zero(marks & highBits)) / 8;
}

/// The end of the plain bytes at the front of a string, by eights.
inline const char* skipPlain(const char* at) {
  static_assert(std::endian::native == std::endian::little, "the first byte is the lowest");
  for (;; at += 8) {
    std::uint64_t bytes;
    std::memcpy(&bytes, at, sizeof bytes);
    const std::size_t plain = plainBytesOf(bytes);
    if (plain < 8) return at + plain;
  }
}

/// Bytes that `skipPlain` may read behind the NUL.
inline constexpr std::size_t scanPadding = 8;

/// The end of a string from behind its first quote: its last quote, or what ends it before that, a
/// control character or `end`.
const char* skipString(const char* at, const char* end);

/// The end of a token that is no string.
const char* skipScalar(const char* at, const char* end);

} // namespace sources::snapshot
