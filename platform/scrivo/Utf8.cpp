#include "Utf8.h"

namespace scrivo {

namespace {

using Byte = unsigned char;

/// The well-formed sequences of UTF-8 above ASCII by their first byte (Unicode, table 3-7). The
/// range of the second byte rules out overlong forms, surrogates and what lies past U+10FFFF.
struct Utf8Lead {
  Byte first, last;
  Byte secondFirst, secondLast;
  std::size_t length;
};
constexpr Utf8Lead utf8Leads[] = {
    {0xc2, 0xdf, 0x80, 0xbf, 2}, {0xe0, 0xe0, 0xa0, 0xbf, 3}, {0xe1, 0xec, 0x80, 0xbf, 3},
    {0xed, 0xed, 0x80, 0x9f, 3}, {0xee, 0xef, 0x80, 0xbf, 3}, {0xf0, 0xf0, 0x90, 0xbf, 4},
    {0xf1, 0xf3, 0x80, 0xbf, 4}, {0xf4, 0xf4, 0x80, 0x8f, 4},
};

/// Whether the text has such a byte at that place.
bool has(std::string_view text, std::size_t place, Byte first, Byte last) {
  return place < text.size() && static_cast<Byte>(text[place]) >= first &&
         static_cast<Byte>(text[place]) <= last;
}

Utf8Sequence continueSequence(std::string_view text, const Utf8Lead& lead) {
  if (!has(text, 1, lead.secondFirst, lead.secondLast)) return {1, false};
  for (std::size_t i = 2; i < lead.length; ++i) {
    if (!has(text, i, 0x80, 0xbf)) return {i, false};
  }
  return {lead.length, true};
}

} // namespace

Utf8Sequence readUtf8(std::string_view text) {
  for (const Utf8Lead& lead : utf8Leads) {
    if (has(text, 0, lead.first, lead.last)) return continueSequence(text, lead);
  }
  return {1, false};
}

char32_t decodeUtf8(std::string_view sequence) {
  // The lead byte has as many high bits as the sequence has bytes, and a zero behind them.
  char32_t code = static_cast<Byte>(sequence[0]) & (0x7fu >> sequence.size());
  for (const char byte : sequence.substr(1)) code = code << 6 | (static_cast<Byte>(byte) & 0x3fu);
  return code;
}

} // namespace scrivo
