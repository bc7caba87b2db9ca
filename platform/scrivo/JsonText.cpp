#include "JsonText.h"

#include "OutputBuffer.h"

#include <array>
#include <charconv>
#include <cmath>

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

/// The well-formed sequences of UTF-8 above ASCII by their first byte (Unicode, table 3-7). The
/// range of the second byte rules out overlong forms, surrogates and what lies past U+10FFFF.
struct Utf8Lead {
  Byte first, last;
  Byte secondFirst, secondLast;
  int length;
};
constexpr Utf8Lead utf8Leads[] = {
    {0xc2, 0xdf, 0x80, 0xbf, 2}, {0xe0, 0xe0, 0xa0, 0xbf, 3}, {0xe1, 0xec, 0x80, 0xbf, 3},
    {0xed, 0xed, 0x80, 0x9f, 3}, {0xee, 0xef, 0x80, 0xbf, 3}, {0xf0, 0xf0, 0x90, 0xbf, 4},
    {0xf1, 0xf3, 0x80, 0xbf, 4}, {0xf4, 0xf4, 0x80, 0x8f, 4},
};

constexpr bool isWithin(char byte, Byte first, Byte last) {
  return static_cast<Byte>(byte) >= first && static_cast<Byte>(byte) <= last;
}

/// How much of a sequence stands at a place, and whether it is a whole one. A broken sequence goes
/// as far as it could have become a whole one, at least one byte: that much is one U+FFFD.
struct Utf8Sequence {
  int length;
  bool isWhole;
};

Utf8Sequence continueSequence(const char* at, const Utf8Lead& lead) {
  if (!isWithin(at[1], lead.secondFirst, lead.secondLast)) return {1, false};
  for (int i = 2; i < lead.length; ++i) {
    if (!isWithin(at[i], 0x80, 0xbf)) return {i, false};
  }
  return {lead.length, true};
}

Utf8Sequence readSequence(const char* at) {
  for (const Utf8Lead& lead : utf8Leads) {
    if (isWithin(*at, lead.first, lead.last)) return continueSequence(at, lead);
  }
  return {1, false};
}

const char* putMultibyte(OutputBuffer& out, const char* at) {
  const Utf8Sequence sequence = readSequence(at);
  if (sequence.isWhole) {
    out.put(at, static_cast<std::size_t>(sequence.length));
  } else {
    out.put("\xef\xbf\xbd"); // U+FFFD
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
