// A stretch of output that many lines share: printed once, put again as bytes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace scrivo {

class Printer;
struct LevelRule;

/// What one call of `Printer::addStretch` printed, with the places where a line's own margin goes.
/// It belongs to that printer and to the place in the model where it was printed.
class Stretch {
 public:
  /// Whether there is output to put again.
  bool isKept() const { return owner_ != nullptr; }
  /// The next print is a new one.
  void forget() {
    bytes_.clear();
    indents_.clear();
    owner_ = nullptr;
  }

  /// Has the processor fetch the output ahead of its use. Inlined, or g++ drops a call without
  /// effect.
  [[gnu::always_inline]] void prefetch() const {
    constexpr std::size_t cacheLine = 64, linesAhead = 2;
    for (std::size_t line = 0; line < linesAhead; ++line) {
      __builtin_prefetch(bytes_.data() + line * cacheLine);
    }
  }

 private:
  friend Printer;

  struct Indent {
    std::uint32_t at;      ///< how many of the bytes stand ahead of it
    std::uint32_t columns; ///< behind the margin
  };

  std::string bytes_;
  std::vector<Indent> indents_;
  const Printer* owner_ = nullptr;
  const LevelRule* level_ = nullptr; ///< that it stands in; null in text
  bool hadContent_ = false;          ///< whether the level had any ahead of it
  bool hasContent_ = false;          ///< and behind it
};

} // namespace scrivo
