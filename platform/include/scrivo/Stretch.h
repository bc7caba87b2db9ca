// A stretch of output that many lines share: printed once, put again as bytes.
#pragma once

#include "lumo/Export.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace scrivo {

class Printer;

/// What one call of `Printer::addStretch` printed, with the places where a line's own margin goes.
/// It belongs to that printer and to the place in the model where it was printed. It is a pointer,
/// for a display keeps ten thousands of them and looks one up for each of its lines.
class LUMO_EXPORT Stretch {
 public:
  /// What is kept of it: one piece of memory (platform/scrivo/Kept.h).
  struct Kept;

  Stretch() = default;
  Stretch(Stretch&& other) noexcept : kept_(std::exchange(other.kept_, nullptr)) {}
  Stretch& operator=(Stretch other) noexcept {
    std::swap(kept_, other.kept_);
    return *this;
  }
  ~Stretch() { forget(); }

  /// Whether there is output to put again.
  bool isKept() const { return kept_ != nullptr; }
  /// The next print is a new one.
  void forget() {
    if (kept_) free(std::exchange(kept_, nullptr));
  }

  /// Has the processor fetch the output ahead of its use. Inlined, or g++ drops a call without
  /// effect.
  [[gnu::always_inline]] void prefetch() const {
    constexpr std::size_t cacheLine = 64, linesAhead = 2;
    for (std::size_t line = 0; line < linesAhead; ++line) {
      __builtin_prefetch(reinterpret_cast<const char*>(kept_) + line * cacheLine);
    }
  }

 private:
  friend Printer;

  static void free(Kept* kept);

  Kept* kept_ = nullptr;
};

} // namespace scrivo
