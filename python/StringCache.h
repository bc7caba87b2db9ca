// Python texts that occur again and again in one document, each made once.
#pragma once

#include "Ref.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace rova_python {

/// Remembers short ASCII texts, each at the one place that its bytes lead to, where the next text
/// of that place takes over.
class StringCache {
 public:
  /// Keys that occur again are interned: a literal in a program is then the very same object.
  enum class Use { keys, values };

  explicit StringCache(Use use) : use_(use) {}

  /// The text, which must be UTF-8, as a Python text.
  Ref text(std::string_view bytes);

 private:
  static constexpr std::size_t places = 4096, longest = 64;

  Use use_;
  std::array<Ref, places> kept_;
};

} // namespace rova_python
