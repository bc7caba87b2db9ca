// Texts as a screen may have them. A name or a description comes from outside and may hold any
// byte; on a terminal it could move the cursor, forge a line or turn the direction of writing.
//
// What does not show as it is becomes an escape: `\x1b` for a control character below U+0100 and
// for a byte that is no UTF-8, `\u202e` for a control of the direction of writing and for the line
// and paragraph separators. All else stays, a backslash too: what is escaped once stays as it is
// when it is escaped again.
#pragma once

#include "lumo/Export.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace scrivo {

/// What becomes of line feeds.
enum class LineEnds : bool { escaped, kept };

/// The place of the first character, or byte, that does not show as it is; `npos` without any.
LUMO_EXPORT std::size_t findHidden(std::string_view text, LineEnds lineEnds = LineEnds::escaped);

/// The text with escapes in place of what does not show as it is.
LUMO_EXPORT std::string shown(std::string_view text, LineEnds lineEnds = LineEnds::escaped);

inline constexpr std::uint64_t eachByte = 0x0101010101010101; ///< times a byte: it eight times

/// Sets the highest bit of a byte where there is none from 0x20 to 0x7e. What one byte borrows from
/// the next or carries into it is a fault already.
constexpr std::uint64_t hiddenBytes(std::uint64_t word) {
  return word | (word + eachByte) | (word - 0x20 * eachByte);
}

/// Whether `marks`, which sets the highest bit of a byte that it looks for, finds none in a text:
/// eight bytes at a time, for listings ask it of each text that they print. Blanks fill a short
/// text up.
template <class Marks>
bool isWithout(std::string_view text, Marks&& marks) {
  const auto read = [&text](std::size_t at, auto word) {
    std::memcpy(&word, text.data() + at, sizeof word);
    return std::uint64_t{word};
  };
  const std::size_t length = text.size();
  std::uint64_t found = 0;
  if (length >= 8) {
    for (std::size_t at = 0; at + 8 < length; at += 8) found |= marks(read(at, std::uint64_t{}));
    found |= marks(read(length - 8, std::uint64_t{}));
  } else if (length >= 4) {
    found = marks(read(0, std::uint32_t{}) | read(length - 4, std::uint32_t{}) << 32);
  } else if (length > 0) {
    constexpr std::uint64_t rest = 0x2020202020000000;
    found = marks(rest | read(0, std::uint8_t{}) | read(length / 2, std::uint8_t{}) << 8 |
                  read(length - 1, std::uint8_t{}) << 16);
  }
  return (found & 0x80 * eachByte) == 0;
}

/// Whether the text is printable ASCII alone, as nearly all texts are.
inline bool isPlain(std::string_view text) { return isWithout(text, hiddenBytes); }

} // namespace scrivo
