#include "scrivo/Shown.h"

#include "Pieces.h"
#include "Utf8.h"

#include <iterator>

namespace scrivo {

namespace {

/// What a text begins with: a character, or a byte that is none.
struct Character {
  char32_t code;
  std::size_t length;
  bool isWhole;
};

Character readCharacter(std::string_view text) {
  const auto byte = static_cast<unsigned char>(text[0]);
  if (byte < 0x80) return {byte, 1, true};
  const Utf8Sequence sequence = readUtf8(text);
  if (!sequence.isWhole) return {byte, 1, false};
  return {decodeUtf8(text.substr(0, sequence.length)), sequence.length, true};
}

/// The characters that do not show, or change how others do: control characters, the controls of
/// the direction of writing, and the line and paragraph separators.
constexpr struct {
  char32_t first, last;
} hiddenRanges[] = {
    {0, 0x1f}, {0x7f, 0x9f}, {0x61c, 0x61c}, {0x200e, 0x200f}, {0x2028, 0x202e}, {0x2066, 0x2069},
};

bool isHidden(const Character& character, LineEnds lineEnds) {
  if (!character.isWhole) return true;
  if (character.code == '\n' && lineEnds == LineEnds::kept) return false;
  return std::any_of(std::begin(hiddenRanges), std::end(hiddenRanges), [&](const auto& range) {
    return character.code >= range.first && character.code <= range.last;
  });
}

} // namespace

std::size_t findHidden(std::string_view text, LineEnds lineEnds) {
  for (std::size_t at = 0; at < text.size();) {
    const Character character = readCharacter(text.substr(at));
    if (isHidden(character, lineEnds)) return at;
    at += character.length;
  }
  return text.npos;
}

Escape escapeOf(std::string_view text) {
  const Character character = readCharacter(text);
  const bool isShort = character.code < 0x100;
  Escape escape{{'\\', isShort ? 'x' : 'u'}, isShort ? 4u : 6u, character.length};
  char32_t rest = character.code;
  for (std::size_t at = escape.length; at > 2; rest >>= 4) {
    escape.text[--at] = "0123456789abcdef"[rest & 15];
  }
  return escape;
}

std::string shown(std::string_view text, LineEnds lineEnds) {
  std::string out;
  forEachPiece(text, lineEnds, [&out](std::string_view piece) { out += piece; });
  return out;
}

} // namespace scrivo
