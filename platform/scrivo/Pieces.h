// A text cut into what shows as it is and the escapes between.
#pragma once

#include "scrivo/Shown.h"

#include <algorithm>

namespace scrivo {

/// What stands in place of the first bytes of a text.
struct Escape {
  char text[8];
  std::size_t length;   ///< of the escape
  std::size_t replaced; ///< bytes of the text
};

/// The escape for what a text, not empty, begins with.
Escape escapeOf(std::string_view text);

/// Calls `put(piece)` for each piece of the text as it shows. A piece may be empty.
template <class Put>
void forEachPiece(std::string_view text, LineEnds lineEnds, Put&& put) {
  while (!text.empty()) {
    const std::size_t plain = std::min(findHidden(text, lineEnds), text.size());
    put(text.substr(0, plain));
    text.remove_prefix(plain);
    if (text.empty()) return;
    const Escape escape = escapeOf(text);
    put(std::string_view(escape.text, escape.length));
    text.remove_prefix(escape.replaced);
  }
}

} // namespace scrivo
