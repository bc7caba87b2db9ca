// What an expression asks of one field.
#pragma once

#include "command/filter/Field.h"

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace command::filter {

/// The numbers from the first to the last, none where the last one is less.
struct Range {
  std::uint64_t first = 0, last = 0;
};
struct Same {
  Kesh::IpGenPrefix prefix; ///< an address is one of its whole length
};
struct Inside {
  Kesh::IpGenPrefix prefix;
};
struct Pattern {
  std::string text;
};

/// Values: numbers, a prefix or what is inside of one, a text or the texts of a pattern.
using Element = std::variant<Range, Same, Inside, std::string, Pattern>;

/// Holds if a value of the field is one of the elements; for a flag, which has none, if it is set.
struct Comparison {
  const Field* field = nullptr;
  std::vector<Element> elements = {};

  /// Whether it holds for what has the field; false for the other.
  bool holds(const Rova::RouteHead& head) const;
  bool holds(const Rova::ShownVias& vias) const;
};

} // namespace command::filter
