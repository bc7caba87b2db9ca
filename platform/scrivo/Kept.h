// What a stretch keeps of its output.
#pragma once

#include "scrivo/Stretch.h"

#include <limits>
#include <string_view>
#include <vector>

namespace scrivo {

struct LevelRule;

/// Blanks that are not among the bytes: those of a line's margin, and more.
struct Indent {
  std::uint32_t at;      ///< how many of the bytes stand ahead of it
  std::uint32_t columns; ///< behind the margin
};

/// One piece of memory: this, then the indents, then the bytes.
struct Stretch::Kept {
  const Printer* owner;
  const LevelRule* level; ///< that it stands in; null in text
  std::uint32_t length;   ///< of the bytes
  std::uint16_t indents;
  bool hadContent; ///< whether the level had any ahead of it
  bool hasContent; ///< and behind it

  /// Whether the counts have room.
  static bool fits(std::string_view bytes, const std::vector<Indent>& indents) {
    return bytes.size() <= std::numeric_limits<std::uint32_t>::max() &&
           indents.size() <= std::numeric_limits<std::uint16_t>::max();
  }
  /// A copy of `head` with what stands behind it.
  static Kept* make(Kept head, std::string_view bytes, const std::vector<Indent>& indents);

  const Indent* firstIndent() const { return reinterpret_cast<const Indent*>(this + 1); }
  const Indent* lastIndent() const { return firstIndent() + indents; }
  const char* bytes() const { return reinterpret_cast<const char*>(lastIndent()); }
};

} // namespace scrivo
