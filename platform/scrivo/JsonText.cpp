#include "JsonText.h"

#include "OutputBuffer.h"
#include "Utf8.h"
#include "scrivo/Shown.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

namespace scrivo {

namespace {

using Byte = unsigned char;

/// For each byte, whether it stands in a JSON string as it is. NUL does not, so a scan needs no
/// length to end.
constexpr std::array<bool, 256> plainBytes = [] {
  std::array<bool, 256> plain{};
  for (unsigned byte = 0x20; byte < 0x80; ++byte) plain[byte] = byte != '"' && byte != '\\';
  return plain;
}();

const char* skipPlain(const char* at) {
  while (plainBytes[static_cast<Byte>(*at)]) ++at;
  return at;
}

/// Sets the highest bit of a byte that is this one.
constexpr std::uint64_t bytesThatAre(char byte, std::uint64_t word) {
  const std::uint64_t difference = word ^ static_cast<Byte>(byte) * eachByte;
  return (difference - eachByte) & ~difference;
}

/// Whether the text is sure to stand in a JSON string as it is.
bool isPlainText(std::string_view text) {
  return isWithout(text, [](std::uint64_t word) {
    return hiddenBytes(word) | bytesThatAre('"', word) | bytesThatAre('\\', word);
  });
}

/// A plain text with quotes, shorter than the buffer by far.
void putQuoted(OutputBuffer& out, std::string_view text) {
  char* const at = out.reserve(text.size() + 2);
  at[0] = '"';
  std::memcpy(at + 1, text.data(), text.size());
  at[text.size() + 1] = '"';
  out.commit(at + text.size() + 2);
}

const char* putMultibyte(OutputBuffer& out, const char* at) {
  constexpr std::size_t longest = 4;
  const Utf8Sequence sequence = readUtf8({at, strnlen(at, longest)});
  if (sequence.isWhole) {
    out.put(at, sequence.length);
  } else {
    out.put("\xef\xbf\xbd"); // U+FFFD, once for a broken sequence
  }
  return at + sequence.length;
}

/// Writes what is not plain at `at`. \return the place behind it.
const char* putSpecial(OutputBuffer& out, const char* at) {
  static constexpr char digits[] = "0123456789abcdef";
  const auto byte = static_cast<Byte>(*at);
  if (byte >= 0x80) return putMultibyte(out, at);
  if (byte >= 0x20) {
    const char escape[] = {'\\', *at};
    out.put(escape, sizeof escape);
  } else {
    const char escape[] = {'\\', 'u', '0', '0', digits[byte >> 4], digits[byte & 15]};
    out.put(escape, sizeof escape);
  }
  return at + 1;
}

template <class Number>
void putNumber(OutputBuffer& out, Number number) {
  constexpr std::size_t longest = 32; // a double takes 24, a 64-bit integer 20
  char* const at = out.reserve(longest);
  out.commit(std::to_chars(at, at + longest, number).ptr);
}

} // namespace

bool isPlainJson(const char* text) { return *skipPlain(text) == '\0'; }

void putJsonString(OutputBuffer& out, const char* text) {
  const std::string_view whole = text;
  if (whole.size() + 2 <= OutputBuffer::reserveLimit && isPlainText(whole)) {
    return putQuoted(out, whole);
  }
  out.put('"');
  for (const char* at = text;;) {
    const char* const end = skipPlain(at);
    out.put(at, static_cast<std::size_t>(end - at));
    if (*end == '\0') break;
    at = putSpecial(out, end);
  }
  out.put('"');
}

void putJsonInteger(OutputBuffer& out, std::int64_t number) { putNumber(out, number); }
void putJsonUnsigned(OutputBuffer& out, std::uint64_t number) { putNumber(out, number); }
void putJsonDouble(OutputBuffer& out, double number) {
  std::isfinite(number) ? putNumber(out, number) : out.put("null");
}

} // namespace scrivo
