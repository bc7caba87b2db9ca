#include "Escapes.h"

#include "Utf8.h"

#include <charconv>
#include <cstdint>
#include <optional>

namespace sources::snapshot {

namespace {

/// The surrogate of byte 0; that of a byte is as much higher.
constexpr std::uint32_t byteSurrogate = 0xdc00;

void appendCode(std::string& out, std::uint32_t code) {
  static constexpr char digits[] = "0123456789abcdef";
  out += "\\u";
  for (unsigned shift = 16; shift > 0; shift -= 4) out += digits[code >> (shift - 4) & 15];
}

void appendEscape(std::string& out, unsigned char byte) {
  if (byte != '"' && byte != '\\') return appendCode(out, byte);
  out += '\\';
  out += static_cast<char>(byte);
}

/// Bytes that stand in a JSON string as they are, whatever is around them.
bool isPlain(unsigned char byte) {
  return byte >= 0x20 && byte < 0x7f && byte != '"' && byte != '\\';
}

/// Moves `inside` behind the four digits of a \u.
std::optional<std::uint32_t> takeCode(std::string_view& inside) {
  std::uint32_t code = 0;
  if (inside.size() < 4) return {};
  const auto [end, error] = std::from_chars(inside.data(), inside.data() + 4, code, 16);
  if (error != std::errc() || end != inside.data() + 4) return {};
  inside.remove_prefix(4);
  return code;
}

bool isHighSurrogate(std::uint32_t code) { return code >= 0xd800 && code < 0xdc00; }
bool isLowSurrogate(std::uint32_t code) { return code >= 0xdc00 && code < 0xe000; }

/// The code point of a pair, behind whose first half `inside` stands.
std::optional<std::uint32_t> takePair(std::uint32_t high, std::string_view& inside) {
  if (!inside.starts_with("\\u")) return {};
  inside.remove_prefix(2);
  const auto low = takeCode(inside);
  if (!low || !isLowSurrogate(*low)) return {};
  return 0x10000 + ((high - 0xd800) << 10) + (*low - 0xdc00);
}

/// Appends what stands behind a \u.
bool takeUnicode(std::string& out, std::string_view& inside) {
  auto code = takeCode(inside);
  if (code && isHighSurrogate(*code)) code = takePair(*code, inside);
  if (!code) return false;
  if (!isLowSurrogate(*code)) {
    appendCharacter(out, *code);
    return true;
  }
  const std::uint32_t byte = *code - byteSurrogate;
  out += static_cast<char>(byte);
  return byte >= 0x80 && byte <= 0xff;
}

/// The escapes of one letter, each above what it stands for.
constexpr std::string_view letters = "\"\\/bfnrt";
constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";

/// Appends what stands behind a backslash.
bool takeEscape(std::string& out, std::string_view& inside) {
  if (inside.empty()) return false;
  const char letter = inside[0];
  inside.remove_prefix(1);
  if (letter == 'u') return takeUnicode(out, inside);
  const auto place = letters.find(letter);
  if (place == letters.npos) return false;
  out += meanings[place];
  return true;
}

} // namespace

void appendQuoted(std::string& out, std::string_view bytes) {
  out += '"';
  while (!bytes.empty()) {
    std::size_t plain = 0;
    while (plain < bytes.size() && isPlain(static_cast<unsigned char>(bytes[plain]))) ++plain;
    out += bytes.substr(0, plain);
    bytes.remove_prefix(plain);
    if (bytes.empty()) break;
    const std::size_t length = characterBytes(bytes);
    if (length == 1) appendEscape(out, static_cast<unsigned char>(bytes[0]));
    if (length > 1) out += bytes.substr(0, length);
    if (length == 0) appendCode(out, byteSurrogate + static_cast<unsigned char>(bytes[0]));
    bytes.remove_prefix(length ? length : 1);
  }
  out += '"';
}

bool appendUnescaped(std::string& out, std::string_view inside) {
  for (;;) {
    const std::size_t plain = std::min(inside.find('\\'), inside.size());
    out += inside.substr(0, plain);
    inside.remove_prefix(plain);
    if (inside.empty()) return true;
    inside.remove_prefix(1);
    if (!takeEscape(out, inside)) return false;
  }
}

} // namespace sources::snapshot
